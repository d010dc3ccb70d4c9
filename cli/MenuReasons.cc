#include "cli/MenuReasons.h"

#include "cli/ReportLines.h"
#include "cli/Shown.h"

namespace cli {

namespace {

std::string asSentence(const std::string& problem)
{
    const std::string shownProblem = shownLine(problem);
    return shownProblem.ends_with('.') ? shownProblem : shownProblem + ".";
}

/// The bundle before `bundle` with the same UpgradeCode, of which only the first gives menus; null when there is none.
const ExaminedBundle* firstOfSameCode(const Examination& examination, const ExaminedBundle& bundle)
{
    const std::wstring& code = bundle.records.package.upgradeCode;
    for (const ExaminedBundle& other : examination.bundles) {
        if (&other != &bundle && other.isKept() && other.records.package.upgradeCode == code) {
            return &other;
        }
    }
    return nullptr;
}

} // namespace

std::string reasonOfEntry(const ExaminedComponent& component, const std::wstring& entry)
{
    if (component.menu.empty()) {
        const bool isMenu = component.outcome == ComponentOutcome::kMenuFailed;
        const std::wstring& path = component.record.moduleName;
        return (path.empty() ? "A component without a ModuleName that begins with \"./\"" : quoted(shown(path))) +
               (isMenu ? " is a menu that cannot be converted" : " loads at start-up and is no menu") +
               "; behind a menu of its bundle it leaves an empty entry. " +
               (isMenu ? "Mend the menu file." : "Name the menus behind all other components.");
    }
    if (component.menu != entry) {
        return "The path " + quoted(shown(component.menu)) +
               " has a \";\" in it, which splits it into entries that name no file. Rename the folder or the file.";
    }
    return "";
}

std::string reasonAgainst(const Examination& examination, const ExaminedBundle& bundle,
                          const ExaminedComponent& component)
{
    if (component.outcome == ComponentOutcome::kMenuFailed) {
        return "It cannot be converted: " +
               (component.problem.empty() ? "the host gives no reason." : asSentence(component.problem));
    }
    if (bundle.state == BundleState::kMalformed) {
        return "Its bundle is dropped: its manifest is no well-formed XML.";
    }
    if (bundle.state == BundleState::kRequirementNotMet) {
        return "Its bundle is dropped: this host is not what it requires.";
    }
    if (!component.record.loadsAtStartup()) {
        return component.record.loadCtrlFlag != 1
                   ? "Its LoadCtrlFlag is " + std::to_string(component.record.loadCtrlFlag) +
                         "; only menus with 1 are registered."
                   : "It is not to be loaded at start-up; only such menus are registered.";
    }
    const ExaminedBundle* const first = firstOfSameCode(examination, bundle);
    if (first != nullptr && bundle.state != BundleState::kWaiting) {
        return "The bundle " + quoted(shown(first->folder)) + " has the same UpgradeCode " +
               quoted(shown(bundle.records.package.upgradeCode)) + "; only one of them gives its menus.";
    }
    return "Its bundle depends on a bundle that is missing, is dropped or depends on it in turn.";
}

} // namespace cli
