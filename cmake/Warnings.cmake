# The warnings that every target of ours compiles with; each is an error.
add_library(kest_warnings INTERFACE)
target_compile_options(kest_warnings INTERFACE
    -Werror -Wall -Wextra -Wpedantic
    # Conversions
    -Wconversion -Wsign-conversion -Wdouble-promotion -Wold-style-cast -Wcast-align -Wcast-qual
    -Wzero-as-null-pointer-constant
    # Classes
    -Wnon-virtual-dtor -Woverloaded-virtual -Wsuggest-override -Wmismatched-tags
    # Declarations and the preprocessor
    -Wshadow -Wmissing-declarations -Wredundant-decls -Wextra-semi -Wundef -Wunused-macros -Wdate-time
    # What runs
    -Wimplicit-fallthrough -Wswitch-enum -Wformat=2 -Walloca -Wvla)

# Compilers take sources that are read together for headers, which should not use what one source keeps for itself and
# not open namespaces.
set(is_joined $<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(kest_warnings INTERFACE
        -Wuseless-cast -Wsign-promo -Warith-conversion
        -Wredundant-tags -Wctor-dtor-privacy -Wdeprecated-copy-dtor -Wcomma-subscript -Wvolatile
        -Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wunused-const-variable=2
        -Wformat-signedness -Wformat-overflow=2 -Wformat-truncation=2 -Wshift-overflow=2
        # Not -Wnull-dereference: optimising, GCC 12 finds it in the standard library's own vectors and streams. Clang's
        # analyzer follows null pointers in clang-tidy.
        # GCC 12 takes the inlined concatenation of strings for an overlapping copy.
        -Wno-restrict
        $<${is_joined}:-Wno-subobject-linkage>)
else()
    target_compile_options(kest_warnings INTERFACE
        -Wassign-enum -Wdeprecated -Wcomma -Wextra-semi-stmt -Wmissing-prototypes -Wdocumentation
        -Wunused-member-function -Wunused-template
        -Wunreachable-code-aggressive -Wloop-analysis -Wconditional-uninitialized -Wthread-safety
        $<$<NOT:${is_joined}>:-Wheader-hygiene>)
endif()
