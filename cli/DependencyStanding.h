// Where the dependencies of a bundle stand: present, missing, waiting themselves, in a cycle.
#pragma once

#include "cli/Examination.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace cli {

enum class Standing
{
    kLoaded,        ///< satisfied
    kMissing,       ///< no bundle has this UpgradeCode
    kDropped,       ///< the only bundles with it were dropped
    kItself,        ///< the bundle depends on itself
    kCycle,         ///< the way along dependencies leads back to the bundle
    kWaiting,       ///< it waits for something itself
    kNothingToLoad, ///< it has no components, so it never counts as loaded
    kNotAttempted,  ///< it could be loaded, but the autoloader had ended before
};

/// The word for `standing` in all reports; stable, since scripts read it.
const char* nameOf(Standing standing);

struct DependencyStanding
{
    Standing standing = Standing::kMissing;
    const ExaminedBundle* bundle = nullptr; ///< the one with this UpgradeCode; null: there is none
    /// Of kCycle: from the bundle that depends back to itself. Of kWaiting: from that bundle to the one at which the
    /// way ends, which does not wait, or to one that is in the chain already.
    std::vector<const ExaminedBundle*> chain;
};

/// All dependencies among the bundles of one examination, which must outlive it.
class Dependencies
{
public:
    explicit Dependencies(const Examination& examination);

    DependencyStanding standingOf(const ExaminedBundle& bundle, const KestDependentBundle& dependency) const;

    /// The first dependency of `bundle` that is not satisfied, or null.
    const KestDependentBundle* firstUnsatisfied(const ExaminedBundle& bundle) const;

    /// The bundles with this UpgradeCode that were kept, in the order found.
    const std::vector<const ExaminedBundle*>& keptWith(std::wstring_view upgradeCode) const;

private:
    std::size_t positionOf(const ExaminedBundle& bundle) const;
    std::vector<const ExaminedBundle*> cycleThrough(std::size_t from, std::size_t to) const;
    std::vector<const ExaminedBundle*> wayFrom(std::size_t from, std::size_t to) const;

    const Examination& facts;
    std::unordered_map<std::wstring_view, std::vector<const ExaminedBundle*>> kept;
    std::unordered_map<std::wstring_view, const ExaminedBundle*> dropped;
    std::vector<std::vector<std::size_t>> waitsFor; ///< by position: the bundles behind unsatisfied dependencies
    std::vector<std::size_t> group;                 ///< by position: bundles in one cycle share a number
};

} // namespace cli
