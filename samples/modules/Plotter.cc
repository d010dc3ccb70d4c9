// A sound module that is never loaded: the manifest of its bundle asks for a machine of another architecture.
#include "standalone/ModuleApi.h"

namespace {

void printPens(void* /*context*/)
{
    kestPrint("Pens: 1 black 0.25 mm, 2 black 0.35 mm, 3 black 0.50 mm, 4 red 0.35 mm\n");
}

} // namespace

int kestModuleEntry()
{
    kestPrint("Plotter: ready\n");
    return kestRegisterCommand("PENS", printPens, nullptr) == 1 ? 0 : 1;
}
