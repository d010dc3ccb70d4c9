// Stands in for the engine of managed assemblies: the front of one counts as loaded.
#include "host/EngineHost.h"
#include "host/Engines.h"
#include "host/LocaleText.h"
#include "tests/AssemblyBytes.h"

#include <fstream>
#include <sstream>
#include <type_traits>

extern "C" [[gnu::visibility("default")]] std::remove_pointer_t<engines::NetLoad> netLoad;

bool netLoad(const CStdStr<wchar_t>& path, int /*reserved*/)
{
    std::ostringstream content;
    content << std::ifstream(localetext::narrow(path), std::ios::binary).rdbuf();
    const bool isAssembly = content.str() == assemblyBytes();
    kestEngineHost()->beginComponent(path);
    kestEngineHost()->endComponent(isAssembly ? "" : "it is not a managed assembly");
    return isAssembly;
}
