// The order of attempts, compared with the rules of passes over the whole list, written out plainly.
#include "host/Configuration.h"
#include "tests/AutoloaderTest.h"
#include "tests/BundleList.h"

#include <algorithm>
#include <utility>

namespace {

using Positions = std::vector<std::size_t>;
using Identities = std::vector<std::wstring>;

bool contains(const Identities& identities, const std::wstring& identity)
{
    return std::find(identities.begin(), identities.end(), identity) != identities.end();
}

std::size_t countSatisfied(const KestBundle& bundle, const Identities& satisfied)
{
    std::size_t count = 0;
    for (const KestDependentBundle& dependency : bundle.dependentBundles) {
        count += contains(satisfied, dependency.upgradeCode) ? 1U : 0U;
    }
    return count;
}

Identities identitiesOf(const std::vector<KestBundleStatus>& statuses)
{
    Identities identities;
    for (const KestBundleStatus& status : statuses) {
        identities.push_back(status.upgradeCode);
    }
    return identities;
}

/// loadBundle() in plain passes.
void loadInPasses(KestBundleManager& manager)
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
void gatherInPasses(KestBundleManager& manager)
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

class DependencyOrderTest : public AutoloaderTest
{
protected:
    /// The identities attempted, joined by blanks, when no attempt succeeds.
    std::string fruitlessAttempts()
    {
        std::string attempts;
        manager().attemptInDependencyOrder(
            {}, [](const KestBundle& /*bundle*/) { return false; },
            [&](const KestBundle& bundle) {
                attempts += (attempts.empty() ? "" : " ") + hostdouble::utf8(bundle.package.upgradeCode);
                return false;
            });
        return attempts;
    }

    /// Everything that `run` did with `own`, as text.
    template <typename Run>
    std::string outcome(KestBundleManager& own, Run run)
    {
        host.calls.clear();
        run(own);
        std::string text;
        for (const std::string& call : host.calls) {
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
};

TEST_F(DependencyOrderTest, AloneABundleThatNeverCountsAsLoadedIsAttemptedOnce)
{
    addBundle(L"X");
    EXPECT_EQ(fruitlessAttempts(), "X");
}

TEST_F(DependencyOrderTest, TwoSuchBundlesAreAttemptedTwiceAndTheirDependentNever)
{
    addBundle(L"X");
    addBundle(L"Y");
    addBundle(L"Z", {L"X"});
    EXPECT_EQ(fruitlessAttempts(), "X Y X Y") << "two of three, then four of three";
}

TEST_F(DependencyOrderTest, APassWithoutAnAttemptEndsIt)
{
    addBundle(L"A", {L"B"});
    addBundle(L"B", {L"A"});
    EXPECT_EQ(fruitlessAttempts(), "");
}

TEST_F(DependencyOrderTest, LoadingAndGatheringDoWhatPlainPassesDo)
{
    constexpr int kLists = 24'000;
    Randomness random(20'240'307);
    std::size_t loads = 0;
    for (int number = 0; number < kLists; ++number) {
        const BundleList list = random.bundleList();
        KestBundleManager tested;
        KestBundleManager plain;
        list.fill(tested);
        list.fill(plain);
        for (unsigned calls = 1 + random.below(4); calls > 0; --calls) {
            const bool gathers = random.oneIn(2);
            const auto before = host.configuration;
            const std::string expected = outcome(plain, gathers ? gatherInPasses : loadInPasses);
            host.configuration = before;
            const std::string actual =
                outcome(tested, [&](KestBundleManager& own) { gathers ? own.loadBundleCuix() : own.loadBundle(); });
            ASSERT_EQ(actual, expected) << "list " << number;
            loads += hostdouble::callsTo({"kds_queueexpr", "setValue"}).size();
        }
        host.configuration.clear();
    }
    EXPECT_GT(loads, std::size_t{kLists}) << "the lists are such that something happens";
}

TEST_F(DependencyOrderTest, TheAttemptsAreThoseOfPlainPassesFruitlessOnesIncluded)
{
    constexpr int kLists = 24'000;
    Randomness random(7);
    std::size_t endedByCount = 0;
    for (int number = 0; number < kLists; ++number) {
        const BundleList list = random.bundleList();
        KestBundleManager own;
        list.fill(own);
        std::vector<int> tried(list.rows.size());
        std::vector<bool> done(list.rows.size());
        Positions attempts;
        const auto attempt = [&](std::size_t position) {
            attempts.push_back(position);
            done[position] = list.rows[position].fruitlessAttempts < ++tried[position];
            return static_cast<bool>(done[position]);
        };

        Identities satisfied = list.loadedBefore;
        const int n = static_cast<int>(list.rows.size());
        for (int remaining = n, left = 0; n > 0; remaining = left) {
            left = remaining;
            for (std::size_t i = 0; i < list.rows.size(); ++i) {
                const bool isDone = done[i] || list.rows[i].isLoaded;
                if (!isDone && countSatisfied(*own.bundles[i], satisfied) == list.rows[i].dependencies.size()) {
                    --left;
                    if (attempt(i)) {
                        satisfied.push_back(list.rows[i].identity);
                    }
                }
            }
            if (left == remaining || left <= 0) {
                endedByCount += left < 0 ? 1U : 0U;
                break;
            }
        }
        const Positions expected = std::exchange(attempts, {});
        tried.assign(list.rows.size(), 0);
        done.assign(list.rows.size(), false);

        const auto positionOf = [&](const KestBundle& bundle) {
            return static_cast<std::size_t>(std::find(own.bundles.begin(), own.bundles.end(), &bundle) -
                                            own.bundles.begin());
        };
        const std::vector<std::wstring_view> before(list.loadedBefore.begin(), list.loadedBefore.end());
        own.attemptInDependencyOrder(
            before,
            [&](const KestBundle& bundle) {
                return done[positionOf(bundle)] || list.rows[positionOf(bundle)].isLoaded;
            },
            [&](const KestBundle& bundle) { return attempt(positionOf(bundle)); });
        ASSERT_EQ(attempts, expected) << "list " << number;
    }
    EXPECT_GT(endedByCount, 100U) << "the lists are such that fruitless attempts end some";
}

} // namespace
