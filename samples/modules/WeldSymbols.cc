// A sound module that is never loaded: its bundle depends on one that is not installed.
#include "standalone/ModuleApi.h"

namespace {

void printSymbols(void* /*context*/)
{
    kestPrint("Weld symbols: a4 fillet, throat 4 mm; z6 fillet, leg 6 mm; V butt; Y butt with root face\n");
}

} // namespace

int kestModuleEntry()
{
    kestPrint("Weld symbols: ready\n");
    return kestRegisterCommand("WELDS", printSymbols, nullptr) == 1 ? 0 : 1;
}
