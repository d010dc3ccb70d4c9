#include "ModuleExport.h"

#include "standalone/ModuleApi.h"

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    throw 42;
}
