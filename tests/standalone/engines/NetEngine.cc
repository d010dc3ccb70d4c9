// An engine for managed assemblies that refuses all of them.
#include "host/Engines.h"

#include <type_traits>

extern "C" __attribute__((visibility("default"))) std::remove_pointer_t<engines::NetLoad> netLoad;

bool netLoad(const CStdStr<wchar_t>& /*path*/, int /*reserved*/)
{
    return false;
}
