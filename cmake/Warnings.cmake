# The warnings that every target of ours compiles with; each is an error.
add_library(kest_warnings INTERFACE)
target_compile_options(kest_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align -Wimplicit-fallthrough -Werror
    # GCC 12 takes the inlined concatenation of strings for an overlapping copy.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
