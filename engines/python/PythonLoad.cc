// The doors of libVxPythonLoad.so.
#include "engines/Visit.h"
#include "engines/python/Interpreter.h"

#include "host/EngineHost.h"
#include "host/Engines.h"
#include "host/LocaleText.h"

namespace {

/// The library that the next script asks for.
std::string& askedLibrary()
{
    static std::string name;
    return name;
}

/// `path` in UTF-8, for people. Bytes that the locale could not decode stand as they are: most are UTF-8 themselves.
std::string shown(const std::wstring& path)
{
    std::string text;
    for (const wchar_t unit : path) {
        if (localetext::isUndecodableByte(unit)) {
            text.push_back(static_cast<char>(unit - localetext::kUndecodableByte));
        } else {
            localetext::appendUtf8(text, unit);
        }
    }
    return text;
}

std::string load(const std::wstring& path, KestEngineHost& host)
{
    engines::Interpreter& interpreter = engines::Interpreter::current();
    const engines::Visit visit(engines::pythonGuest());
    std::string problem = interpreter.start(askedLibrary());
    if (!problem.empty()) {
        host.print(shown(path) + ": could not be loaded: " + problem + "\n");
        return problem;
    }
    return interpreter.load(localetext::narrow(path));
}

} // namespace

extern "C" __attribute__((visibility("default"))) void setPythonVersion(std::string libraryName)
{
    askedLibrary() = std::move(libraryName);
}

extern "C" __attribute__((visibility("default"))) int loadPythonFile(const wchar_t* path)
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
