#include "standalone/DynamicLinker.h"

#include "standalone/CaughtError.h"
#include "standalone/CommandTable.h"
#include "standalone/EngineServices.h"
#include "standalone/Host.h"
#include "standalone/ModuleApi.h"
#include "standalone/ModuleFile.h"
#include "standalone/ModuleImage.h"
#include "standalone/Utf8.h"

#include "host/LocaleText.h"

#include <cerrno>
#include <cstring>
#include <cwchar>
#include <dlfcn.h>
#include <link.h>
#include <string_view>
#include <sys/stat.h>

namespace standalone {

namespace {

using ModuleEntry = decltype(&kestModuleEntry);

/// Why the file at `path` must not be opened; empty when it may.
std::string problemOfFile(const std::string& path)
{
    if (path.find('/') == std::string::npos) {
        return "the path names no folder, and modules are not searched for";
    }
    struct stat found
    {
    };
    if (::stat(path.c_str(), &found) != 0) {
        return displayable(std::string_view(std::strerror(errno)));
    }
    if (!S_ISREG(found.st_mode)) {
        return "it is not a regular file"; // opening a pipe would wait for its other end
    }
    return problemOfModuleFile(path);
}

/// The entry of `module` itself: a lookup also finds what the libraries that it needs export.
ModuleEntry entryOf(void* module)
{
    void* symbol = ::dlsym(module, "kestModuleEntry");
    link_map* self = nullptr;
    Dl_info place{};
    if (symbol == nullptr || ::dlinfo(module, RTLD_DI_LINKMAP, &self) != 0 || ::dladdr(symbol, &place) == 0 ||
        std::strcmp(place.dli_fname, self->l_name) != 0) {
        return nullptr;
    }
    return reinterpret_cast<ModuleEntry>(symbol);
}

} // namespace

std::string dynamicLoadingReason()
{
    const char* text = ::dlerror();
    return text != nullptr ? displayable(std::string_view(text)) : "the system gives no reason";
}

ModuleLinker::ModuleLinker(Host& owner) : host(owner) {}

KsRxClass* ModuleLinker::isA() const
{
    static KsRxClass linkerClass(L"KsRxDynamicLinkerImp", KsRxDynamicLinker::desc());
    return &linkerClass;
}

bool ModuleLinker::loadModule(const wchar_t* path, bool /*printit*/, bool /*asCommand*/)
{
    const std::size_t entry = host.journal().add(ModuleLoad{path, false, "", 0, 0});
    const LoadTimer timer(host);
    const std::string file = localetext::narrow(path);
    const std::string problem = host.rehearsal() == nullptr ? load(file) : rehearse(file);
    if (auto* const noted = host.journal().amend<ModuleLoad>(entry)) {
        noted->loaded = problem.empty();
        noted->problem = problem;
        noted->milliseconds = timer.milliseconds();
    }
    if (!problem.empty()) {
        host.print(displayable(std::wstring_view(path)) + ": could not be loaded: " + problem + "\n");
    }
    return problem.empty();
}

std::string ModuleLinker::load(const std::string& path)
{
    if (std::string problem = problemOfFile(path); !problem.empty()) {
        return problem;
    }
    void* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        return dynamicLoadingReason();
    }
    std::string problem;
    if (beingLoaded.contains(module)) {
        problem = "it is being loaded already, and its own entry asked for it";
    } else if (!loaded.contains(module)) {
        problem = runEntry(path, module);
        if (problem.empty()) {
            loaded.insert(module);
            return "";
        }
    }
    ::dlclose(module); // gives back what this request took; a module that is loaded stays
    return problem;
}

std::string ModuleLinker::rehearse(const std::string& path)
{
    const unsigned machine = host.settings().machine;
    const bool isForeign = machine != 0 && machine != ownMachine();
    std::string problem = isForeign ? problemOnMachine(path, machine) : problemOfFile(path);
    if (problem.empty() && !isForeign) {
        problem = problemOf(examineModule(path, rehearsed));
    }
    if (problem.empty() && !isForeign) {
        rehearsed.add(path);
    }
    return problem;
}

std::string ModuleLinker::runEntry(const std::string& path, void* module)
{
    ::dlerror(); // an older error is none of this module's
    const ModuleEntry entry = entryOf(module);
    if (entry == nullptr) {
        const char* text = ::dlerror();
        return "it does not export kestModuleEntry" +
               (text != nullptr ? ": " + displayable(std::string_view(text)) : std::string());
    }
    CommandRegistry::Registration registration(host.commands(), path);
    beingLoaded.insert(module);
    std::string problem;
    try {
        if (const int status = entry(); status != 0) {
            problem = "its entry returned " + std::to_string(status);
        }
    } catch (...) { // the exception's own code lies in the module: it must be gone before the module is
        problem = "its entry ended with " + describeCaughtError();
    }
    beingLoaded.erase(module);
    if (!problem.empty()) {
        registration.takeBack(); // before the module is closed: they hold its code
    }
    return problem;
}

void ModuleLinker::noteLoadType(const wchar_t* path, int type)
{
    Journal& journal = host.journal();
    for (std::size_t index = journal.size(); index-- > 0;) {
        if (auto* noted = journal.amend<ModuleLoad>(index); noted != nullptr && noted->path == path) {
            noted->loadType = type;
            return;
        }
    }
}

} // namespace standalone

KsRxClass::KsRxClass(const wchar_t* name, const KsRxClass* parent) noexcept : className(name), parentClass(parent) {}

bool KsRxClass::isDerivedFrom(const KsRxClass* other) const noexcept
{
    for (const KsRxClass* one = this; one != nullptr; one = one->parentClass) {
        if (one == other) {
            return true;
        }
    }
    return false;
}

KsRxObject* KsRxDictionary::at(const wchar_t* key) const
{
    standalone::Host* host = standalone::Host::living();
    return host != nullptr && std::wcscmp(key, L"DynamicLinker") == 0 ? &host->moduleLinker() : nullptr;
}

KsRxClass* KsRxDynamicLinker::desc()
{
    static KsRxClass linkerClass(L"KsRxDynamicLinker", nullptr);
    return &linkerClass;
}

void KsRxDynamicLinkerImp::setKrxLoadType(const wchar_t* path, eRxKrxLoadType type)
{
    standalone::Host::current().moduleLinker().noteLoadType(path, type);
}

KsRxDictionary* ksrxSysRegistry()
{
    static KsRxDictionary theOne;
    return &theOne;
}
