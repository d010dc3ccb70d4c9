#include "ModuleExport.h"

#include "standalone/ModuleApi.h"

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    kestPrint("the entry of another library ran\n");
    return 0;
}
