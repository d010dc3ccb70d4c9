// In which order the bundles bring their menus, and which of them count as loaded afterwards.
#include "tests/AutoloaderTest.h"

#include <random>
#include <stdexcept>

namespace {

using Lines = std::vector<std::string>;

class MenuOrderTest : public AutoloaderTest
{
protected:
    /// Adds a bundle that is one menu, "/<upgradeCode>.cuix".
    KestBundle& addMenuBundle(const std::wstring& upgradeCode, const std::vector<std::wstring>& dependencies = {})
    {
        KestBundle& bundle = addBundle(upgradeCode, dependencies);
        addComponent(bundle, L"/" + upgradeCode + L".cuix");
        return bundle;
    }

    /// The menu list that is registered.
    std::wstring gather()
    {
        host.configuration.clear();
        manager().loadBundleCuix();
        return host.configuration[L"CUIX/LoadedBundleCuix"].text;
    }

    std::vector<std::wstring> loaded()
    {
        std::vector<std::wstring> identities;
        for (const KestBundleStatus& status : manager().loadedStatus) {
            identities.push_back(status.upgradeCode);
        }
        return identities;
    }
};

TEST_F(MenuOrderTest, BundlesWithoutDependenciesComeInCollectionOrder)
{
    addMenuBundle(L"b");
    addMenuBundle(L"c");
    addMenuBundle(L"a");

    EXPECT_EQ(gather(), L"/b.cuix;/c.cuix;/a.cuix");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"b", L"c", L"a"}));
}

TEST_F(MenuOrderTest, ABundleBehindTheOneItDependsOnComesInTheSamePass)
{
    addMenuBundle(L"a");
    addMenuBundle(L"b", {L"a"});
    addMenuBundle(L"c", {L"a", L"b"});
    addMenuBundle(L"d");

    EXPECT_EQ(gather(), L"/a.cuix;/b.cuix;/c.cuix;/d.cuix");
}

TEST_F(MenuOrderTest, ABundleBeforeTheOneItDependsOnWaitsForTheNextPass)
{
    addMenuBundle(L"b", {L"a"});
    addMenuBundle(L"a");
    addMenuBundle(L"c");

    EXPECT_EQ(gather(), L"/a.cuix;/c.cuix;/b.cuix");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"a", L"c", L"b"}));
}

TEST_F(MenuOrderTest, AChainAgainstTheListOrderTakesAPassForEachBundle)
{
    addMenuBundle(L"d", {L"c"});
    addMenuBundle(L"c", {L"b"});
    addMenuBundle(L"b", {L"a"});
    addMenuBundle(L"a");

    EXPECT_EQ(gather(), L"/a.cuix;/b.cuix;/c.cuix;/d.cuix");
}

TEST_F(MenuOrderTest, TwoBundlesThatDependOnEachOtherGiveNoMenusAndNoMessage)
{
    addMenuBundle(L"a", {L"b"});
    addMenuBundle(L"b", {L"a"});
    addMenuBundle(L"c");

    EXPECT_EQ(gather(), L"/c.cuix");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"c"}));
    EXPECT_FALSE(manager().bundles[0]->getIsLoad());
    EXPECT_EQ(problems(), "");
}

TEST_F(MenuOrderTest, ABundleThatDependsOnItselfIsNeverPlaced)
{
    addMenuBundle(L"a", {L"a"});

    EXPECT_EQ(gather(), L"");
    EXPECT_EQ(loaded(), std::vector<std::wstring>());
}

TEST_F(MenuOrderTest, ADependencyThatNoBundleMeetsKeepsABundleOutForGoodWhateverElseItHas)
{
    addMenuBundle(L"a");
    addMenuBundle(L"b", {L"a", L"missing"});
    addMenuBundle(L"c", {L"b"});

    EXPECT_EQ(gather(), L"/a.cuix");
    EXPECT_EQ(problems(), "");
}

TEST_F(MenuOrderTest, IdentitiesAreComparedExactly)
{
    addMenuBundle(L"A");
    addMenuBundle(L"b", {L"a"});
    addMenuBundle(L"c", {L"A "});

    EXPECT_EQ(gather(), L"/A.cuix");
}

TEST_F(MenuOrderTest, TheSameDependencyTwiceIsMetByOneBundle)
{
    addMenuBundle(L"b", {L"a", L"a"});
    addMenuBundle(L"a");

    EXPECT_EQ(gather(), L"/a.cuix;/b.cuix");
}

TEST_F(MenuOrderTest, TheVersionsOfADependencyPlayNoPart)
{
    addMenuBundle(L"a").package.appVersion = L"1";
    KestBundle& bundle = addMenuBundle(L"b", {L"a"});
    bundle.dependentBundles[0].versionMin = L"7";
    bundle.dependentBundles[0].versionMax = L"8";

    EXPECT_EQ(gather(), L"/a.cuix;/b.cuix");
}

TEST_F(MenuOrderTest, OfBundlesWithTheSameIdentityTheFirstOneVisitedGivesItsMenus)
{
    addComponent(addBundle(L"a", {L"c"}), L"/waits.cuix");
    addComponent(addBundle(L"a"), L"/first.cuix");
    addComponent(addBundle(L"a"), L"/second.cuix");
    addMenuBundle(L"c");

    EXPECT_EQ(gather(), L"/first.cuix;/c.cuix");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"a", L"c"}));
    EXPECT_FALSE(manager().bundles[0]->getIsLoad());
    EXPECT_FALSE(manager().bundles[2]->getIsLoad());
}

TEST_F(MenuOrderTest, OfBundlesWithoutAnIdentityTheFirstGivesItsMenus)
{
    addComponent(addBundle(L""), L"/first.cuix");
    addComponent(addBundle(L""), L"/second.cuix");

    EXPECT_EQ(gather(), L"/first.cuix");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L""}));
}

