// The stand-alone host: everything that host/ declares, for real, in a process of its own.
#pragma once

#include "standalone/Journal.h"

#include <functional>
#include <memory>
#include <string>

namespace standalone {

class CommandRegistry;
class Configuration;
class EngineServices;
class LispQueue;
class ModuleLinker;
class Rehearsal;

/// How a stand-alone host is set up. Paths are narrow, as the system takes them.
struct HostSettings
{
    std::string programFolder;     ///< absolute, with or without a "/" at its end
    std::string engineFolder;      ///< where engine libraries lie; empty: the dynamic linker's own search only
    std::string configurationFile; ///< the SQLite file; its folder is made when the host starts
    std::wstring vernum;           ///< the value of "VERNUM"; empty: machineVernum()
    std::wstring productName;      ///< empty: kDefaultProductName
    unsigned machine = 0;          ///< that a rehearsal is about, by its number in ELF; 0: this one
    bool rehearses = false;        ///< nothing is executed, nothing on disk is changed; see Rehearsal
};

inline constexpr wchar_t kDefaultProductName[] = L"TARVIX";

/// "VERNUM" of the running machine: version, build, operating system and architecture, joined by "_"; the last two
/// are what uname() says.
std::wstring machineVernum();

/// HOME + "/.config/ORRELIN", the user's configuration folder; empty when HOME is not set.
std::string userConfigurationFolder();

/// One host. While it lives, the functions of host/ answer for it; there is at most one at a time.
class Host
{
public:
    /// What the host and its modules print goes to `console`, UTF-8, in pieces as they come. Makes the folder of the
    /// configuration file; a failure is a notice in the journal, not an error.
    Host(HostSettings settings, std::function<void(const std::string&)> console);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The living host. There must be one.
    static Host& current();

    /// The living host, or null: for what modules and the autoloader may still ask after a host has ended.
    static Host* living() noexcept;

    /// Completed: nothing that has a default is empty, and the configuration file's path is absolute.
    const HostSettings& settings() const noexcept;

    /// "VERNUM" in UTF-8.
    const std::string& versionText() const noexcept;

    /// "VERNUM" as the autoloader is given it; owned by the host, not to be changed.
    wchar_t* vernum() noexcept;

    Journal& journal() noexcept;
    Configuration& configuration() noexcept;
    CommandRegistry& commands() noexcept;
    LispQueue& lispQueue() noexcept;
    ModuleLinker& moduleLinker() noexcept;
    EngineServices& engineServices() noexcept;

    /// Null unless the host rehearses.
    Rehearsal* rehearsal() noexcept;

    /// Prints `text`, UTF-8, to the console.
    void print(const std::string& text);

    /// Adds a notice to the journal.
    void notice(std::string text);

private:
    struct Services;
    std::unique_ptr<Services> services;
};

} // namespace standalone
