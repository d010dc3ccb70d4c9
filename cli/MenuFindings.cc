#include "cli/MenuFindings.h"

#include "cli/rules/DependencyRules.h"
#include "cli/rules/MenuRules.h"
#include "cli/rules/MenuTurn.h"
#include "cli/rules/Reasons.h"
#include "cli/rules/RequirementRules.h"
#include "cli/rules/SearchRules.h"

#include <algorithm>
#include <initializer_list>

namespace cli {

namespace {

bool isOneOf(const Finding& finding, std::initializer_list<const Rule*> rules)
{
    return std::any_of(rules.begin(), rules.end(), [&](const Rule* rule) { return rule->code == finding.rule->code; });
}

/// Whether `finding` says why its bundle is dropped.
bool isOfDrop(const Finding& finding)
{
    return isOneOf(finding,
                   {&kMalformedManifest, &kWrongProductVersion, &kWrongOS, &kWrongArchitecture, &kWrongPlatform});
}

/// Whether `finding`, about a bundle, says what is behind its missed turn.
bool isCause(const Finding& finding, const MissedMenuTurn& missed)
{
    if (missed.twin != nullptr) {
        return isOneOf(finding, {&kNoUpgradeCode, &kRepeatedUpgradeCode, &kNoApplicationPackage});
    }
    return missed.dependency != nullptr && finding.subject == missed.dependency->upgradeCode &&
           isOneOf(finding, {&kMissingDependency, &kDroppedDependency, &kWaitingDependency, &kDependencyCycle,
                             &kSelfDependency, &kDependencyNeverLoads});
}

std::size_t positionOf(const ExaminedBundle& bundle, const ExaminedComponent& component)
{
    return static_cast<std::size_t>(&component - bundle.components.data());
}

} // namespace

Findings MenuFindings::against(const ExaminedBundle& bundle, const ExaminedComponent& component)
{
    const Findings& told = of(bundle);
    Findings findings;
    const auto add = [&](const auto& isWanted) {
        std::copy_if(told.begin(), told.end(), std::back_inserter(findings), isWanted);
    };
    if (!bundle.isKept()) {
        add(isOfDrop);
        return findings;
    }
    add([&](const Finding& one) {
        return one.component == positionOf(bundle, component) &&
               isOneOf(one, {&kMenuNotAtStartup, &kMenuNotRegistered, &kSemicolonInMenuPath, &kMenuNotConverted});
    });
    if (!findings.empty() && isOneOf(findings.front(), {&kMenuNotRegistered})) {
        const MissedMenuTurn missed = missedMenuTurnOf(all.dependencies, bundle);
        add([&](const Finding& one) { return isCause(one, missed); });
    }
    return findings;
}

Findings MenuFindings::ofEntry(const ExaminedBundle& bundle, const ExaminedComponent& component,
                               const std::wstring& entry)
{
    Findings findings;
    if (entry == component.menu && !entry.empty()) {
        return findings;
    }
    const Findings& told = of(bundle);
    std::copy_if(told.begin(), told.end(), std::back_inserter(findings), [&](const Finding& one) {
        return one.component == positionOf(bundle, component) &&
               isOneOf(one, {&kEmptyMenuEntry, &kSemicolonInMenuPath});
    });
    return findings;
}

const Findings& MenuFindings::of(const ExaminedBundle& bundle)
{
    auto found = judged.find(&bundle);
    if (found == judged.end()) {
        found = judged.try_emplace(&bundle, findReasons(all, bundle, ManifestPlaces(bundle))).first;
    }
    return found->second;
}

} // namespace cli
