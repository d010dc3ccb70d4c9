#include "cli/InstalledPython.h"

#include <dlfcn.h>

namespace cli {

namespace {

constexpr int kOldest = 8; // what the engine runs
constexpr int kNewest = 30;

} // namespace

InstalledPython findInstalledPython()
{
    for (int minor = kNewest; minor >= kOldest; --minor) {
        const std::string version = "python3." + std::to_string(minor);
        // As the autoloader does it: what counts is what the dynamic linker finds.
        if (void* library = ::dlopen(("lib" + version + ".so").c_str(), RTLD_LAZY | RTLD_LOCAL)) {
            ::dlclose(library);
            return {version, true};
        }
    }
    return {};
}

} // namespace cli
