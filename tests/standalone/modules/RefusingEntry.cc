// Registers a command, then says that it cannot be used.
#include "ModuleExport.h"

#include "standalone/ModuleApi.h"

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    kestRegisterCommand(
        "lost", [](void*) {}, nullptr);
    return 7;
}
