#include "menus/MenuKind.h"

#include <gtest/gtest.h>

namespace {

TEST(MenuKindTest, EachExtensionNamesItsKindInAnyLetterCase)
{
    EXPECT_EQ(menuKindOf(L"/b/a.cuix"), MenuKind::kCurrent);
    EXPECT_EQ(menuKindOf(L"/b/a.CUIX"), MenuKind::kCurrent);
    EXPECT_EQ(menuKindOf(L"/b/a.mnu"), MenuKind::kLegacy);
    EXPECT_EQ(menuKindOf(L"/b/a.Mns"), MenuKind::kLegacy);
    EXPECT_EQ(menuKindOf(L"/b/a.menuC"), MenuKind::kLegacy);
}

TEST(MenuKindTest, EverythingElseIsNoMenu)
{
    for (const wchar_t* path : {L"/b/a.krx", L"/b/a.cuix.bak", L"/b/a.cui", L"/b.cuix/a", L"/b/a.", L""}) {
        EXPECT_EQ(menuKindOf(path), MenuKind::kOther) << path;
    }
}

TEST(MenuKindTest, ThePathEndsAtItsFirstZeroCodeUnit)
{
    EXPECT_EQ(menuKindOf(std::wstring(L"/b/a.cuix\0x", 11)), MenuKind::kCurrent);
    EXPECT_EQ(menuKindOf(std::wstring(L"/b/a\0.cuix", 10)), MenuKind::kOther);
}

} // namespace
