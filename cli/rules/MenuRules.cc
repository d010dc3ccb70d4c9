#include "cli/rules/MenuRules.h"

#include "cli/MenuDifference.h"
#include "cli/Shown.h"
#include "cli/rules/LoadFindings.h"
#include "cli/rules/MenuTurn.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"
#include "menus/MenuKind.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <unistd.h>

namespace cli {

namespace {

bool isMenu(const ExaminedComponent& component)
{
    return menuKindOf(component.record.moduleName) != MenuKind::kOther;
}

bool isPlaced(const ExaminedComponent& component)
{
    return component.outcome == ComponentOutcome::kMenu || component.outcome == ComponentOutcome::kMenuFailed;
}

std::string subjectOf(const ComponentInput& component)
{
    return named(inBundle(component.input.bundle, component.record().moduleName));
}

void addNotAtStartup(const ComponentInput& component, Findings& findings)
{
    const bool isFlag = component.record().loadCtrlFlag != 1;
    const std::wstring& attribute = isFlag ? BundleStrConst::entry_LoadCtrlFlag : BundleStrConst::entry_LoadStartup;
    Finding finding =
        component.finding(kMenuNotAtStartup, attribute,
                          "The menu " + subjectOf(component) +
                              " is not to be loaded at start-up, and menus are registered only then; a command does "
                              "not load it either.");
    finding.found = named(component.text(attribute).value_or(L""));
    finding.expected = isFlag ? "\"1\", or no LoadCtrlFlag" : "LoadOnTARVIXStartup=\"True\", or none";
    const bool isOnDemand = (component.record().loadFlags & KestComponentEntry::kLoadStartup) == 0;
    finding.mend = !isOnDemand ? "Remove LoadCtrlFlag."
                   : isFlag    ? "Remove LoadCtrlFlag, LoadOnTARVIXStartup and LoadOnCommandInvocation."
                               : "Remove LoadOnTARVIXStartup and LoadOnCommandInvocation.";
    findings.push_back(std::move(finding));
}

/// Why the menus of the bundle are not registered.
std::string whyNotRegistered(const BundleInput& input, const MissedMenuTurn& missed)
{
    if (missed.twin != nullptr) {
        const std::wstring& code = input.bundle.records.package.upgradeCode;
        return named(missed.twin->folder) +
               (code.empty() ? " has no UpgradeCode either" : " has the same UpgradeCode, " + named(code) + ",") +
               " and comes first";
    }
    if (missed.dependency != nullptr) {
        return "its bundle depends on the UpgradeCode " + named(missed.dependency->upgradeCode) +
               ", and no bundle with that gets its turn";
    }
    return "the host's list of menus is not brought up to date";
}

void addNotRegistered(const ComponentInput& component, Findings& findings)
{
    const MissedMenuTurn missed = missedMenuTurnOf(component.input.all.dependencies, component.input.bundle);
    Finding finding = component.finding(kMenuNotRegistered, BundleStrConst::entry_ModuleName,
                                        "The menu " + subjectOf(component) +
                                            " is not registered: " + whyNotRegistered(component.input, missed) + ".");
    finding.mend = missed.twin != nullptr || missed.dependency != nullptr
                       ? "Mend what is said about the bundle's UpgradeCode or dependencies."
                       : "Mend what \"kestbundle explain\" says about the host.";
    findings.push_back(std::move(finding));
}

void addPlaced(const ComponentInput& component, Findings& findings)
{
    const ExaminedComponent& facts = component.facts();
    const std::wstring& path = facts.record.moduleName;
    if (facts.outcome == ComponentOutcome::kMenuFailed) {
        Finding finding =
            component.finding(kMenuNotConverted, BundleStrConst::entry_ModuleName,
                              "The menu " + subjectOf(component) +
                                  " cannot be converted, and nobody says so: " + abridged(facts.problem) + ".");
        finding.mend = "Mend the menu file, or ship it as \".cuix\".";
        findings.push_back(std::move(finding));
        return;
    }
    if (facts.menu.find(L';') != std::wstring::npos) {
        Finding finding = component.finding(kSemicolonInMenuPath, BundleStrConst::entry_ModuleName,
                                            "The path of the menu holds a \";\", which ends an entry of the list: the "
                                            "host reads " +
                                                std::to_string(menuEntries(facts.menu).size()) +
                                                " entries, none of which is this menu.");
        finding.found = named(facts.menu);
        finding.mend = "Rename the file or the folder.";
        findings.push_back(std::move(finding));
    }
    if (facts.menu == path && ::access(localetext::narrow(path).c_str(), R_OK) != 0) {
        const std::string problem = shownLine(plainUtf8FromLocale(std::strerror(errno)));
        Finding finding = component.finding(kMenuFileMissing, BundleStrConst::entry_ModuleName,
                                            "The menu file " + subjectOf(component) + " cannot be read: " + problem +
                                                ". It is registered all the same.");
        finding.mend = "Put the file there, or correct ModuleName; letter case counts.";
        findings.push_back(std::move(finding));
    }
}

/// Components behind the first registered menu that are none leave empty entries.
void addEmptyEntries(const BundleInput& input, Findings& findings)
{
    bool isBehindMenu = false;
    for (std::size_t index = 0; index < input.bundle.components.size(); ++index) {
        const ExaminedComponent& component = input.bundle.components[index];
        if (isBehindMenu && component.record.loadsAtStartup() && component.outcome != ComponentOutcome::kMenu) {
            const ComponentInput one{input, index};
            Finding finding = one.finding(kEmptyMenuEntry, L"",
                                          (component.record.moduleName.empty() ? "A component without a file"
                                                                               : "The component " + subjectOf(one)) +
                                              " stands behind a menu and gives none, so it leaves an empty entry in "
                                              "the host's list of menus.");
            finding.mend = isMenu(component) ? "Mend the menu file." : "Put the menus behind all other components.";
            findings.push_back(std::move(finding));
        }
        isBehindMenu = isBehindMenu || component.outcome == ComponentOutcome::kMenu;
    }
}

} // namespace

std::vector<const Rule*> menuRules()
{
    return {&kMenuNotAtStartup,    &kMenuNotRegistered, &kEmptyMenuEntry,  &kEntriesRunTogether,
            &kSemicolonInMenuPath, &kMenuNotConverted,  &kMenuFileMissing, &kHostEntryDamaged};
}

void addMenuFindings(const BundleInput& input, Findings& findings)
{
    if (!input.bundle.isKept()) {
        return;
    }
    for (std::size_t index = 0; index < input.bundle.components.size(); ++index) {
        const ComponentInput component{input, index};
        if (!isMenu(component.facts())) {
            continue;
        }
        if (!component.record().loadsAtStartup()) {
            addNotAtStartup(component, findings);
        } else if (isPlaced(component.facts())) {
            addPlaced(component, findings);
        } else {
            addNotRegistered(component, findings);
        }
    }
    addEmptyEntries(input, findings);
}

void addMenuListFindings(const Examination& examination, Findings& findings)
{
    const std::vector<std::wstring> registered = menuEntries(examination.bundleMenus.before);
    const std::set<std::wstring> registeredBefore(registered.begin(), registered.end());
    const std::vector<std::wstring> entries = menuEntries(examination.hostMenus.after);
    const std::set<std::wstring> after(entries.begin(), entries.end());
    const bool isFirstRun = examination.bundleMenus.before.value_or(L"").empty();
    std::set<std::wstring> told;
    for (const std::wstring& entry : menuEntries(examination.hostMenus.before)) {
        if (entry.empty() || registeredBefore.contains(entry) || after.contains(entry) || !told.insert(entry).second) {
            continue;
        }
        const auto holder = std::find_if(entries.begin(), entries.end(), [&](const std::wstring& one) {
            return one.find(entry) != std::wstring::npos;
        });
        Finding finding;
        finding.rule = isFirstRun ? &kEntriesRunTogether : &kHostEntryDamaged;
        finding.subject = entry;
        finding.what = isFirstRun ? "The host's menu " + named(entry) +
                                        " runs together with others: its list has empty entries, and when the first "
                                        "menus of bundles are added, each \";\" in it is taken out."
                                  : "The host's menu " + named(entry) +
                                        " is cut or lost: the menus of the last run are taken out as text, also where "
                                        "that text is a part of another entry.";
        finding.expected = named(entry);
        finding.found = holder != entries.end() ? named(*holder) : "no such entry";
        finding.mend = isFirstRun ? "Take the empty entries out of the host's list of menus."
                                  : "Let no menu of the host's own end in the path of a bundle's menu.";
        findings.push_back(std::move(finding));
    }
}

} // namespace cli
