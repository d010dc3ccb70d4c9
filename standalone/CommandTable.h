// The commands of the stand-alone host: the names that were announced, and the functions that modules registered.
#pragma once

#include "standalone/Journal.h"
#include "standalone/ModuleApi.h"
#include "standalone/PackedTexts.h"

#include "host/EngineHost.h"

#include <functional>
#include <map>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
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
    explicit CommandRegistry(Journal& events);
    CommandRegistry(const CommandRegistry&) = delete;
    CommandRegistry& operator=(const CommandRegistry&) = delete;

    /// Notes that `name`, which is in upper case already, is known by name, with its kind; a later announcement of the
    /// same name replaces the kind.
    void announce(std::wstring_view name, int kind);

    /// The kind under which `name` was announced.
    std::optional<int> announcedKind(const std::wstring& name) const;

    /// Registers `function` under `name`, UTF-8. False, and nothing changed, when the name is empty or not UTF-8, or
    /// has a function already, or `function` is null.
    bool add(std::string_view name, KestCommandFunction function, void* context);

    /// Registers command `number` of an engine under `name`, UTF-8. As add(), but a component that is loaded again
    /// replaces its own commands.
    bool addOfEngine(std::string_view name, KestEngineCommand function, int number);

    /// Whether a function is registered under `name`.
    bool has(const std::wstring& name) const;

    /// The narrow path of the component that registered `name` while it was loaded; nothing when no function has it,
    /// empty when no component was being loaded.
    std::optional<std::string> moduleOf(const std::wstring& name) const;

    /// Calls the function under `name`. An error that leaves it, or that the engine tells of, ends the command, not
    /// the host. The function may register and run commands.
    RunResult run(const std::wstring& name);

    /// While it lives, commands are registered for the component `module`, a narrow path. The innermost one counts.
    class Registration
    {
    public:
        Registration(CommandRegistry& commands, std::string path);
        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;
        ~Registration();

        /// Forgets every command that was registered through this.
        void takeBack();

    private:
        friend class CommandRegistry;

        CommandRegistry& registry;
        std::string module;
        std::vector<std::wstring> names;
    };

private:
    struct Command
    {
        std::function<std::string()> run; ///< returns what went wrong
        std::string module;
    };

    bool add(std::string_view name, std::function<std::string()> function, bool mayReplaceItsOwn);

    Journal& journal;
    // Nothing is taken back of what was announced: its names and nodes lie in a few blocks.
    PackedTexts announcedNames;
    std::pmr::monotonic_buffer_resource announcedMemory;
    std::pmr::unordered_map<std::string_view, int> announced{&announcedMemory}; ///< by the packed name
    std::map<std::wstring, Command> registered;
    std::vector<Registration*> registering; ///< innermost last
};

} // namespace standalone
