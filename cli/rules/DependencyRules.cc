#include "cli/rules/DependencyRules.h"

#include "cli/NearestName.h"
#include "cli/Shown.h"
#include "cli/rules/RuleTexts.h"

#include "manifest/BundleStrConst.h"

#include <algorithm>
#include <optional>

namespace cli {

namespace {

const std::wstring& codeAttribute()
{
    return BundleStrConst::dep_UpgradeCode;
}

std::string folderOf(const ExaminedBundle& bundle)
{
    return named(folderNameOf(bundle));
}

/// The installed UpgradeCode that `code` may be a slip of.
std::string similarCode(const BundleInput& input, const std::wstring& code)
{
    // Each comparison costs the square of its length: crowds of bundles and dependencies go without.
    constexpr std::size_t kMostCompared = 50;
    const auto& bundles = input.all.examination.bundles;
    if (bundles.size() > kMostCompared || input.bundle.records.dependencies.size() > kMostCompared) {
        return "";
    }
    std::vector<std::string> known;
    for (const ExaminedBundle& bundle : bundles) {
        if (!bundle.records.package.upgradeCode.empty() && &bundle != &input.bundle) {
            known.push_back(plainUtf8(bundle.records.package.upgradeCode));
        }
    }
    const std::optional<std::string> nearest = nearestName(plainUtf8(code), known);
    return nearest ? " Did you mean \"" + shownLine(*nearest) + "\"?" : "";
}

/// Why the bundle at the end of a way of dependencies does not load.
std::string causeAt(const BundleInput& input, const std::vector<const ExaminedBundle*>& chain)
{
    const ExaminedBundle& last = *chain.back();
    if (std::count(chain.begin(), chain.end(), &last) > 1) {
        return "these wait for each other in a circle";
    }
    const KestDependentBundle* const cause = input.all.dependencies.firstUnsatisfied(last);
    if (cause == nullptr) {
        return folderOf(last) + " never loads";
    }
    return folderOf(last) + " depends on the UpgradeCode " + named(cause->upgradeCode) +
           (input.all.dependencies.standingOf(last, *cause).standing == Standing::kDropped
                ? ", whose bundle was dropped"
                : ", which no bundle here has");
}

/// The state of `bundle` behind a colon, when there is one.
std::string stateText(const ExaminedBundle* bundle)
{
    return bundle != nullptr ? std::string(": ") + nameOf(bundle->state) : "";
}

Finding standingFinding(const BundleInput& input, const KestDependentBundle& dependency, const Place& place,
                        const DependencyStanding& standing)
{
    const auto finding = [&](const Rule& rule, std::string what, std::string mend) {
        Finding one = findingOf(rule, input.bundle, place, std::move(what));
        one.subject = dependency.upgradeCode;
        one.mend = std::move(mend);
        return one;
    };
    const std::string code = named(dependency.upgradeCode);
    const std::string other = standing.bundle != nullptr ? folderOf(*standing.bundle) : "";
    switch (standing.standing) {
    case Standing::kDropped:
        return finding(kDroppedDependency,
                       "The bundle depends on " + code + ", which is " + other + ", and that was dropped" +
                           stateText(standing.bundle) + ".",
                       "Mend " + other + " first.");
    case Standing::kItself:
        return finding(kSelfDependency, "The bundle depends on itself, so it waits for ever.",
                       "Remove this DependentBundle.");
    case Standing::kCycle:
        return finding(kDependencyCycle,
                       "The bundles wait for each other in a circle: " + chainText(standing.chain) + ".",
                       "Remove one of these dependencies.");
    case Standing::kWaiting:
        return finding(kWaitingDependency,
                       "The bundle depends on " + code + ", which is " + other + ", and that waits too: " +
                           chainText(standing.chain) + "; " + causeAt(input, standing.chain) + ".",
                       "Mend what holds up " + folderOf(*standing.chain.back()) + ", the last of these.");
    case Standing::kNothingToLoad:
        return finding(kDependencyNeverLoads,
                       "The bundle depends on " + code + ", which is " + other +
                           "; that has no components, so it never counts as loaded.",
                       "Give " + other + " a component, or remove this DependentBundle.");
    case Standing::kNotAttempted:
        return finding(kWaitingDependency,
                       "The bundle depends on " + code + ", which is " + other +
                           ", and the loading ended before that was its turn.",
                       "See what is said about " + other + ".");
    case Standing::kLoaded:
    case Standing::kMissing:
        break;
    }
    Finding missing =
        finding(kMissingDependency, "The bundle depends on the UpgradeCode " + code + ", and no bundle here has it.",
                "Install the bundle with this UpgradeCode, or remove the DependentBundle." +
                    similarCode(input, dependency.upgradeCode));
    missing.expected = "a bundle with UpgradeCode=" + code;
    missing.found = "none";
    return missing;
}

void addStandings(const BundleInput& input, Findings& findings)
{
    const auto& all = input.bundle.records.dependencies;
    for (std::size_t index = 0; index < all.size(); ++index) {
        const KestDependentBundle& dependency = all[index];
        const Place place = input.places.ofDependency(index, codeAttribute());
        if (input.bundle.isKept()) {
            const DependencyStanding standing = input.all.dependencies.standingOf(input.bundle, dependency);
            // Menus wait only for the turn of what they depend on: a bundle of nothing else may load before it.
            const bool isHarmless = input.bundle.isLoaded() && standing.standing != Standing::kMissing;
            if (standing.standing != Standing::kLoaded && !isHarmless) {
                findings.push_back(standingFinding(input, dependency, place, standing));
            }
        }
        if (!dependency.versionMin.empty() || !dependency.versionMax.empty()) {
            Finding finding = findingOf(kVersionsNotCompared, input.bundle, place,
                                        "VersionMin and VersionMax of a dependency are read and never compared: any "
                                        "version of " +
                                            named(dependency.upgradeCode) + " will do.");
            finding.mend = "Do not rely on them.";
            findings.push_back(std::move(finding));
        }
    }
    for (const Place& place : input.places.dependenciesWithoutCode()) {
        Finding finding = findingOf(kDependencyWithoutCode, input.bundle, place,
                                    "This DependentBundle has no UpgradeCode, so the bundle depends on nothing by it.");
        finding.mend = "Write the UpgradeCode of the bundle that is needed.";
        findings.push_back(std::move(finding));
    }
}

bool hasPlacedMenus(const ExaminedBundle& bundle)
{
    return std::any_of(bundle.components.begin(), bundle.components.end(), [](const ExaminedComponent& one) {
        return one.outcome == ComponentOutcome::kMenu || one.outcome == ComponentOutcome::kMenuFailed;
    });
}

std::string winnerText(const ExaminedBundle* winner, const ExaminedBundle& bundle)
{
    if (winner == nullptr) {
        return "Of bundles with the same UpgradeCode only one has its menus registered.";
    }
    return winner == &bundle ? "Only the menus of this bundle are registered."
                             : "Only the menus of " + named(winner->folder) + " are registered.";
}

void addIdentity(const BundleInput& input, Findings& findings)
{
    const ExaminedBundle& bundle = input.bundle;
    const std::wstring& code = bundle.records.package.upgradeCode;
    if (!input.places.hasPackage()) {
        Finding finding = findingOf(kNoApplicationPackage, bundle, input.places.ofFile(),
                                    "The manifest has no ApplicationPackage element, so the bundle has no name, no "
                                    "version and no identity.");
        finding.mend = "Put everything into one ApplicationPackage element with Name, AppVersion and UpgradeCode.";
        findings.push_back(std::move(finding));
    } else if (code.empty()) {
        Finding finding = findingOf(kNoUpgradeCode, bundle, input.places.ofPackage(),
                                    "The bundle has no UpgradeCode: no other bundle can depend on it, and of all "
                                    "bundles without one only the first has its menus registered.");
        finding.mend = "Give ApplicationPackage an UpgradeCode that no other bundle has, for example a new GUID.";
        findings.push_back(std::move(finding));
    }
    const auto& same = input.all.dependencies.keptWith(code);
    if (code.empty() || same.size() < 2) {
        return;
    }
    const auto winner = std::find_if(same.begin(), same.end(), [](const auto* one) { return hasPlacedMenus(*one); });
    const ExaminedBundle& other = same.front() == &bundle ? *same[1] : *same.front();
    Finding finding = findingOf(kRepeatedUpgradeCode, bundle, input.places.ofPackage(codeAttribute()),
                                "The UpgradeCode " + named(code) + " is also that of " + named(other.folder) + ". " +
                                    winnerText(winner != same.end() ? *winner : nullptr, bundle) +
                                    " What is no menu loads all the same.");
    finding.subject = code;
    finding.mend = "Keep it for the bundle that others need; remove the rest, or give them codes of their own.";
    findings.push_back(std::move(finding));
}

} // namespace

std::vector<const Rule*> dependencyRules()
{
    return {&kMissingDependency,  &kDroppedDependency,    &kWaitingDependency,     &kDependencyCycle,
            &kSelfDependency,     &kDependencyNeverLoads, &kLoadingEndedEarly,     &kVersionsNotCompared,
            &kNoUpgradeCode,      &kRepeatedUpgradeCode,  &kDependencyWithoutCode, &kNoApplicationPackage,
            &kDependencyElsewhere};
}

void addDependencyFindings(const BundleInput& input, Findings& findings)
{
    const ExaminedBundle& bundle = input.bundle;
    addStandings(input, findings);
    if (bundle.state == BundleState::kKept && !bundle.components.empty()) {
        Finding finding =
            findingOf(kLoadingEndedEarly, bundle, input.places.ofFile(),
                      "Everything that the bundle depends on loads, but not before its own turn, and the autoloader "
                      "ended before the next: it counts its attempts, also those at bundles that have nothing to "
                      "load, and ends when there were as many as there are bundles.");
        finding.mend = "Remove the bundles that have no components, or give each of them one.";
        findings.push_back(std::move(finding));
    }
    if (bundle.isKept() && bundle.state != BundleState::kUnreadable) {
        addIdentity(input, findings);
    }
}

} // namespace cli
