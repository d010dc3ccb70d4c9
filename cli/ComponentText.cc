#include "cli/ComponentText.h"

#include "cli/rules/RuleTexts.h"

#include "loading/ModuleKind.h"
#include "menus/MenuKind.h"

namespace cli {

namespace {

std::string withReason(const std::string& fate, const std::string& reason)
{
    return reason.empty() ? fate : fate + ": " + abridged(reason);
}

/// "CUT, TRIM and 3 more".
std::string commandList(const std::vector<std::wstring>& names)
{
    constexpr std::size_t kMostShown = 8;
    std::string text;
    for (std::size_t index = 0; index < names.size() && index < kMostShown; ++index) {
        text += (index == 0 ? "" : ", ") + abridged(names[index]);
    }
    return names.size() > kMostShown ? text + " and " + std::to_string(names.size() - kMostShown) + " more" : text;
}

std::string onDemandFate(const ExaminedComponent& component)
{
    if (component.commands.empty()) {
        return "never loads: it waits for a command, and none leads to it";
    }
    const std::string when = " when " + commandList(component.commands) + " is used";
    if (component.onDemand && !component.onDemand->isLoaded) {
        return withReason("fails" + when, component.onDemand->problem);
    }
    return (moduleKindOf(component.record.moduleName) == ModuleKind::kLisp ? "is queued" : "is loaded") + when;
}

std::string notReachedFate(const ExaminedBundle& bundle)
{
    if (!bundle.isKept()) {
        return "never loads: the bundle is dropped";
    }
    return bundle.state == BundleState::kWaiting ? "never loads: the bundle waits for a dependency"
                                                 : "never loads: the bundle is never attempted";
}

} // namespace

const char* nameOf(ComponentOutcome outcome)
{
    switch (outcome) {
    case ComponentOutcome::kNotReached:
        return "not reached";
    case ComponentOutcome::kLoaded:
        return "loaded";
    case ComponentOutcome::kFailed:
        return "failed";
    case ComponentOutcome::kPassedOver:
        return "passed over";
    case ComponentOutcome::kMenu:
        return "menu";
    case ComponentOutcome::kMenuFailed:
        return "menu failed";
    case ComponentOutcome::kOnDemand:
        return "on demand";
    case ComponentOutcome::kNeither:
        return "neither";
    }
    return "";
}

std::string fateOf(const ExaminedBundle& bundle, const ExaminedComponent& component)
{
    const bool isMenu = menuKindOf(component.record.moduleName) != MenuKind::kOther;
    switch (component.outcome) {
    case ComponentOutcome::kNotReached:
        return isMenu && bundle.isKept() ? "is not registered as a menu" : notReachedFate(bundle);
    case ComponentOutcome::kLoaded:
        return moduleKindOf(component.record.moduleName) == ModuleKind::kLisp ? "is queued at start-up"
                                                                              : "is loaded at start-up";
    case ComponentOutcome::kFailed:
        return withReason("fails at start-up", component.problem);
    case ComponentOutcome::kPassedOver:
        return isMenu ? "is not registered as a menu" : "is passed over at start-up";
    case ComponentOutcome::kMenu:
        return component.menu == component.record.moduleName ? "is registered as a menu"
                                                             : "is converted and registered as a menu";
    case ComponentOutcome::kMenuFailed:
        return withReason("cannot be converted to a menu", component.problem);
    case ComponentOutcome::kOnDemand:
        return onDemandFate(component);
    case ComponentOutcome::kNeither:
        return "never loads: neither at start-up nor on a command";
    }
    return "";
}

} // namespace cli
