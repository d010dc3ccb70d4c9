#include "standalone/RehearsedLibraries.h"

#include "standalone/Host.h"
#include "standalone/Rehearsal.h"

#include "host/Engines.h"
#include "host/LocaleText.h"

#include <algorithm>
#include <dlfcn.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <type_traits>
#include <vector>

// The linker leads every call of dlopen() in a program with this host to __wrap_dlopen(), and __real_dlopen() is the
// true one (option --wrap): the autoloader opens the libraries of Python by itself, and by names that a manifest gives.
extern "C" void* __real_dlopen(const char* name, int mode);
extern "C" void* __wrap_dlopen(const char* name, int mode);

/// Stands in for the Python engine's export of this name, where the program itself stands in for the engine.
extern "C" std::remove_pointer_t<engines::LoadPythonFile> loadPythonFile;

namespace standalone {

namespace {

constexpr std::string_view kPythonEngine = "libVxPythonLoad.so";
constexpr std::string_view kLispEngine = "libKestLispEvaluator.so";

/// The rehearsing host of this process, or null.
Host* rehearsingHost() noexcept
{
    Host* const host = Host::living();
    return host != nullptr && host->rehearsal() != nullptr ? host : nullptr;
}

bool isRegularFile(const std::string& path)
{
    struct stat found
    {
    };
    return ::stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode);
}

/// The folders in which libraries are searched for by name.
std::vector<std::string> libraryFolders()
{
    std::vector<std::string> folders;
    void* const program = __real_dlopen(nullptr, RTLD_LAZY);
    Dl_serinfo size{};
    if (program == nullptr || ::dlinfo(program, RTLD_DI_SERINFOSIZE, &size) != 0) {
        return folders;
    }
    const std::unique_ptr<char[]> room(new char[size.dls_size]);
    auto* const all = reinterpret_cast<Dl_serinfo*>(room.get());
    *all = size;
    if (::dlinfo(program, RTLD_DI_SERINFO, all) == 0) {
        for (unsigned index = 0; index < all->dls_cnt; ++index) {
            folders.emplace_back(all->dls_serpath[index].dls_name);
        }
    }
    ::dlclose(program);
    return folders;
}

/// Whether a library of this name would be found. The code in a library runs when it is opened, and a manifest may name
/// any; so none is opened but the interpreters of Python, which the system's package manager has put there.
bool canBeOpened(const std::string& name, int mode)
{
    if (name.find('/') != std::string::npos) {
        return false; // it may lie in a bundle
    }
    if (name.starts_with("libpython")) {
        void* const library = __real_dlopen(name.c_str(), mode);
        return library != nullptr && ::dlclose(library) == 0;
    }
    const std::vector<std::string> folders = libraryFolders();
    return std::any_of(folders.begin(), folders.end(),
                       [&](const std::string& folder) { return isRegularFile(folder + "/" + name); });
}

/// Whether the Python engine is installed and whole.
bool hasPythonEngine(int mode)
{
    void* const engine = __real_dlopen(kPythonEngine.data(), mode);
    if (engine == nullptr) {
        return false;
    }
    const bool isWhole = ::dlsym(engine, "loadPythonFile") != nullptr;
    ::dlclose(engine);
    return isWhole;
}

bool netLoad(const CStdStr<wchar_t>& path, int /*reserved*/)
{
    Host* const host = rehearsingHost();
    return host != nullptr && host->rehearsal()->meetAssembly(path);
}

} // namespace

ProcAddress rehearsedExport(const char* name) noexcept
{
    return std::string_view(name) == "netLoad" ? reinterpret_cast<ProcAddress>(&netLoad) : nullptr;
}

} // namespace standalone

using namespace standalone;

void* __wrap_dlopen(const char* name, int mode)
{
    Host* const host = rehearsingHost();
    const std::string_view wanted(name != nullptr ? name : "");
    // What a manifest names begins with "lib". The other engines are opened for real, so that what they lack is told.
    if (host == nullptr || !wanted.starts_with("lib") || wanted == kLispEngine) {
        return __real_dlopen(name, mode);
    }
    const bool isOpened = wanted == kPythonEngine ? hasPythonEngine(mode) : canBeOpened(std::string(wanted), mode);
    return isOpened ? __real_dlopen(nullptr, mode) : nullptr; // the program itself is in its place
}

int loadPythonFile(const wchar_t* path)
{
    Host* const host = rehearsingHost();
    return host != nullptr && host->rehearsal()->meetScript(path) ? 0 : 1;
}
