// Asks for itself while it is being loaded, and says what came of it.
#include "ModuleExport.h"

#include "host/DynamicLinker.h"
#include "host/LocaleText.h"
#include "standalone/ModuleApi.h"

#include <dlfcn.h>

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    Dl_info self{};
    dladdr(reinterpret_cast<void*>(&kestModuleEntry), &self);
    auto* linker = static_cast<KsRxDynamicLinker*>(ksrxSysRegistry()->at(L"DynamicLinker"));
    const bool loaded = linker->loadModule(localetext::widen(self.dli_fname).c_str(), false, false);
    kestPrint(loaded ? "loaded itself\n" : "refused\n");
    return 0;
}
