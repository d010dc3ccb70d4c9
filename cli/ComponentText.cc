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

/// "CUT or TRIM".
std::string commandList(const std::vector<std::wstring>& names)
{
    constexpr std::size_t kMostShown = 8;
    std::string text;
    for (std::size_t index = 0; index < names.size() && index < kMostShown; ++index) {
        text += (index == 0 ? "" : index + 1 == names.size() ? " or " : ", ") + abridged(names[index]);
    }
    return names.size() > kMostShown ? text + " or " + std::to_string(names.size() - kMostShown) + " more" : text;
}

/// Why a component is passed over, or does not load when a command is used, where nobody gives a reason.
std::string silentReason(const KestComponentEntry& entry)
{
    const ModuleKind kind = moduleKindOf(entry.moduleName);
    if (kind == ModuleKind::kOther) {
        return "no loader takes it";
    }
    return kind == ModuleKind::kPython && entry.pythonVersion.empty() ? "it has no PythonVersion" : "";
}

std::string onDemandFate(const ExaminedComponent& component)
{
    if (component.commands.empty()) {
        return "never loads: it waits for a command, and none leads to it";
    }
    const std::string when = " when " + commandList(component.commands) + " is used";
    if (component.onDemand && !component.onDemand->isLoaded) {
        const std::string& problem = component.onDemand->problem;
        return withReason("fails" + when, problem.empty() ? silentReason(component.record) : problem);
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
    if (component.record.moduleName.empty()) {
        return "never loads: it has no file";
    }
    const bool isMenu = menuKindOf(component.record.moduleName) != MenuKind::kOther;
    if (isMenu && !component.record.loadsAtStartup()) {
        return "is never registered: menus are registered at start-up only";
    }
    switch (component.outcome) {
    case ComponentOutcome::kNotReached:
        return isMenu && bundle.isKept() ? "is not registered as a menu" : notReachedFate(bundle);
    case ComponentOutcome::kLoaded:
        return moduleKindOf(component.record.moduleName) == ModuleKind::kLisp ? "is queued at start-up"
                                                                              : "is loaded at start-up";
    case ComponentOutcome::kFailed:
        return withReason("fails at start-up", component.problem);
    case ComponentOutcome::kPassedOver:
        return isMenu ? "is not registered as a menu"
                      : withReason("is passed over at start-up", silentReason(component.record));
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
