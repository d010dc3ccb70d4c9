// Registers a command and fails.
#include "standalone/ModuleApi.h"

#include <stdexcept>

extern "C" [[gnu::visibility("default")]] int kestModuleEntry(void)
{
    kestRegisterCommand(
        "never", [](void*) {}, nullptr);
    throw std::runtime_error("no licence");
}
