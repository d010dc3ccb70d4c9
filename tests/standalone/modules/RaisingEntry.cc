// Ends with an error of the host.
#include "ModuleExport.h"

#include "host/ErrorStatus.h"
#include "standalone/ModuleApi.h"

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    throw new VxErrorStatus(Kest::eInvalidInput, L"the drawing is locked", 12);
}
