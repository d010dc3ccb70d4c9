// Stands in for the autoloader library: the registration of menus ends with an error of the host.
#include "bundle/EntryPoints.h"
#include "host/ErrorStatus.h"

void excuteCuix()
{
    throw new VxErrorStatus(Kest::eOutOfMemory, L"\"\"", 0);
}

void excute() {}

void loadIfCmdNeeded(const wchar_t*) {}
