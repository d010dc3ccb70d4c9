#include "cli/ExplainCommand.h"

#include "cli/Examination.h"
#include "cli/ExitStatus.h"
#include "cli/ExplainReport.h"
#include "cli/Explanation.h"
#include "cli/Shown.h"
#include "cli/Terminal.h"

#include <memory>

namespace cli {

namespace {

constexpr char kExplainExamples[] = R"(Nothing is loaded and nothing is changed: the bundles are only looked at.

Examples:
  kestbundle explain
      What stops something, in short, for all bundles.
  kestbundle explain Tools
      Everything about the bundle folder Tools.bundle. Its path, the package's Name or its UpgradeCode do as well.
  kestbundle explain CUTLIST
      What loads when this command is used first, and who else declares it.
  kestbundle explain tools.cuix
      Where this menu comes from, and whether the host gets to see it.
  kestbundle explain --json | jq -r '.bundles[].findings[] | select(.severity == "error") | .what'
      All errors, a line each.

Exit status: 0 nothing stops it, 1 there is an error or a warning, 2 wrong use, or nothing has that name.)";

} // namespace

void addExplainCommand(CLI::App& app, Action& chosen)
{
    Subcommand explain(app, "explain", "Say why a bundle, a command or a menu loads, or does not");
    const auto options = std::make_shared<ExplainOptions>();
    explain.arguments("SUBJECT", options->subjects, "",
                      "A bundle (folder, Name or UpgradeCode), a command, or a menu (default: all bundles, in short)");
    addHostOptions(explain, options->host);
    explain.flag("--json", options->json, "Write the explanation as one JSON document");
    explain.footer(kExplainExamples);
    explain.does(chosen, [options] { return cli::explain(*options); });
}

int explain(const ExplainOptions& options)
{
    const Examination examination = examineInstalled(settingsFrom(options.host));
    const auto explanation = explain(examination, options.subjects);
    const int status = hasProblems(*explanation) ? kSomethingFailed : kAllWell;
    options.json ? printUtf8(stdout, explainJson(*explanation, status))
                 : print(stdout, explainText(*explanation, hasColours()));
    return status;
}

} // namespace cli
