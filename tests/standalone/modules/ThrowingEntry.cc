// Ends with an exception of a type that only this module has.
#include "ModuleExport.h"

#include "standalone/ModuleApi.h"

#include <exception>

namespace {

class NoLicence : public std::exception
{
public:
    const char* what() const noexcept override { return "no licence\nwas found"; }
};

} // namespace

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    kestRegisterCommand(
        "lost", [](void*) {}, nullptr);
    throw NoLicence();
}
