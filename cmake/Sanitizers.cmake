# KEST_SANITIZE: what to instrument every target of ours with, for example "address,undefined". Empty: nothing.
# KEST_COVERAGE: count the lines and branches that run.
# KEST_FUZZ: tell Clang's fuzzer where the code goes.
set(KEST_SANITIZE "" CACHE STRING "Sanitizers, separated by commas")
option(KEST_COVERAGE "Instrument for line and branch coverage" OFF)
option(KEST_FUZZ "Build the fuzz targets as fuzzers (Clang)" OFF)

add_library(kest_sanitizers INTERFACE)
if(KEST_SANITIZE)
    target_compile_options(kest_sanitizers INTERFACE
        -fsanitize=${KEST_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        # GCC takes its own instrumentation of std::function for reads of values that were never set.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(kest_sanitizers INTERFACE -fsanitize=${KEST_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        # Linked in statically, the run time would call what the tests put in place of malloc and dlsym before either is
        # ready.
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-runtime-dir
            OUTPUT_VARIABLE KEST_SANITIZER_FOLDER OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        target_link_options(kest_sanitizers INTERFACE -shared-libsan -Wl,-rpath,${KEST_SANITIZER_FOLDER})
    endif()
endif()
if(KEST_COVERAGE)
    target_compile_options(kest_sanitizers INTERFACE --coverage -O0)
    target_link_options(kest_sanitizers INTERFACE --coverage)
endif()
if(KEST_FUZZ)
    target_compile_options(kest_sanitizers INTERFACE -fsanitize=fuzzer-no-link)
endif()
