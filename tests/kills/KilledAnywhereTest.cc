// The tool, killed at every kind of moment of its run: what stands in the home is whole, always.
//
// How many moments is said by KEST_KILL_POINTS; scripts/checks/kills asks for many more than a plain run of the tests.
#include "tests/kills/KillTest.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <random>
#include <set>
#include <sys/wait.h>

namespace {

class KilledAnywhereTest : public KillTest
{
protected:
    void SetUp() override
    {
        for (std::size_t set = 0; set < kSets; ++set) {
            results[set] = undisturbed(set);
            EXPECT_TRUE(results[set].hostMenus == kOwnMenus + L";" + results[set].bundleMenus) << results[set];
        }
        EXPECT_EQ(std::set<HomeState>(results.begin(), results.end()).size(), kSets);
    }

    static std::size_t wantedPoints()
    {
        const char* wanted = std::getenv("KEST_KILL_POINTS");
        return wanted != nullptr ? std::strtoul(wanted, nullptr, 10) : 40;
    }

    /// The numbers of the calls to be killed at, at least eight: three quarters of them beside the changes on disk, as
    /// far as there are so many, the others all over the run.
    static std::vector<long> pointsOf(const CountedRun& whole, std::size_t wanted)
    {
        std::vector<long> besideChanges;
        for (const long change : whole.changingCalls) {
            besideChanges.push_back(change);
            besideChanges.push_back(change + 1); // after it
        }
        const std::size_t all = std::max<std::size_t>(wanted, 8);
        const std::size_t beside = std::min(all * 3 / 4, besideChanges.size());
        std::vector<long> points;
        for (std::size_t i = 0; i < beside; ++i) {
            points.push_back(besideChanges[i * (besideChanges.size() - 1) / (beside - 1)]);
        }
        for (std::size_t i = 0; i < all - beside; ++i) {
            points.push_back(1 + static_cast<long>(i) * whole.calls / static_cast<long>(all - beside));
        }
        return points;
    }

    /// Goes from set to set with a run for each, made by `disturbedRun`, and looks at the home each time. Every second
    /// set gets a run to its end afterwards; the others leave it to the next disturbed run to start from what they
    /// left.
    template <typename Points, typename DisturbedRun>
    void disturbRuns(const Points& points, DisturbedRun disturbedRun)
    {
        std::size_t set = 0;
        HomeState before = undisturbed(set);
        for (std::size_t i = 0; i < points.size() && !HasFailure(); ++i) {
            set = (set + 1) % kSets;
            installSet(set);
            const std::string where = "disturbed at " + std::to_string(points[i]) + "\n";
            const int status = disturbedRun(points[i]);
            kills += WIFSIGNALED(status) ? 1U : 0U;
            EXPECT_TRUE(WIFSIGNALED(status) || status == 0) << where << contentOf(path("output"));
            expectWhole(before, results[set], where);
            before = left();
            if (i % 2 == 1) {
                runToTheEnd();
                EXPECT_EQ(left(), results[set]) << where;
                before = results[set];
            }
        }
        runToTheEnd();
        EXPECT_EQ(left(), results[set]);
    }

    /// Looks at a home in which the run that was to make `next` of `before` was disturbed.
    void expectWhole(const HomeState& before, const HomeState& next, const std::string& where)
    {
        const HomeState now = left();
        const bool isOld = now.bundleMenus == before.bundleMenus && now.hostMenus == before.hostMenus;
        const bool isNew = now.bundleMenus == next.bundleMenus && now.hostMenus == next.hostMenus;
        EXPECT_TRUE(isOld || isNew) << where << now;
        EXPECT_TRUE(now.convertedMenu == before.convertedMenu || now.convertedMenu == next.convertedMenu)
            << where << now;
        seen.insert({isNew, now.convertedMenu == next.convertedMenu});
    }

    std::array<HomeState, kSets> results; ///< what undisturbed runs give
    std::size_t kills = 0;
    std::set<std::pair<bool, bool>> seen; ///< whether the lists and the converted menu were new already
};

TEST_F(KilledAnywhereTest, ARunKilledAtAnySystemCallLeavesTheOldListsOrTheNewOnesAndTheNextRunPutsThemRight)
{
    undisturbed(0);
    installSet(1);
    const CountedRun whole = runCounted(command());
    if (!whole.isTraceable) {
        GTEST_SKIP() << "this system lets no process be watched by another";
    }
    ASSERT_EQ(whole.status, 0) << contentOf(path("output"));
    ASSERT_EQ(left(), results[1]);

    disturbRuns(pointsOf(whole, wantedPoints()), [&](long point) { return runCounted(command(), point).status; });

    EXPECT_EQ(seen, (std::set<std::pair<bool, bool>>{{false, false}, {false, true}, {true, true}}));
    EXPECT_GE(kills, wantedPoints() * 9 / 10); // the last calls are those of the longest runs alone
    std::cout << kills << " runs killed, each of about " << whole.calls << " system calls, "
              << whole.changingCalls.size() << " of which change what is on disk\n";
}

TEST_F(KilledAnywhereTest, ARunKilledAtAnyMomentLeavesTheOldListsOrTheNewOnesAndTheNextRunPutsThemRight)
{
    installSet(0);
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(runAtMost(command(), std::chrono::minutes(1)), 0);
    const auto whole =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin).count();
    std::mt19937 random(17); // NOLINT(cert-msc51-cpp): the same moments each time, as far as there are such
    std::uniform_int_distribution<long> anyMoment(1, std::max(2L, static_cast<long>(whole)));
    std::vector<long> moments(std::max<std::size_t>(wantedPoints() / 2, 1));
    std::generate(moments.begin(), moments.end(), [&] { return anyMoment(random); });

    disturbRuns(moments, [&](long moment) { return runAtMost(command(), std::chrono::microseconds(moment)); });

    std::cout << kills << " of " << moments.size() << " runs killed within " << whole << " microseconds\n";
}

TEST_F(KilledAnywhereTest, ARunKilledWhileItMakesTheConfigurationLeavesNoHalfOfIt)
{
    const HomeState made = undisturbed(0, false);
    const HomeState nothing{L"(none)", L"(none)", ""};
    beginAfresh(false);
    const CountedRun whole = runCounted(command());
    if (!whole.isTraceable) {
        GTEST_SKIP() << "this system lets no process be watched by another";
    }
    ASSERT_EQ(left(), made);
    std::set<HomeState> leftBehind;
    for (const long point : pointsOf(whole, wantedPoints() / 4)) {
        beginAfresh(false);
        runCounted(command(), point);
        const HomeState now = left();
        leftBehind.insert(now);
        runToTheEnd();
        EXPECT_EQ(left(), made) << "killed at call " << point;
    }
    const HomeState convertedOnly{L"(none)", L"(none)", made.convertedMenu};
    EXPECT_EQ(leftBehind, (std::set<HomeState>{nothing, convertedOnly, made}));
}

} // namespace
