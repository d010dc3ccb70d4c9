// Stands in for the Python engine: a script that can be read counts as run.
#include "host/EngineHost.h"
#include "host/Engines.h"
#include "host/LocaleText.h"

#include <sys/stat.h>
#include <type_traits>

extern "C" [[gnu::visibility("default")]] std::remove_pointer_t<engines::LoadPythonFile> loadPythonFile;

int loadPythonFile(const wchar_t* path)
{
    struct stat found
    {
    };
    const bool isFile = ::stat(localetext::narrow(path).c_str(), &found) == 0 && S_ISREG(found.st_mode);
    kestEngineHost()->beginComponent(path);
    kestEngineHost()->endComponent(isFile ? "" : "there is no such script");
    return isFile ? 0 : 1;
}
