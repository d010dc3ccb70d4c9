#include "cli/ComponentText.h"
#include "cli/ExplainReport.h"
#include "cli/FindingText.h"
#include "cli/MenuDifference.h"
#include "cli/ReportLines.h"
#include "cli/RequirementComparison.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

namespace cli {

namespace {

/// Lines of which only the first has a label.
class LabelledBlock
{
public:
    explicit LabelledBlock(std::string itsLabel) : label(std::move(itsLabel)) {}

    void add(const std::string& line)
    {
        text += labelled(label, line);
        label.clear();
    }

    std::string text;

private:
    std::string label;
};

std::string manifestText(const ExaminedBundle& bundle)
{
    const std::string name = shown(bundle.manifest.substr(bundle.manifest.rfind(L'/') + 1));
    switch (bundle.state) {
    case BundleState::kNotABundle:
        return "none is read: the autoloader does not take this for a bundle";
    case BundleState::kUnreadable:
        return name + " cannot be opened";
    case BundleState::kMalformed:
        return name + " is read as far as line " + std::to_string(bundle.read.line) + ", where it is malformed";
    case BundleState::kRequirementNotMet:
        return name + " is read as far as the requirement that is not met, and no further";
    case BundleState::kWaiting:
    case BundleState::kKept:
    case BundleState::kLoadedWithFailures:
    case BundleState::kLoaded:
    case BundleState::kMenusOnly:
        break;
    }
    return name + " is read to its end";
}

std::string packageText(const KestApplicationPackage& package)
{
    return (package.name.empty() ? "without a name" : named(package.name)) + ", " +
           (package.appVersion.empty() ? "without a version" : "version " + named(package.appVersion)) + ", " +
           (package.upgradeCode.empty() ? "without an UpgradeCode" : "UpgradeCode " + named(package.upgradeCode));
}

std::string comparisonText(const RequirementComparison& comparison)
{
    const bool isRange = comparison.requirement == Requirement::kProductVersion;
    const std::string required = comparison.required.empty() ? "none"
                                 : isRange                   ? abridged(comparison.required)
                                                             : named(comparison.required);
    const std::string begin = std::string(nameOf(comparison.requirement)) + " " + required;
    if (!comparison.isMade) {
        return begin + (comparison.required.empty() ? " required" : ": not compared, since VERNUM is too short");
    }
    return begin + ": this host is " + (isRange ? abridged(comparison.found) : named(comparison.found)) +
           (comparison.isMet ? ", met" : ", not met");
}

std::string requirementsText(const Explanation& explanation, const ExaminedBundle& bundle)
{
    LabelledBlock block("requires");
    const auto comparisons = comparisonsOf(explanation.examination(), bundle);
    if (comparisons.empty()) {
        block.add("nothing");
    }
    for (const RequirementComparison& comparison : comparisons) {
        block.add(comparisonText(comparison));
    }
    return block.text;
}

std::string dependenciesText(const Explanation& explanation, const ExaminedBundle& bundle)
{
    LabelledBlock block("depends on");
    for (const KestDependentBundle& dependency : bundle.records.dependencies) {
        const DependencyStanding standing = explanation.all.dependencies.standingOf(bundle, dependency);
        block.add(named(dependency.upgradeCode) + ": " +
                  (standing.bundle != nullptr ? abridged(folderNameOf(*standing.bundle)) + ", " : "") +
                  nameOf(standing.standing) + (standing.chain.empty() ? "" : ": " + chainText(standing.chain)));
    }
    return block.text;
}

std::string componentsText(const ExplainedBundle& explained)
{
    const ExaminedBundle& bundle = *explained.bundle;
    LabelledBlock block("components");
    if (bundle.components.empty()) {
        block.add(bundle.isKept() ? "none" : "none is read");
    }
    for (std::size_t index = 0; index < bundle.components.size(); ++index) {
        const ExaminedComponent& component = bundle.components[index];
        const std::wstring& module = component.record.moduleName;
        const int line = explained.components[index].line;
        block.add((module.empty() ? "without a file" : abridged(inBundle(bundle, module))) +
                  (line > 0 ? " (line " + std::to_string(line) + ") " : " ") + fateOf(bundle, component));
    }
    return block.text;
}

/// The component at `place`; its bundle is left out where it is `bundle`.
std::string placeName(const ComponentPlace& place, const ExaminedBundle* bundle = nullptr)
{
    const std::wstring& module = (*place).record.moduleName;
    return (module.empty() ? "a component without a file" : abridged(inBundle(*place.bundle, module))) +
           (place.bundle == bundle ? "" : " of " + abridged(folderNameOf(*place.bundle)));
}

/// The commands that components of the bundle declare, and what each loads.
std::string commandsText(const Explanation& explanation, const ExaminedBundle& bundle)
{
    LabelledBlock block("commands");
    for (const ExaminedComponent& component : bundle.components) {
        if (!component.record.loadsOnCommand()) {
            continue;
        }
        for (const KestCommands& group : component.record.commands) {
            for (const KestCommand& command : group.commands) {
                std::wstring name = command.localName;
                localetext::upperByGlobalLocale(name);
                const ComponentPlace* const loaded = explanation.all.loadedBy(name);
                block.add((name.empty() ? "a command without a name" : abridged(name)) +
                          (loaded == nullptr                      ? " loads nothing"
                           : (**loaded).record.moduleName.empty() ? " loads nothing: its component has no file"
                                                                  : " loads " + placeName(*loaded, &bundle)));
            }
        }
    }
    return block.text;
}

/// The host's list of menus as it will be.
class HostList
{
public:
    explicit HostList(const Explanation& explanation)
    {
        for (std::wstring& entry : menuEntries(explanation.examination().hostMenus.after)) {
            positions.try_emplace(std::move(entry), ++count);
        }
    }

