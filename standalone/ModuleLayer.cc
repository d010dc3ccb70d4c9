#include "host/ModuleLayer.h"

#include "standalone/Host.h"
#include "standalone/RehearsedLibraries.h"
#include "standalone/Utf8.h"

#include "host/LocaleText.h"

#include <dlfcn.h>
#include <link.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace standalone {

namespace {

/// Where the library `name` lies when it comes with the program; empty when engines come from the system only.
std::string besideTheTool(const std::string& name)
{
    const std::string& folder = Host::current().settings().engineFolder;
    return folder.empty() ? std::string() : folder + "/" + name;
}

/// The library at `path`, or of that name, when it is loaded; takes no reference.
ModuleHandle loadedLibrary(const std::string& path)
{
    void* const library = path.empty() ? nullptr : ::dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (library != nullptr) {
        ::dlclose(library); // whoever loaded it keeps it
    }
    return library;
}

/// The path of a loaded library whose file is called `name`; empty when there is none. The dynamic linker itself knows
/// what was opened by path under that path only.
std::string loadedPath(const std::string& name)
{
    struct Search
    {
        std::string_view name;
        std::string path;
    };
    Search search{name, {}};
    ::dl_iterate_phdr(
        [](dl_phdr_info* library, std::size_t, void* target) {
            auto& wanted = *static_cast<Search*>(target);
            const std::string_view path(library->dlpi_name);
            const bool isFound = path.substr(path.rfind('/') + 1) == wanted.name;
            if (isFound) {
                wanted.path = path;
            }
            return isFound ? 1 : 0;
        },
        &search);
    return search.path;
}

/// What keeps `name` from being loaded, in words for who installs it. `message` is the dynamic linker's own; it begins
/// with the file that is at fault: `opened`, or one that the library needs.
std::string problemWith(std::string_view name, std::string_view opened, bool isBesideTheTool, std::string_view message)
{
    const std::string cause = " (" + displayable(message) + ")";
    const std::string_view culprit = message.substr(0, message.find(": "));
    if (culprit == opened && !isBesideTheTool) {
        return displayable(name) + " is not beside the tool and not among the system's libraries" + cause;
    }
    if (culprit != opened && message.find("cannot open shared object file") != std::string::npos) {
        return displayable(name) + " needs " + displayable(culprit) + ", which is not installed" + cause;
    }
    return displayable(name) + " cannot be loaded" + cause;
}

} // namespace

} // namespace standalone

using namespace standalone;

ModuleHandle GetModuleHandleW(const wchar_t* name)
{
    const std::string file = localetext::narrow(name);
    if (const ModuleHandle library = loadedLibrary(besideTheTool(file))) {
        return library;
    }
    if (const ModuleHandle library = loadedLibrary(file)) {
        return library;
    }
    return file.empty() ? nullptr : loadedLibrary(loadedPath(file));
}

ModuleHandle LoadLibraryW(const wchar_t* name)
{
    const std::string file = localetext::narrow(name);
    const std::string beside = besideTheTool(file);
    const bool isBesideTheTool = !beside.empty() && ::access(beside.c_str(), F_OK) == 0;
    // A damaged library beside the tool is not passed over for another one of the system: that would hide the damage.
    const std::string& opened = isBesideTheTool ? beside : file;
    // Without a name the dynamic linker would answer with the program itself.
    void* const library = file.empty() ? nullptr : ::dlopen(opened.c_str(), RTLD_NOW | RTLD_LOCAL);
    EngineOpen entry{name, library != nullptr, {}};
    if (library == nullptr) {
        const char* const message = file.empty() ? nullptr : ::dlerror();
        entry.problem = message != nullptr ? problemWith(file, opened, isBesideTheTool, message) : "No name was given";
    }
    Host::current().journal().add(std::move(entry));
    return library;
}

ProcAddress GetProcAddress(ModuleHandle module, const char* name)
{
    if (ProcAddress const rehearsed = Host::current().rehearsal() != nullptr ? rehearsedExport(name) : nullptr) {
        return ::dlsym(module, name) != nullptr ? rehearsed : nullptr;
    }
    return reinterpret_cast<ProcAddress>(::dlsym(module, name));
}
