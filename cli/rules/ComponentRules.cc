#include "cli/rules/ComponentRules.h"

#include "cli/rules/LoadFindings.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"
#include "menus/MenuKind.h"

#include <algorithm>

namespace cli {

namespace {

constexpr std::wstring_view kBegin = L"./";

/// `text` as a module's name has to be written.
std::wstring asModuleName(std::wstring text)
{
    std::replace(text.begin(), text.end(), L'\\', L'/');
    const std::size_t begin = text.find_first_not_of(L"./ \t");
    return std::wstring(kBegin) + (begin == std::wstring::npos ? L"" : text.substr(begin));
}

/// Findings about a component whose module path came to nothing.
void addPathForm(const ComponentInput& component, Findings& findings)
{
    const auto text = component.text(BundleStrConst::entry_ModuleName);
    if (!text || text->empty()) {
        Finding finding =
            component.finding(kNoModuleName, L"",
                              "The component has no ModuleName; its other attributes are not even looked at, and "
                              "nothing of it ever loads.");
        finding.expected = "a ModuleName that begins with \"./\"";
        finding.mend = std::string("Write the path of the file, beginning with \"./\"") +
                       (component.input.bundle.components.size() > 1
                            ? ", or remove the component."
                            : "; a bundle without any component would not even count as loaded.");
        findings.push_back(std::move(finding));
        return;
    }
    Finding finding = component.finding(kModulePathForm, BundleStrConst::entry_ModuleName,
                                        "ModuleName=" + named(*text) +
                                            " does not begin with \"./\", so the component has no file and never "
                                            "loads.");
    finding.expected = "a path that begins with \"./\"";
    finding.found = named(*text);
    finding.mend = "Write ModuleName=" + named(asModuleName(*text)) + ".";
    findings.push_back(std::move(finding));
}

/// An attribute that is neither "True" nor "False", and `consequence`.
void addTruth(const ComponentInput& component, const std::wstring& attribute, const std::string& consequence,
              Findings& findings)
{
    const auto text = component.text(attribute);
    if (!text || text->empty()) {
        return;
    }
    std::wstring value = *text;
    localetext::upperByGlobalLocale(value);
    if (value == L"TRUE" || value == L"FALSE") {
        return;
    }
    Finding finding = component.finding(kNotTrueOrFalse, attribute,
                                        abridged(attribute) + "=" + named(*text) +
                                            " is neither \"True\" nor \"False\"; " + consequence);
    finding.expected = "\"True\" or \"False\"";
    finding.found = named(*text);
    finding.mend = "Write \"True\" or \"False\", without blanks.";
    findings.push_back(std::move(finding));
}

void addNeverLoads(const ComponentInput& component, Findings& findings)
{
    const KestComponentEntry& entry = component.record();
    const bool isFlagAtFault = entry.loadCtrlFlag != 1;
    if (isFlagAtFault && (entry.loadFlags & KestComponentEntry::kLoadStartup) != 0) {
        const auto text = component.text(BundleStrConst::entry_LoadCtrlFlag).value_or(L"");
        Finding finding = component.finding(
            kLoadCtrlFlag, BundleStrConst::entry_LoadCtrlFlag,
            "LoadCtrlFlag=" + named(text) +
                " keeps the component from loading at start-up, and it is not to be loaded on a command either.");
        finding.expected = "\"1\", or no LoadCtrlFlag";
        finding.found = named(text);
        finding.mend = "Remove LoadCtrlFlag, or write LoadOnCommandInvocation=\"True\" and the commands.";
        findings.push_back(std::move(finding));
        return;
    }
    Finding finding = component.finding(kNeverLoads, BundleStrConst::entry_LoadStartup,
                                        "LoadOnTARVIXStartup is \"False\" and LoadOnCommandInvocation is not \"True\", "
                                        "so nothing ever loads the component.");
    finding.expected = "LoadOnCommandInvocation=\"True\", or LoadOnTARVIXStartup=\"True\"";
    finding.mend = std::string("Write LoadOnCommandInvocation=\"True\" and the commands, or remove ") +
                   (isFlagAtFault ? "LoadOnTARVIXStartup and LoadCtrlFlag." : "LoadOnTARVIXStartup.");
    findings.push_back(std::move(finding));
}

void addWhen(const ComponentInput& component, Findings& findings)
{
    const KestComponentEntry& entry = component.record();
    addTruth(component, BundleStrConst::entry_LoadStartup, "it counts as \"True\".", findings);
    addTruth(component, BundleStrConst::entry_LoadCommand, "it counts as \"False\".", findings);
    const bool hasCommands = std::any_of(entry.commands.begin(), entry.commands.end(),
                                         [](const KestCommands& one) { return !one.commands.empty(); });
    if (entry.loadsAtStartup()) {
        if ((entry.loadFlags & KestComponentEntry::kLoadCommand) != 0) {
            Finding finding = component.finding(
                kStartupWins, BundleStrConst::entry_LoadCommand,
                "The component is to be loaded at start-up and on a command; start-up wins, and its commands are "
                "never announced.");
            finding.mend = "Write LoadOnTARVIXStartup=\"False\" if it is to wait for its commands; else remove "
                           "LoadOnCommandInvocation.";
            findings.push_back(std::move(finding));
        }
    } else if (menuKindOf(entry.moduleName) != MenuKind::kOther) {
        return; // menus have a rule of their own for it
    } else if (!entry.loadsOnCommand()) {
        addNeverLoads(component, findings);
    } else if (!hasCommands) {
        Finding finding = component.finding(kNoCommands, L"",
                                            "The component is to be loaded on a command and declares none, so nothing "
                                            "ever loads it.");
        finding.expected = "Commands with a Command and its Local";
        finding.mend = "Write <Commands><Command Local=\"NAME\"/></Commands> into the component.";
        findings.push_back(std::move(finding));
    }
}

} // namespace

std::vector<const Rule*> componentRules()
{
    return {&kNoComponents,    &kNoModuleName,      &kModulePathForm, &kLoadCtrlFlag,     &kNeverLoads,
            &kNotTrueOrFalse,  &kStartupWins,       &kNoCommands,     &kUnknownExtension, &kNoPythonVersion,
            &kPythonNotFound,  &kComponentFails,    &kFirstUseFails,  &kLispFileMissing,  &kLispPathTooLong,
            &kLispPathChanged, &kOtherPythonVersion};
}

void addComponentFindings(const BundleInput& input, Findings& findings)
{
    const ExaminedBundle& bundle = input.bundle;
    if (bundle.isKept() && bundle.components.empty() && bundle.state != BundleState::kUnreadable) {
        Finding finding = findingOf(kNoComponents, bundle, input.places.ofPackage(),
                                    "The bundle has no components, so there is nothing to load, and no component of "
                                    "a bundle that depends on it ever loads.");
        finding.expected = "Components with a ComponentEntry";
        finding.mend = "Declare the files of the bundle as components.";
        findings.push_back(std::move(finding));
    }
    for (std::size_t index = 0; bundle.isKept() && index < bundle.components.size(); ++index) {
        const ComponentInput component{input, index};
        if (component.record().moduleName.empty()) {
            addPathForm(component, findings);
        } else {
            addWhen(component, findings);
            addLoadFindings(component, findings);
        }
    }
}

} // namespace cli
