// "Did you mean".
#include "cli/NearestName.h"

#include <gtest/gtest.h>

namespace {

using cli::nearestName;

const std::vector<std::string> kNames = {"ComponentEntry", "Components", "Commands", "Command"};

TEST(NearestNameTest, OneMistakeOfEachKindIsForgiven)
{
    for (const char* mistyped : {"Component", "Comonents", "Compoonents", "Compomemts", "Copmonents", "Components"}) {
        EXPECT_EQ(nearestName(mistyped, kNames), "Components") << mistyped;
    }
}

TEST(NearestNameTest, LetterCaseIsHalfAMistake)
{
    EXPECT_EQ(nearestName("components", kNames), "Components");
    EXPECT_EQ(nearestName("COMMAND", {"COMMAN", "command"}), "COMMAN") << "one mistake against seven halves";
    EXPECT_EQ(nearestName("aB", {"xB", "ab"}), "ab");
}

TEST(NearestNameTest, TheFirstOfEquallyNearNamesIsTaken)
{
    EXPECT_EQ(nearestName("Bat", {"Cat", "Hat"}), "Cat");
}

TEST(NearestNameTest, AThirdOfTheLongerNameIsTheMost)
{
    EXPECT_EQ(nearestName("abcdxy", {"abcdef"}), "abcdef");
    EXPECT_EQ(nearestName("abcxyz", {"abcdef"}), std::nullopt);
    EXPECT_EQ(nearestName("", kNames), std::nullopt);
    EXPECT_EQ(nearestName("Command", {}), std::nullopt);
}

TEST(NearestNameTest, AHugeNameIsNotCompared)
{
    const std::string huge(1'000'000, 'x');
    EXPECT_EQ(nearestName(huge, {huge, "x"}), std::nullopt);
}

} // namespace
