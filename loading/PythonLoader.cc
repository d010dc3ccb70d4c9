// The loader of Python scripts.
#include "host/Engines.h"
#include "host/FileLayer.h"
#include "host/KsString.h"
#include "manifest/Bundle.h"

#include <dlfcn.h>
#include <iterator>

namespace {

/// Makes a script's folder the working directory. Puts the old one back at its end unless told to stay; when the old
/// one cannot be read, the directory is not changed at all.
class ScriptFolder
{
public:
    explicit ScriptFolder(const CStdStr<wchar_t>& script)
        : isSaved(GetCurrentDirectoryW(static_cast<std::uint32_t>(std::size(before)), before) != 0)
    {
        if (isSaved) {
            const std::size_t slash = script.rfind(L'/');
            SetCurrentDirectoryW(slash == std::wstring::npos ? L"" : script.substr(0, slash).c_str());
        }
    }

    ~ScriptFolder()
    {
        if (isSaved) {
            SetCurrentDirectoryW(before);
        }
    }

    ScriptFolder(const ScriptFolder&) = delete;
    ScriptFolder& operator=(const ScriptFolder&) = delete;

    void stay() { isSaved = false; }

private:
    wchar_t before[2049] = {};
    bool isSaved;
};

} // namespace

bool KestBundle::preparePyVersion()
{
    if (pythonVersion.empty()) {
        return false;
    }
    pythonLibName = "lib" + pythonVersion + ".so";
    pythonLibNameM = "lib" + pythonVersion + "m.so";
    return true;
}

bool KestBundle::checkSystemPython()
{
    for (const std::string& name : {pythonLibName, pythonLibNameM}) {
        if (void* library = dlopen(name.c_str(), RTLD_LAZY)) {
            pythonVersion = name;
            dlclose(library);
            return true;
        }
    }
    return false;
}

void KestBundle::setPyVersion(const CStdStr<wchar_t>& version)
{
    pythonVersion = KsString().assign(version.c_str()).ansiPtr();
}

bool KestBundle::loadPython(const CStdStr<wchar_t>& path)
{
    ScriptFolder folder(path);
    if (!checkSystemPython()) {
        return false;
    }
    void* loader = dlopen(pythonLoadLib.c_str(), RTLD_LAZY); // stays open: the interpreter lives in it
    if (loader == nullptr) {
        return false;
    }
    if (const auto set = reinterpret_cast<engines::SetPythonVersion>(dlsym(loader, "setPythonVersion"))) {
        set(pythonVersion);
    }
    const auto run = reinterpret_cast<engines::LoadPythonFile>(dlsym(loader, "loadPythonFile"));
    if (run == nullptr || run(path.c_str()) != 0) {
        return false;
    }
    folder.stay(); // meant: scripts rely on it after they have run
    return true;
}
