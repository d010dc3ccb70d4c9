// What an update of the host's list of menus does to entries that it should leave alone.
#include "cli/MenuAccount.h"

#include <gtest/gtest.h>

namespace cli {

/// For the test's own messages.
static void PrintTo(const MenuDamage& damage, std::ostream* stream)
{
    *stream << nameOf(damage.kind) << ' ' << ::testing::PrintToString(damage.entries) << " now "
            << ::testing::PrintToString(damage.now) << " cut " << ::testing::PrintToString(damage.cut);
}

namespace {

using Kind = MenuDamage::Kind;
using All = std::vector<MenuDamage>;

TEST(MenuDamageTest, AnUpdateThatOnlyExchangesTheBundlesEntriesDamagesNothing)
{
    EXPECT_EQ(menuDamage(std::nullopt, L";a", std::nullopt, L"a"), All());
    EXPECT_EQ(menuDamage(L"h;a;b", L"h;b;c", L"a;b", L"b;c"), All());
    EXPECT_EQ(menuDamage(L"a;h", L";h", L"a", L""), All());
    EXPECT_EQ(menuDamage(L"h", L"h", std::nullopt, std::nullopt), All());
}

TEST(MenuDamageTest, EntriesBetweenWhichNoSeparatorIsLeftHaveRunTogether)
{
    EXPECT_EQ(menuDamage(L"h;k;;l", L"hkl;a", std::nullopt, L"a"),
              (All{{Kind::kRunTogether, {L"h", L"k", L"l"}, L"hkl", L""}}));
}

TEST(MenuDamageTest, AnEntryThatHasLostTheTextOfAnotherIsCut)
{
    EXPECT_EQ(menuDamage(L"/m.cuix;/a/m.cuix", L";/a", L"/m.cuix", L""),
              (All{{Kind::kCut, {L"/a/m.cuix"}, L"/a", L"/m.cuix"}}));
}

TEST(MenuDamageTest, AnEntryThatIsNowhereAnyMoreIsLost)
{
    EXPECT_EQ(menuDamage(L"h;k", L"h", std::nullopt, L""), (All{{Kind::kLost, {L"k"}, L"", L""}}));
    EXPECT_EQ(menuDamage(L"h;h", L"h", std::nullopt, L""), (All{{Kind::kLost, {L"h"}, L"", L""}}));
}

TEST(MenuDamageTest, WhatAnEarlierStartRegisteredAndNobodyTakesOutIsLeftBehind)
{
    EXPECT_EQ(menuDamage(L";a;;b", L"b;a;;b", L"a;;b", L"a;;b"), (All{{Kind::kLeftBehind, {}, L"b", L""}}));
}

} // namespace
} // namespace cli
