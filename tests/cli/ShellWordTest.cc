#include "cli/ShellWord.h"

#include <gtest/gtest.h>

namespace {

TEST(ShellWordTest, PlainTextsStandAsTheyAre)
{
    EXPECT_EQ(cli::shellWord("/usr/lib/a-b_c.so:1@2%+,"), "/usr/lib/a-b_c.so:1@2%+,");
}

TEST(ShellWordTest, OthersAreQuotedSoThatAShellGivesThemBack)
{
    EXPECT_EQ(cli::shellWord(""), "''");
    EXPECT_EQ(cli::shellWord("two words"), "'two words'");
    EXPECT_EQ(cli::shellWord("it's"), "'it'\\''s'");
    EXPECT_EQ(cli::shellWord("~/$(x)\n"), "'~/$(x)\n'");
    EXPECT_EQ(cli::shellWord("图纸"), "'图纸'");
}

} // namespace
