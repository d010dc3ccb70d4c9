// Prints when it is loaded and registers commands that print, fail and hold text that a terminal would act on.
#include "standalone/ModuleApi.h"

#include <stdexcept>

extern "C" [[gnu::visibility("default")]] int kestModuleEntry(void)
{
    kestPrint("greeter is here\n");
    kestRegisterCommand(
        "hello", [](void*) { kestPrint("hello\n\tand welcome\n"); }, nullptr);
    kestRegisterCommand(
        "colour", [](void*) { kestPrint("\x1B[31mred\x1B[0m \xFF\r\nno line end"); }, nullptr);
    kestRegisterCommand(
        "mishap", [](void*) { throw std::runtime_error("the \x07 bell"); }, nullptr);
    return 0;
}
