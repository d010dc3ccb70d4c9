#include "cli/rules/CommandRules.h"

#include "cli/rules/LoadFindings.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"

namespace cli {

namespace {

/// A command that a component declares.
struct DeclaredCommand
{
    std::size_t position; ///< among all of the component
    std::wstring name;    ///< upper case
};

std::vector<DeclaredCommand> commandsOf(const KestComponentEntry& entry)
{
    std::vector<DeclaredCommand> all;
    for (const KestCommands& group : entry.commands) {
        for (const KestCommand& command : group.commands) {
            all.push_back({all.size(), command.localName});
            localetext::upperByGlobalLocale(all.back().name);
        }
    }
    return all;
}

void addEmptyName(const ComponentInput& component, const Place& place, Findings& findings)
{
    Finding finding = component.finding(kEmptyCommandName, L"",
                                        "This Command has no Local name, so nobody can type it, and it is not "
                                        "announced.");
    finding.place = place;
    finding.expected = "a Local name";
    finding.mend = "Write the name that users are to type as Local; Global alone does nothing.";
    findings.push_back(std::move(finding));
}

void addLoser(const ComponentInput& component, const Place& place, const std::wstring& name,
              const ComponentPlace& winner, Findings& findings)
{
    const bool isOwn = winner.bundle == &component.input.bundle;
    const std::string module = named(inBundle(*winner.bundle, (*winner).record.moduleName));
    Finding finding = component.finding(
        isOwn ? kRepeatedCommand : kCommandOfAnotherBundle, L"",
        "The command " + named(name) + " loads " + module +
            (isOwn ? ", which declares it earlier in this manifest; this component is not loaded by it."
                   : " of " + named(folderNameOf(*winner.bundle)) +
                         ", which is found earlier; this component is not loaded by it, and nobody says so.") +
            " Names of commands are compared in upper case.");
    finding.subject = name;
    finding.place = place;
    finding.mend = "Give one of the two commands another Local name.";
    findings.push_back(std::move(finding));
}

void addFindings(const ComponentInput& component, Findings& findings)
{
    const std::vector<DeclaredCommand> commands = commandsOf(component.record());
    bool isAnyWon = false;
    for (const DeclaredCommand& command : commands) {
        const Place place =
            component.input.places.ofCommand(component.index, command.position, BundleStrConst::command_Local);
        if (command.name.empty()) {
            addEmptyName(component, place, findings);
            continue;
        }
        const ComponentPlace* const winner = component.input.all.loadedBy(command.name);
        if (winner == nullptr) {
            continue;
        }
        const bool isWon =
            winner->bundle == &component.input.bundle && (**winner).record.moduleName == component.record().moduleName;
        isAnyWon = isAnyWon || isWon;
        if (!isWon) {
            addLoser(component, place, command.name, *winner, findings);
        }
    }
    if (!commands.empty() && !isAnyWon) {
        Finding finding = component.finding(kNoCommandLeft, L"",
                                            "None of its commands loads " +
                                                named(inBundle(component.input.bundle, component.record().moduleName)) +
                                                ", so nothing ever loads it.");
        finding.mend = "Declare a command that no other component has.";
        findings.push_back(std::move(finding));
    }
}

void addIdle(const ComponentInput& component, Findings& findings)
{
    const std::vector<DeclaredCommand> commands = commandsOf(component.record());
    if (commands.empty()) {
        return;
    }
    Finding finding = component.finding(kIdleCommands, L"",
                                        "The component loads at start-up, so its commands are not announced: each is "
                                        "there only if the component registers it itself.");
    finding.place = component.input.places.ofCommand(component.index, 0, BundleStrConst::command_Local);
    finding.mend = "Nothing, if the component does so; else write LoadOnTARVIXStartup=\"False\" and "
                   "LoadOnCommandInvocation=\"True\".";
    findings.push_back(std::move(finding));
}

} // namespace

std::vector<const Rule*> commandRules()
{
    return {&kEmptyCommandName, &kRepeatedCommand, &kCommandOfAnotherBundle, &kNoCommandLeft, &kIdleCommands};
}

void addCommandFindings(const BundleInput& input, Findings& findings)
{
    for (std::size_t index = 0; input.bundle.isLoaded() && index < input.bundle.components.size(); ++index) {
        const ComponentInput component{input, index};
        if (component.facts().outcome == ComponentOutcome::kOnDemand && !component.record().moduleName.empty()) {
            addFindings(component, findings);
        } else if (component.record().loadsAtStartup() &&
                   (component.record().loadFlags & KestComponentEntry::kLoadCommand) == 0) {
            addIdle(component, findings);
        }
    }
}

} // namespace cli
