#include "cli/MenuDifference.h"

#include <gtest/gtest.h>

namespace {

using cli::MenuDifference;
using Change = MenuDifference::Change;
using ListLines = std::vector<MenuDifference::Line>;

TEST(MenuDifferenceTest, EveryEntryOfAListIsOneEmptyOnesIncluded)
{
    using Entries = std::vector<std::wstring>;
    EXPECT_EQ(cli::menuEntries(std::nullopt), Entries());
    EXPECT_EQ(cli::menuEntries(L""), Entries());
    EXPECT_EQ(cli::menuEntries(L"a"), Entries{L"a"});
    EXPECT_EQ(cli::menuEntries(L";a;;b;"), (Entries{L"", L"a", L"", L"b", L""}));
}

TEST(MenuDifferenceTest, WhatWasRemovedComesFirstThenTheNewListInItsOrder)
{
    const MenuDifference difference = cli::menuDifference(L"h;old;k", L"k;h;new");
    EXPECT_EQ(difference.before, 3U);
    EXPECT_EQ(difference.after, 3U);
    EXPECT_EQ(
        difference.lines,
        (ListLines{
            {Change::kRemoved, L"old"}, {Change::kStays, L"k"}, {Change::kStays, L"h"}, {Change::kAdded, L"new"}}));
}

TEST(MenuDifferenceTest, AnEntryStaysAsOftenAsItStandsInBothLists)
{
    EXPECT_EQ(cli::menuDifference(L"a", L"a;a").lines, (ListLines{{Change::kStays, L"a"}, {Change::kAdded, L"a"}}));
    EXPECT_EQ(cli::menuDifference(L"a;a", L"a").lines, (ListLines{{Change::kRemoved, L"a"}, {Change::kStays, L"a"}}));
}

TEST(MenuDifferenceTest, AListThatIsNotStoredHasNoEntries)
{
    const MenuDifference difference = cli::menuDifference(std::nullopt, L";a");
    EXPECT_EQ(difference.before, 0U);
    EXPECT_EQ(difference.after, 2U);
    EXPECT_EQ(difference.lines, (ListLines{{Change::kAdded, L""}, {Change::kAdded, L"a"}}));
}

} // namespace
