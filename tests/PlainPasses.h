// The order of dependencies by the rules of passes over the whole list, written out plainly.
#pragma once

#include "bundle/BundleManager.h"
#include "host/Configuration.h"
#include "manifest/Bundle.h"
#include "tests/BundleList.h"
#include "tests/HostDouble.h"

#include <algorithm>
#include <string>
#include <vector>

namespace plainpasses {

using Positions = std::vector<std::size_t>;
using Identities = std::vector<std::wstring>;

inline bool contains(const Identities& identities, const std::wstring& identity)
{
    return std::find(identities.begin(), identities.end(), identity) != identities.end();
}

inline std::size_t countSatisfied(const KestBundle& bundle, const Identities& satisfied)
{
    std::size_t count = 0;
    for (const KestDependentBundle& dependency : bundle.dependentBundles) {
        count += contains(satisfied, dependency.upgradeCode) ? 1U : 0U;
    }
    return count;
}

inline Identities identitiesOf(const std::vector<KestBundleStatus>& statuses)
{
    Identities identities;
    for (const KestBundleStatus& status : statuses) {
        identities.push_back(status.upgradeCode);
    }
    return identities;
}

/// loadBundle() in plain passes.
inline void loadInPasses(KestBundleManager& manager)
{
    const int n = static_cast<int>(manager.bundles.size());
    if (n < 1) {
        return;
    }
    for (int remaining = n;;) {
        int left = remaining;
        for (KestBundle* bundle : manager.bundles) {
            if (bundle->getIsLoad()) {
                continue;
            }
            const std::size_t d = bundle->dependentBundles.size();
            if (d == 0 || countSatisfied(*bundle, identitiesOf(manager.loadedStatus)) == d) {
                --left;
                bundle->load();
                if (bundle->getIsLoad()) {
                    manager.loadedStatus.push_back({bundle->package.upgradeCode});
                }
            }
        }
        if (left == remaining || left <= 0) {
            return;
        }
        remaining = left;
    }
}

/// loadBundleCuix() in plain passes.
inline void gatherInPasses(KestBundleManager& manager)
{
    const int n = static_cast<int>(manager.bundles.size());
    if (n < 1) {
        manager.writeCuixToConfig(L"");
        return;
    }
    if (kestConfig() == nullptr) {
        return;
    }
    Identities placed;
    CStdStr<wchar_t> menuList;
    for (int previous = n;;) {
        int remaining = previous;
        for (KestBundle* bundle : manager.bundles) {
            const std::wstring id = bundle->package.upgradeCode;
            if (contains(placed, id)) {
                continue;
            }
            const std::size_t d = bundle->dependentBundles.size();
            if (d > 0 && countSatisfied(*bundle, placed) != d) {
                continue;
            }
            bundle->loadCuix(menuList);
            --remaining;
            if (bundle->getIsLoad()) {
                manager.loadedStatus.push_back({id});
            }
            placed.push_back(id);
        }
        if (remaining == previous || remaining <= 0) {
            break;
        }
        previous = remaining;
    }
    manager.writeCuixToConfig(menuList);
}

/// Everything that `run` did with `own`, as text.
template <typename Run>
std::string outcome(KestBundleManager& own, Run run)
{
    std::vector<std::string>& calls = hostdouble::state().calls;
    calls.clear();
    run(own);
    std::string text;
    for (const std::string& call : calls) {
        text += call + "\n";
    }
    for (const KestBundleStatus& status : own.loadedStatus) {
        text += "loaded " + hostdouble::utf8(status.upgradeCode) + "\n";
    }
    for (const KestBundle* bundle : own.bundles) {
        text += bundle->getIsLoad() ? '1' : '0';
    }
    return text;
}

/// The attempts at the bundles of a list, those included that the list calls fruitless.
class Attempts
{
public:
    explicit Attempts(const BundleList& tried) : list(tried), tries(tried.rows.size()), done(tried.rows.size()) {}

    Positions positions; ///< of the bundles attempted, in order

    /// In plain passes; counts in `endedByCount` when there were more attempts than bundles.
    void inPasses(const KestBundleManager& own, std::size_t* endedByCount = nullptr)
    {
        Identities satisfied = list.loadedBefore;
        const int n = static_cast<int>(list.rows.size());
        for (int remaining = n, left = 0; n > 0; remaining = left) {
            left = remaining;
            for (std::size_t i = 0; i < list.rows.size(); ++i) {
                if (!isDone(i) && countSatisfied(*own.bundles[i], satisfied) == list.rows[i].dependencies.size()) {
                    --left;
                    if (attempt(i)) {
                        satisfied.push_back(list.rows[i].identity);
                    }
                }
            }
            if (left == remaining || left <= 0) {
                if (endedByCount != nullptr && left < 0) {
                    ++*endedByCount;
                }
                return;
            }
        }
    }

    void inDependencyOrder(KestBundleManager& own)
    {
        const auto positionOf = [&](const KestBundle& bundle) {
            return static_cast<std::size_t>(std::find(own.bundles.begin(), own.bundles.end(), &bundle) -
                                            own.bundles.begin());
        };
        const std::vector<std::wstring_view> before(list.loadedBefore.begin(), list.loadedBefore.end());
        own.attemptInDependencyOrder(
            before, [&](const KestBundle& bundle) { return isDone(positionOf(bundle)); },
            [&](const KestBundle& bundle) { return attempt(positionOf(bundle)); });
    }

private:
    bool isDone(std::size_t position) const { return done[position] || list.rows[position].isLoaded; }

    bool attempt(std::size_t position)
    {
        positions.push_back(position);
        done[position] = list.rows[position].fruitlessAttempts < ++tries[position];
        return done[position];
    }

    const BundleList& list;
    std::vector<int> tries;
    std::vector<bool> done;
};

} // namespace plainpasses
