// Stands in for the engine of managed assemblies: a file that begins like one counts as loaded.
#include "host/EngineHost.h"
#include "host/Engines.h"
#include "host/LocaleText.h"

#include <fstream>
#include <sys/stat.h>
#include <type_traits>

extern "C" [[gnu::visibility("default")]] std::remove_pointer_t<engines::NetLoad> netLoad;

bool netLoad(const CStdStr<wchar_t>& path, int /*reserved*/)
{
    const std::string file = localetext::narrow(path);
    struct stat found
    {
    };
    char begin[2] = {};
    const bool isAssembly = ::stat(file.c_str(), &found) == 0 && S_ISREG(found.st_mode) &&
                            std::ifstream(file, std::ios::binary).read(begin, 2) && begin[0] == 'M' && begin[1] == 'Z';
    kestEngineHost()->beginComponent(path);
    kestEngineHost()->endComponent(isAssembly ? "" : "it is not a managed assembly");
    return isAssembly;
}