    /// Where `menu` stands in it.
    std::string placeOf(const std::wstring& menu) const
    {
        const auto found = positions.find(menu);
        return found == positions.end() ? "not in the host's list of menus"
                                        : "entry " + std::to_string(found->second) + " of " + std::to_string(count) +
                                              " in the host's list of menus";
    }

private:
    std::unordered_map<std::wstring, std::size_t> positions; ///< from 1, the first of each
    std::size_t count = 0;
};

std::string menusText(const Explanation& explanation, const ExaminedBundle& bundle)
{
    const HostList list(explanation);
    LabelledBlock block("menus");
    for (const ExaminedComponent& component : bundle.components) {
        if (!component.menu.empty()) {
            block.add(abridged(inBundle(bundle, component.menu)) + ": " + list.placeOf(component.menu));
        }
    }
    return block.text;
}

std::string fullText(const Explanation& explanation, const ExplainedBundle& explained, bool hasColours)
{
    const ExaminedBundle& bundle = *explained.bundle;
    std::string text = abridged(folderNameOf(bundle)) + ": " + nameOf(bundle.state) + "\n" +
                       labelled("folder", abridged(bundle.folder)) + labelled("manifest", manifestText(bundle));
    if (bundle.isKept() ? bundle.state != BundleState::kUnreadable : bundle.state == BundleState::kRequirementNotMet) {
        text += labelled("package", packageText(bundle.records.package)) + requirementsText(explanation, bundle) +
                dependenciesText(explanation, bundle) + componentsText(explained) + commandsText(explanation, bundle) +
                menusText(explanation, bundle);
    }
    if (explained.findings.empty()) {
        return text + "\n  Nothing stops it.\n";
    }
    for (const Finding& finding : explained.findings) {
        text += "\n" + findingText(finding, hasColours);
    }
    return text;
}

std::string shortText(const ExplainedBundle& explained, bool hasColours)
{
    std::string text = abridged(folderNameOf(*explained.bundle)) + ": " + nameOf(explained.bundle->state) + "\n";
    constexpr std::size_t kMostShown = 10;
    const Findings& findings = explained.findings;
    for (std::size_t index = 0; index < std::min(findings.size(), kMostShown); ++index) {
        text += findingLine(findings[index], hasColours);
    }
    return findings.size() > kMostShown ? text + "  ... and " + std::to_string(findings.size() - kMostShown) + " more\n"
                                        : text;
}

std::string commandText(const ExplainedCommand& command)
{
    std::string text = "Command " + abridged(command.name) + "\n";
    if (!command.loads) {
        const bool isIdle = std::none_of(command.declaredBy.begin(), command.declaredBy.end(),
                                         [](const ComponentPlace& place) { return (*place).record.loadsOnCommand(); });
        text += labelled("loads", isIdle ? "nothing: no component that declares it loads on a command"
                                         : "nothing: no bundle that declares it is loaded");
    } else if ((**command.loads).record.moduleName.empty()) {
        text += labelled("loads", "nothing: the component that declares it has no file");
    } else {
        const ExaminedComponent& component = **command.loads;
        const bool isFailing = component.onDemand && !component.onDemand->isLoaded;
        text += labelled("loads", placeName(*command.loads) + (isFailing ? ", which fails" : ""));
    }
    LabelledBlock block("declared");
    for (const ComponentPlace& place : command.declaredBy) {
        const bool isLoaded = command.loads && (*place).record.moduleName == (**command.loads).record.moduleName;
        const bool isAtStartup = (*place).record.loadsAtStartup();
        block.add("for " + placeName(place) +
                  (isAtStartup                  ? ", which loads at start-up"
                   : isLoaded || !command.loads ? ""
                                                : ", which it does not load"));
    }
    return text + block.text;
}

std::string menuText(const Explanation& explanation, const ExplainedMenu& menu)
{
    return "Menu " + abridged(menu.path) + "\n" +
           labelled("comes from", menu.component ? placeName(*menu.component) : "no bundle that is installed") +
           labelled("stands", HostList(explanation).placeOf(menu.path));
}

/// "3 bundles: 2 loaded, 1 malformed".
std::string countsText(const Explanation& explanation)
{
    std::map<BundleState, std::size_t> counts;
    for (const ExplainedBundle& one : explanation.bundles) {
        ++counts[one.bundle->state];
    }
    std::string text;
    for (const auto& [state, count] : counts) {
        text += (text.empty() ? ": " : ", ") + std::to_string(count) + " " + nameOf(state);
    }
    return counted(explanation.bundles.size(), "bundle", "bundles") + text;
}

std::string allText(const Explanation& explanation, bool hasColours)
{
    std::string text;
    Findings findings = explanation.general;
    for (const ExplainedBundle& one : explanation.bundles) {
        text += shortText(one, hasColours);
        findings.insert(findings.end(), one.findings.begin(), one.findings.end());
    }
    if (!explanation.general.empty()) {
        text += "The host\n";
    }
    for (const Finding& finding : explanation.general) { // nobody can ask for more about these
        text += finding.rule->severity == Severity::kNote ? findingLine(finding, hasColours)
                                                          : findingText(finding, hasColours);
    }
    const std::string counts = findingCounts(findings);
    text +=
        std::string(text.empty() ? "" : "\n") + countsText(explanation) + "\n" + (counts.empty() ? "" : counts + "\n");
    return explanation.bundles.empty() ? text : text + "\"kestbundle explain NAME\" says everything about one.\n";
}

} // namespace

std::string explainText(const Explanation& explanation, bool hasColours)
{
    if (explanation.isOfAll) {
        return allText(explanation, hasColours);
    }
    std::vector<std::string> parts;
    for (const ExplainedCommand& command : explanation.commands) {
        parts.push_back(commandText(command));
    }
    for (const ExplainedMenu& menu : explanation.menus) {
        parts.push_back(menuText(explanation, menu));
    }
    for (const ExplainedBundle& bundle : explanation.bundles) {
        parts.push_back(fullText(explanation, bundle, hasColours));
    }
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : "\n") + part;
    }
    return text;
}

} // namespace cli
