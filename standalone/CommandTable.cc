#include "standalone/CommandTable.h"

#include "standalone/CaughtError.h"
#include "standalone/Host.h"
#include "standalone/Utf8.h"

#include "host/CommandTable.h"
#include "host/LocaleText.h"

#include <utility>

namespace standalone {

namespace {

std::wstring upperCase(std::wstring name)
{
    localetext::upperByGlobalLocale(name);
    return name;
}

} // namespace

CommandRegistry::CommandRegistry(Journal& events) : journal(events) {}

void CommandRegistry::announce(std::wstring_view name, int kind)
{
    const std::string_view packed = announcedNames.keep(name);
    if (!announced.insert_or_assign(packed, kind).second) {
        announcedNames.takeBack(packed);
    }
    journal.addAnnouncement(name, kind);
}

std::optional<int> CommandRegistry::announcedKind(const std::wstring& name) const
{
    const auto found = announced.find(PackedTexts::packed(upperCase(name)));
    return found == announced.end() ? std::nullopt : std::optional(found->second);
}

bool CommandRegistry::add(std::string_view name, KestCommandFunction function, void* context)
{
    if (function == nullptr) {
        return false;
    }
    const auto call = [function, context] {
        function(context);
        return std::string();
    };
    return add(name, call, false);
}

bool CommandRegistry::addOfEngine(std::string_view name, KestEngineCommand function, int number)
{
    return add(
        name, [function, number] { return function(number); }, true);
}

bool CommandRegistry::add(std::string_view name, std::function<std::string()> function, bool mayReplaceItsOwn)
{
    std::optional<std::wstring> wide = wideFromUtf8(name);
    if (!wide || wide->empty()) {
        return false;
    }
    Registration* const registration = registering.empty() ? nullptr : registering.back();
    const std::string module = registration != nullptr ? registration->module : "";
    const std::wstring key = upperCase(std::move(*wide));
    const auto found = registered.find(key);
    const bool isNew = found == registered.end();
    if (!isNew && !(mayReplaceItsOwn && !module.empty() && found->second.module == module)) {
        return false;
    }
    Command command{std::move(function), module};
    if (registration != nullptr) { // first: without memory for this, the command would outlive its module
        registration->names.push_back(key);
    }
    if (!isNew) {
        found->second = std::move(command);
        return true;
    }
    const auto place = registered.emplace(key, std::move(command)).first;
    try {
        journal.add(CommandRegistered{key, displayable(std::string_view(module))});
    } catch (...) {
        registered.erase(place);
        throw;
    }
    return true;
}

bool CommandRegistry::has(const std::wstring& name) const
{
    return registered.contains(upperCase(name));
}

std::optional<std::string> CommandRegistry::moduleOf(const std::wstring& name) const
{
    const auto found = registered.find(upperCase(name));
    return found == registered.end() ? std::nullopt : std::optional(found->second.module);
}

RunResult CommandRegistry::run(const std::wstring& name)
{
    const auto found = registered.find(upperCase(name));
    if (found == registered.end()) {
        return {false, "no module has registered a command of this name"};
    }
    const Command command = found->second; // the command may change the table while it runs
    try {
        std::string problem = command.run();
        return {problem.empty(), std::move(problem)};
    } catch (...) {
        return {false, "the command ended with " + describeCaughtError()};
    }
}

CommandRegistry::Registration::Registration(CommandRegistry& commands, std::string path)
    : registry(commands), module(std::move(path))
{
    registry.registering.push_back(this);
}

CommandRegistry::Registration::~Registration()
{
    registry.registering.pop_back();
}

void CommandRegistry::Registration::takeBack()
{
    for (const std::wstring& name : names) {
        registry.registered.erase(name);
    }
    names.clear();
}

} // namespace standalone

void KestCommandString2TypeMap::addEntry(const wchar_t* name, int type)
{
    standalone::Host::current().commands().announce(name, type);
}

KestCommandString2TypeMap* KestGetCommandString2TypeMap()
{
    static KestCommandString2TypeMap theOne;
    return &theOne;
}

// A module keeps these for as long as it is loaded, which is longer than a host lives.

int kestRegisterCommand(const char* name, KestCommandFunction function, void* context)
{
    standalone::Host* host = standalone::Host::living();
    return host != nullptr && name != nullptr && host->commands().add(name, function, context) ? 1 : 0;
}

void kestPrint(const char* text)
{
    if (standalone::Host* host = standalone::Host::living(); host != nullptr && text != nullptr) {
        host->print(text);
    }
}

const char* kestHostVersion(void)
{
    standalone::Host* host = standalone::Host::living();
    return host != nullptr ? host->versionText().c_str() : "";
}
