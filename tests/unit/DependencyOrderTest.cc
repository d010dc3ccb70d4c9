// The order of attempts, compared with the rules of passes over the whole list, written out plainly.
#include "tests/AutoloaderTest.h"
#include "tests/BundleList.h"
#include "tests/PlainPasses.h"

namespace {

using namespace plainpasses;

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
        Attempts expected(list);
        expected.inPasses(own, &endedByCount);
        Attempts attempts(list);
        attempts.inDependencyOrder(own);
        ASSERT_EQ(attempts.positions, expected.positions) << "list " << number;
    }
    EXPECT_GT(endedByCount, 100U) << "the lists are such that fruitless attempts end some";
}

} // namespace
