#include "cli/ListCommand.h"

#include "cli/Examination.h"
#include "cli/ExitStatus.h"
#include "cli/ListReport.h"
#include "cli/ListedBundle.h"
#include "cli/Shown.h"
#include "cli/Terminal.h"
#include "cli/rules/Reasons.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace cli {

namespace {

constexpr char kListExamples[] = R"(Nothing is loaded and nothing is changed: the bundles are only looked at.

Examples:
  kestbundle list
      What is installed, and what becomes of it.
  kestbundle list --home /tmp/try
      The same for a trial home folder.
  kestbundle list --json | jq -r '.bundles[] | select(.state == "malformed") | .folder'
      The folders of the bundles whose manifest is no well-formed XML.

Exit status: 0 every bundle loads, 1 one does not, or not all of it, 2 wrong use.)";

} // namespace

void addListCommand(CLI::App& app, Action& chosen)
{
    Subcommand list(app, "list", "Say what is installed, and what becomes of each bundle");
    const auto options = std::make_shared<ListOptions>();
    addHostOptions(list, options->host);
    list.flag("--json", options->json, "Write the list as one JSON document");
    list.footer(kListExamples);
    list.does(chosen, [options] { return cli::list(*options); });
}

int list(const ListOptions& options)
{
    const Examination examination = examineInstalled(settingsFrom(options.host));
    const Findings reasons = findReasons(examination);
    const std::vector<ListedBundle> bundles = listedBundles(examination, reasons);
    const bool isAllWell = examination.failure.empty() && std::all_of(bundles.begin(), bundles.end(), cli::isAllLoaded);
    const int status = isAllWell ? kAllWell : kSomethingFailed;
    options.json ? printUtf8(stdout, listJson(examination, reasons, status))
                 : print(stdout, listText(examination, reasons, {terminalWidth(), hasColours()}));
    return status;
}

} // namespace cli
