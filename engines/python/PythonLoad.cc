// The doors of libVxPythonLoad.so.
#include "engines/Visit.h"
#include "engines/python/Interpreter.h"

#include "host/EngineHost.h"
#include "host/Engines.h"
#include "host/LocaleText.h"

#include <type_traits>

namespace {

/// The library that the next script asks for.
std::string& askedLibrary()
{
    static std::string name;
    return name;
}

std::string load(const std::wstring& path, KestEngineHost& host)
{
    engines::Interpreter& interpreter = engines::Interpreter::current();
    const engines::Visit visit(engines::pythonGuest());
    std::string problem = interpreter.start(askedLibrary());
    if (!problem.empty()) {
        host.print(localetext::utf8(path) + ": could not be loaded: " + problem + "\n");
        return problem;
    }
    return interpreter.load(localetext::narrow(path));
}

} // namespace

// Declared by the types that hosts call them by: a wrong parameter does not compile.
extern "C" {
__attribute__((visibility("default"))) std::remove_pointer_t<engines::SetPythonVersion> setPythonVersion;
__attribute__((visibility("default"))) std::remove_pointer_t<engines::LoadPythonFile> loadPythonFile;
}

void setPythonVersion(std::string libraryName)
{
    askedLibrary() = std::move(libraryName);
}

int loadPythonFile(const wchar_t* path)
{
    KestEngineHost* host = kestEngineHost();
    if (host == nullptr || path == nullptr) {
        return 1;
    }
    host->beginComponent(path);
    const std::string problem = load(path, *host);
    host->endComponent(problem);
    return problem.empty() ? 0 : 1;
}
