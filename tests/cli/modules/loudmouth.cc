// Writes to standard output past the host.
#include "standalone/ModuleApi.h"

#include <cstdio>

extern "C" [[gnu::visibility("default")]] int kestModuleEntry(void)
{
    std::puts("past the host");
    return 0;
}
