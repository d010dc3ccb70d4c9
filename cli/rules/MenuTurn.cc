#include "cli/rules/MenuTurn.h"

#include <algorithm>

namespace cli {

namespace {

/// The bundle that had the turn of `upgradeCode`, or null.
const ExaminedBundle* turnOf(const Dependencies& dependencies, std::wstring_view upgradeCode)
{
    const auto& all = dependencies.keptWith(upgradeCode);
    const auto found = std::find_if(all.begin(), all.end(), [](const auto* one) { return one->hadMenuTurn; });
    return found != all.end() ? *found : nullptr;
}

} // namespace

MissedMenuTurn missedMenuTurnOf(const Dependencies& dependencies, const ExaminedBundle& bundle)
{
    MissedMenuTurn missed;
    if (bundle.hadMenuTurn) {
        return missed;
    }
    missed.twin = turnOf(dependencies, bundle.records.package.upgradeCode);
    if (missed.twin != nullptr) {
        return missed;
    }
    for (const KestDependentBundle& one : bundle.records.dependencies) {
        const bool isKept = !dependencies.keptWith(one.upgradeCode).empty();
        // A bundle that is not there may be taken for granted; one that is there and had no turn never is.
        if (turnOf(dependencies, one.upgradeCode) == nullptr && (isKept || missed.dependency == nullptr)) {
            missed.dependency = &one;
            if (isKept) {
                break;
            }
        }
    }
    return missed;
}

} // namespace cli
