#include "cli/RunCommand.h"

#include "cli/ConsoleEcho.h"
#include "cli/ExitStatus.h"
#include "cli/Library.h"
#include "cli/Prompt.h"
#include "cli/ReportJson.h"
#include "cli/ReportText.h"
#include "cli/ReservedOutput.h"
#include "cli/RunSession.h"
#include "cli/Shown.h"
#include "host/LocaleText.h"

#include <memory>
#include <optional>

namespace cli {

namespace {

constexpr char kRunExamples[] = R"(Examples:
  kestbundle run
      Start with the bundles that are installed, and say what became of each.
  kestbundle run --home /tmp/try --command UNITS
      Start with the bundles of a trial home folder, then run one command.
  kestbundle run --interactive
      Start, then take command names from a prompt; "?" lists those known, "quit" ends.
  kestbundle run --vernum 26.0_1_Linux_aarch64 --json
      Start as a host on another machine would, and write the report as JSON.

Exit status: 0 all went well, 1 something in the run did not, 2 wrong use.)";

/// Shows the parts of the report as they come about; as JSON, all of it at the end.
int runAndReport(const RunOptions& options, RunSession& session)
{
    const auto show = [&](const std::string& text) {
        if (!options.json) {
            print(stdout, text);
        }
    };
    const auto runOne = [&](const std::wstring& name) {
        show(commandHeading(name));
        session.runCommand(name);
        show(commandText(session.report(), session.report().commandRuns.size() - 1));
    };
    show(hostText(session.report()));
    session.start();
    show(startText(session.report()));
    for (const std::string& name : options.commands) {
        runOne(localetext::widen(name));
    }
    if (options.interactive) {
        promptForCommands(options.json ? nullptr : stdout, runOne, [&] { return session.knownCommands(); });
    }
    session.close();
    show(endText(session.report()));
    return session.report().problems().any() ? kSomethingFailed : kAllWell;
}

} // namespace

void addRunCommand(CLI::App& app, Action& chosen)
{
    Subcommand run(app, "run", "Start the stand-alone host with the installed bundles and report");
    const auto options = std::make_shared<RunOptions>();
    addHostOptions(run, options->host);
    run.texts("--command", options->commands, "NAME",
              "Run the command NAME after the start; may be given more than once");
    run.flag("--interactive", options->interactive, "Then read command names from standard input");
    run.flag("--json", options->json, "Write the report as one JSON document");
    run.footer(kRunExamples);
    run.does(chosen, [options] { return cli::run(*options); });
}

int run(const RunOptions& options)
{
    standalone::HostSettings settings = settingsFrom(options.host);
    std::optional<ReservedOutput> output;
    if (options.json) {
        output.emplace();
    }
    Library library;
    if (const std::string problem = library.open(); !problem.empty()) {
        throw WrongUse("The autoloader library cannot be opened:\n" + problem);
    }
    ConsoleEcho console(!options.json);
    RunSession session(std::move(settings), library, console);
    const int status = runAndReport(options, session);
    if (output) {
        output->write(reportJson(session.report(), status));
    }
    return status;
}

} // namespace cli
