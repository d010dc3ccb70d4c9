// A module that says no: its entry returns a number other than 0. What it registered before is taken back.
#include "standalone/ModuleApi.h"

#include <cstdlib>

namespace {

void printNothing(void* /*context*/) {}

/// The licence file is named by an environment variable that no drawing office sets.
bool hasLicence()
{
    return std::getenv("NORDHOF_SHEET_METAL_LICENCE") != nullptr;
}

} // namespace

int kestModuleEntry()
{
    kestRegisterCommand("UNFOLD", printNothing, nullptr);
    if (!hasLicence()) {
        kestPrint("Sheet metal: no licence found\n");
        return 7;
    }
    return 0;
}
