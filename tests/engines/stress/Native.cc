// A native module that is copied under many names: its command bears the name of its file.
#include "standalone/ModuleApi.h"

#include <dlfcn.h>
#include <string>

namespace {

std::string& ownName()
{
    static std::string name;
    return name;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int kestModuleEntry()
{
    Dl_info place{};
    ::dladdr(reinterpret_cast<void*>(&ownName), &place);
    const std::string path = place.dli_fname;
    const std::size_t name = path.rfind('/') + 1;
    ownName() = path.substr(name, path.rfind('.') - name);
    kestRegisterCommand(
        ownName().c_str(), [](void*) { kestPrint((ownName() + " ran\n").c_str()); }, nullptr);
    return ownName().find("BAD") == std::string::npos ? 0 : 1;
}
