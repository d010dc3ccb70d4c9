#include "ModuleExport.h"

#include "standalone/ModuleApi.h"

extern "C" int kestNobodyDefinesThis(void);

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    return kestNobodyDefinesThis();
}
