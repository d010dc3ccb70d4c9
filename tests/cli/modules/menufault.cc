// Stands in for the autoloader library: the registration of menus ends with an error of the host.
#include "host/ErrorStatus.h"

extern "C" {

[[gnu::visibility("default")]] void excuteCuix()
{
    throw new VxErrorStatus(Kest::eOutOfMemory, L"\"\"", 0);
}

[[gnu::visibility("default")]] void excute() {}

[[gnu::visibility("default")]] void loadIfCmdNeeded(const wchar_t*) {}
}
