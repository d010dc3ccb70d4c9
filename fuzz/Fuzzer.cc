// The door through which Clang's fuzzer comes in. The program holds one target.
#include "fuzz/Target.h"

#include <cstdint>

extern "C" {

// What the sanitizer and the fuzzer look for.
const char* __asan_default_options();
int LLVMFuzzerInitialize(int* argumentCount, char*** arguments);
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

/// Little is kept of what was freed: the inputs are many and small.
[[gnu::visibility("default")]] const char* __asan_default_options()
{
    return "quarantine_size_mb=8:allocator_may_return_null=0:detect_leaks=1";
}

int LLVMFuzzerInitialize(int* /*argumentCount*/, char*** /*arguments*/)
{
    fuzz::prepareProcess();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::targets().front().run({reinterpret_cast<const char*>(data), size});
    return 0;
}
}
