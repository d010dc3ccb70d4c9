#include "cli/LogCommand.h"

#include "cli/ExitStatus.h"
#include "cli/LogReport.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"
#include "cli/Terminal.h"

#include <memory>

namespace cli {

namespace {

constexpr char kLogExamples[] =
    R"(The host empties the log at each start, so that it tells of the last one only. The log is not changed.

Examples:
  kestbundle log
      What the last start logged, what that means, and what to change.
  kestbundle log --home /tmp/try
      The same for a trial home folder.
  kestbundle log BundleErrorLog.txt
      A log that somebody has sent. Bundles of that name that are installed here are compared with it.
  kestbundle log --json | jq -r '.records[] | select(.standing == "still") | .path'
      What a start would log again.

Exit status: 0 nothing is logged, 1 something is, or the log is cut off, 2 wrong use, or the log is missing, unreadable
or none.)";

} // namespace

void addLogCommand(CLI::App& app, Action& chosen)
{
    Subcommand log(app, "log", "Explain what the last start wrote to the error log");
    const auto options = std::make_shared<LogOptions>();
    log.argument("FILE", options->file, "", "The log (default: the one in the home folder)");
    addHostOptions(log, options->host);
    log.flag("--json", options->json, "Write the log as one JSON document");
    log.footer(kLogExamples);
    log.does(chosen, [options] { return cli::log(*options); });
}

int log(const LogOptions& options)
{
    const standalone::HostSettings settings = settingsFrom(options.host);
    const bool isUsual = options.file.empty();
    const LogFile file =
        readLogFile(isUsual ? standalone::userConfigurationFolder() + "/BundleErrorLog.txt" : options.file, isUsual);
    if (file.isForeign) {
        throw WrongUse("The file " + cli::quoted(shown(file.path)) +
                       " is no error log of the autoloader: its first line is no time.");
    }
    const std::vector<LogEntry> entries =
        file.text.records.empty() ? std::vector<LogEntry>() : logEntries(file, examineInstalled(settings));
    const bool isAllWell = entries.empty() && file.isWhole && file.text.isComplete;
    const int status = isAllWell ? kAllWell : kSomethingFailed;
    options.json ? printUtf8(stdout, logJson(file, entries, status))
                 : print(stdout, logText(file, entries, hasColours()));
    return status;
}

} // namespace cli
