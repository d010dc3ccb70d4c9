// One trial: a start on the samples with a fault in it, and the start after that.
#pragma once

#include "tests/faults/ToolRun.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace faults {

/// With which bundles the host starts, and which commands are used.
struct Samples
{
    bool areAll = false;  ///< every sample, with the engines; else those with native modules and menus only
    bool isFresh = false; ///< nothing was ever stored; else the host has menus of its own
};

/// A home and a program folder, and what a run without faults makes of them.
class Trial
{
public:
    /// Uses the folder `root`, which is there and empty. Runs without faults, and again: see problem().
    Trial(std::string root, Samples samples, const Way& way);

    /// Why the runs without faults are nothing to compare with; empty when they are.
    const std::string& problem() const noexcept { return unusable; }

    /// How many calls of the kind a run without faults makes.
    long calls() const noexcept { return callCount; }

    /// Whether call number `which` failed in the last run.
    bool hasStruck() const noexcept { return struck; }

    /// Lets call number `which` fail, and starts once more. Returns what is wrong, a line for each; else nothing.
    std::string run(long which, bool isShown);

private:
    void resetHome() const;
    ToolRun start(long which, bool isShown, bool asJson) const;
    std::string storedMenus() const;
    std::string filesOfHome() const;
    std::string problemsOf(const ToolRun& run) const;
    std::string problemsAfterwards() const;

    std::string root;
    Samples samples;
    const Way& way;
    std::string unusable;
    long callCount = 0;
    bool struck = false;
    int firstStatus = 0;
    nlohmann::json firstReport;
    nlohmann::json nextReport;
    std::string menus;
    std::string files;
};

} // namespace faults
