// A sound module: one command, and a line on the console for each run of its entry.
#include "ModuleExport.h"

#include "standalone/ModuleApi.h"

namespace {

void greet(void*)
{
    kestPrint("hello\n");
}

} // namespace

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    kestPrint("entry of greeting\n");
    return kestRegisterCommand("greet", &greet, nullptr) == 1 ? 0 : 1;
}
