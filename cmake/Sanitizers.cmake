# KEST_SANITIZE: what to instrument every target of ours with, for example "address,undefined". Empty: nothing.
# KEST_COVERAGE: count the lines and branches that run.
set(KEST_SANITIZE "" CACHE STRING "Sanitizers, separated by commas")
option(KEST_COVERAGE "Instrument for line and branch coverage" OFF)

add_library(kest_sanitizers INTERFACE)
if(KEST_SANITIZE)
    target_compile_options(kest_sanitizers INTERFACE
        -fsanitize=${KEST_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kest_sanitizers INTERFACE -fsanitize=${KEST_SANITIZE})
endif()
if(KEST_COVERAGE)
    target_compile_options(kest_sanitizers INTERFACE --coverage -O0)
    target_link_options(kest_sanitizers INTERFACE --coverage)
endif()
