// Loaded on demand: registers one of the two commands that its manifest declares, in the other letter case.
#include "standalone/ModuleApi.h"

extern "C" [[gnu::visibility("default")]] int kestModuleEntry(void)
{
    kestRegisterCommand(
        "late", [](void*) { kestPrint("late, but here\n"); }, nullptr);
    return 0;
}
