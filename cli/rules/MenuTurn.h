// What keeps a bundle from its turn when menus are registered.
#pragma once

#include "cli/DependencyStanding.h"
#include "cli/Examination.h"

namespace cli {

/// One of them at most is set. None: it was the bundle's turn.
struct MissedMenuTurn
{
    const ExaminedBundle* twin = nullptr;            ///< had the turn of the UpgradeCode that both have
    const KestDependentBundle* dependency = nullptr; ///< no bundle with its UpgradeCode had a turn
};

/// `bundle` was kept, and is one of those that `dependencies` are about.
MissedMenuTurn missedMenuTurnOf(const Dependencies& dependencies, const ExaminedBundle& bundle);

} // namespace cli
