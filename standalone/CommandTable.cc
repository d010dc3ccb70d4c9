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

CommandRegistry::CommandRegistry(Journal& host) : journal(host) {}

void CommandRegistry::announce(const std::wstring& name, int kind)
{
    announced[upperCase(name)] = kind;
    journal.add(CommandAnnounced{name, kind});
}

std::optional<int> CommandRegistry::announcedKind(const std::wstring& name) const
{
    const auto found = announced.find(upperCase(name));
    return found == announced.end() ? std::nullopt : std::optional(found->second);
}

bool CommandRegistry::add(std::string_view name, KestCommandFunction function, void* context)
{
    std::optional<std::wstring> wide = wideFromUtf8(name);
    if (!wide || wide->empty() || function == nullptr) {
        return false;
    }
    const std::string module = registering.empty() ? "" : registering.back();
    const auto [place, isNew] = registered.try_emplace(upperCase(std::move(*wide)), Command{function, context, module});
    if (isNew) {
        journal.add(CommandRegistered{place->first, displayable(std::string_view(module))});
    }
    return isNew;
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
        command.function(command.context);
        return {true, ""};
    } catch (...) {
        return {false, "the command ended with " + describeCaughtError()};
    }
}

CommandRegistry::Registration::Registration(CommandRegistry& commands, std::string module) : registry(commands)
{
    registry.registering.push_back(std::move(module));
}

CommandRegistry::Registration::~Registration()
{
    registry.registering.pop_back();
}

void CommandRegistry::takeBack(const std::string& module)
{
    std::erase_if(registered, [&](const auto& entry) { return entry.second.module == module; });
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
