#include "cli/MenusCommand.h"

#include "cli/ExitStatus.h"
#include "cli/MenusReport.h"
#include "cli/Shown.h"
#include "cli/Terminal.h"

#include <memory>

namespace cli {

namespace {

constexpr char kMenusExamples[] = R"(Nothing is written: the list is what it was afterwards.
"-" is taken out of the list, "+" is new in it; below each entry stands where it comes from.

Examples:
  kestbundle menus
      What the next start makes of the host's list of menus, and which menus it leaves out.
  kestbundle menus --home /tmp/try
      The same for a trial home folder.
  kestbundle menus --json | jq -r '.unregistered[] | .component + ": " + .reason'
      The menus that are not registered, each with the reason.

Exit status: 0 all is well, also when the list changes, 1 a menu of a bundle is not registered or an entry is damaged,
by the next start or the one after it, 2 wrong use.)";

} // namespace

void addMenusCommand(CLI::App& app, Action& chosen)
{
    Subcommand menus(app, "menus", "Show what the next start makes of the host's list of menus");
    const auto options = std::make_shared<MenusOptions>();
    addHostOptions(menus, options->host);
    menus.flag("--json", options->json, "Write the account as one JSON document");
    menus.footer(kMenusExamples);
    menus.does(chosen, [options] { return cli::menus(*options); });
}

int menus(const MenusOptions& options)
{
    const Examination examination = examineInstalled(settingsFrom(options.host));
    const MenuAccount account = menuAccount(examination);
    const int status = isAllWell(examination, account) ? kAllWell : kSomethingFailed;
    options.json ? printUtf8(stdout, menusJson(examination, account, status))
                 : print(stdout, menusText(examination, account, hasColours()));
    return status;
}

} // namespace cli
