// The commands of the stand-alone host: the names that were announced, and the functions that modules registered.
#pragma once

#include "standalone/Journal.h"
#include "standalone/ModuleApi.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

/// How the run of a command ended.
struct RunResult
{
    bool ran = false;    ///< the function was called and returned
    std::string problem; ///< UTF-8, one line; why not, else empty
};

/// Names are upper case, by the mapping of the global locale; what callers pass in may be in any letter case.
class CommandRegistry
{
public:
    explicit CommandRegistry(Journal& journal);
    CommandRegistry(const CommandRegistry&) = delete;
    CommandRegistry& operator=(const CommandRegistry&) = delete;

    /// Notes that `name` is known by name, with its kind; a later announcement of the same name replaces the kind.
    void announce(const std::wstring& name, int kind);

    /// The kind under which `name` was announced.
    std::optional<int> announcedKind(const std::wstring& name) const;

    /// Registers `function` under `name`, UTF-8. False, and nothing changed, when the name is empty or not UTF-8, or
    /// has a function already, or `function` is null.
    bool add(std::string_view name, KestCommandFunction function, void* context);

    /// Whether a function is registered under `name`.
    bool has(const std::wstring& name) const;

    /// The narrow path of the module whose entry registered `name`; nothing when no function has it, empty when it
    /// was registered outside an entry.
    std::optional<std::string> moduleOf(const std::wstring& name) const;

    /// Calls the function under `name`. An error that leaves it ends the command, not the host. The function may
    /// register and run commands.
    RunResult run(const std::wstring& name);

    /// While it lives, commands are registered for `module`, a narrow path.
    class Registration
    {
    public:
        Registration(CommandRegistry& commands, std::string module);
        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;
        ~Registration();

    private:
        CommandRegistry& registry;
    };

    /// Forgets every command that `module` registered.
    void takeBack(const std::string& module);

private:
    struct Command
    {
        KestCommandFunction function;
        void* context;
        std::string module;
    };

    Journal& journal;
    std::map<std::wstring, int> announced;
    std::map<std::wstring, Command> registered;
    std::vector<std::string> registering; ///< innermost last
};

} // namespace standalone
