// One run: the stand-alone host, the autoloader in it, and the report of what they do.
#pragma once

#include "cli/ConsoleEcho.h"
#include "cli/Library.h"
#include "cli/RunReport.h"
#include "standalone/Host.h"

#include <functional>
#include <string>
#include <vector>

namespace cli {

/// Starts the autoloader as a host does, and runs commands as a host does. HOME is set already.
class RunSession
{
public:
    /// `opened` is open; `echo` takes what is printed. Both must outlive the session.
    RunSession(standalone::HostSettings settings, Library& opened, ConsoleEcho& echo);

    RunSession(const RunSession&) = delete;
    RunSession& operator=(const RunSession&) = delete;
    ~RunSession() { close(); } // the autoloader needs its host until then

    /// Brings the menus in step, loads the start-up components, evaluates what was queued and reads the error log.
    /// An error that ends an entry point is in the report afterwards; it ends the start.
    void start();

    /// Runs the command `name`; one that the host does not know is asked of the autoloader first.
    void runCommand(const std::wstring& name);

    /// The names that the host knows, by registration or by announcement, sorted.
    std::vector<std::wstring> knownCommands() const;

    /// Closes the library; commands that are registered still run.
    void close() noexcept { library.close(); }

    const RunReport& report() const noexcept { return facts; }

private:
    bool bringMenusInStep();
    void request(const std::wstring& name, CommandRun& run);
    std::string reasonForUnknown(std::size_t index, const CommandRun& run);

    Library& library;
    ConsoleEcho& console;
    standalone::Host host;
    RunReport facts;
    ReportCollector collector;
    std::vector<standalone::LispQueue::Evaluation> evaluations; ///< of the current part
};

} // namespace cli