TEST_F(MenuOrderTest, ABundleWithoutMenusIsPlacedButDoesNotCountAsLoaded)
{
    addComponent(addBundle(L"a"), L"/a.krx");
    addMenuBundle(L"b", {L"a"});

    EXPECT_EQ(gather(), L"/b.cuix");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"b"}));
}

TEST_F(MenuOrderTest, ABundleWithOtherComponentsGivesItsMenusButDoesNotCountAsLoaded)
{
    addComponent(addMenuBundle(L"a"), L"/a.krx", KestComponentEntry::kLoadCommand);

    EXPECT_EQ(gather(), L"/a.cuix");
    EXPECT_EQ(loaded(), std::vector<std::wstring>());
}

TEST_F(MenuOrderTest, ABundleThatWasMarkedLoadedEarlierCountsAsLoadedHereToo)
{
    addComponent(addBundle(L"a"), L"/a.krx");
    manager().bundles[0]->isLoad = true;

    EXPECT_EQ(gather(), L"");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"a"}));
}

TEST_F(MenuOrderTest, WhatCountsAsLoadedAlreadyMeetsNoDependencyHere)
{
    manager().loadedStatus.push_back({L"elsewhere"});
    addMenuBundle(L"a", {L"elsewhere"});

    EXPECT_EQ(gather(), L"");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"elsewhere"}));
}

TEST_F(MenuOrderTest, ASecondGatheringPlacesEveryBundleAgain)
{
    addMenuBundle(L"a");
    gather();

    EXPECT_EQ(gather(), L"/a.cuix");
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"a", L"a"}));
}

TEST_F(MenuOrderTest, WithoutAStoreNothingIsGatheredAndNoFlagIsChanged)
{
    host.hasConfiguration = false;
    addMenuBundle(L"a");
    addComponent(*manager().bundles[0], L"/a.mnu");

    manager().loadBundleCuix();

    EXPECT_EQ(host.calls, Lines{"kestConfig()"});
    EXPECT_FALSE(manager().bundles[0]->getIsLoad());
    EXPECT_EQ(loaded(), std::vector<std::wstring>());
}

TEST_F(MenuOrderTest, WithoutBundlesTheListIsUpdatedWithoutAskingForTheStoreFirst)
{
    manager().loadBundleCuix();

    EXPECT_EQ(host.calls, (Lines{"kestConfig()", "getValue(4, CUIX/LoadedBundleCuix) -> 2"}));
}

TEST_F(MenuOrderTest, WithoutBundlesTheMenusOfTheLastRunAreTakenOut)
{
    host.configuration = {{L"CUIX/LoadedBundleCuix", {L"/x.cuix"}}, {L"CUIX/LoadedCuix", {L"h;/x.cuix"}}};

    manager().loadBundleCuix();

    EXPECT_EQ(host.configuration[L"CUIX/LoadedBundleCuix"].text, L"");
    EXPECT_EQ(host.configuration[L"CUIX/LoadedCuix"].text, L"h");
}

TEST_F(MenuOrderTest, AnErrorOfTheConversionReachesTheCallerAndNothingIsWritten)
{
    host.convertMenu = [](const std::wstring&, std::wstring&) -> bool { throw std::runtime_error("menu"); };
    addMenuBundle(L"a");
    addComponent(addBundle(L"b"), L"/b.mnu");

    EXPECT_THROW(manager().loadBundleCuix(), std::runtime_error);
    EXPECT_EQ(host.calls, (Lines{"kestConfig()", "convertMenuToCuix(/b.mnu, )"}));
    EXPECT_EQ(loaded(), (std::vector<std::wstring>{L"a"})) << "what was placed before stays";
}

/// The passes written down as they are told, visiting every bundle in every pass.
std::wstring gatherByPasses(const std::vector<KestBundle*>& bundles)
{
    std::vector<std::wstring> placed;
    const auto isPlaced = [&](const std::wstring& identity) {
        return std::find(placed.begin(), placed.end(), identity) != placed.end();
    };
    std::wstring list;
    auto previous = static_cast<int>(bundles.size());
    while (true) {
        int remaining = previous;
        for (const KestBundle* bundle : bundles) {
            const auto& needs = bundle->dependentBundles;
            if (isPlaced(bundle->package.upgradeCode) ||
                !std::all_of(needs.begin(), needs.end(),
                             [&](const auto& need) { return isPlaced(need.upgradeCode); })) {
                continue;
            }
            list += (list.empty() ? L"" : L";") + std::wstring(bundle->components[0].moduleName);
            --remaining;
            placed.push_back(bundle->package.upgradeCode);
        }
        if (remaining == previous || remaining <= 0) {
            return list;
        }
        previous = remaining;
    }
}

TEST_F(MenuOrderTest, ThousandsOfRandomListsComeInTheOrderOfThePasses)
{
    std::mt19937 random(20240229);
    const auto pick = [&](std::size_t below) { return random() % below; };
    for (int round = 0; round < 5000; ++round) {
        restartManager();
        const std::size_t count = 1 + pick(9);
        const std::size_t identities = 1 + pick(count + 2); // few: equal ones among them
        for (std::size_t i = 0; i < count; ++i) {
            std::vector<std::wstring> needs(pick(3));
            for (std::wstring& need : needs) {
                need = std::to_wstring(pick(identities + (round % 4 == 0 ? 1 : 0))); // some that nobody meets
            }
            KestBundle& bundle = addBundle(std::to_wstring(pick(identities)), needs);
            addComponent(bundle, L"/" + std::to_wstring(i) + L".cuix");
        }

        ASSERT_EQ(gather(), gatherByPasses(manager().bundles)) << "round " << round;
    }
}

} // namespace
