// The lines of the report for people.
#include "cli/ReportLines.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(ReportLinesTest, ATimeHasOneDecimal)
{
    EXPECT_EQ(cli::timeText(0), "0.0 ms");
    EXPECT_EQ(cli::timeText(0.049), "0.0 ms");
    EXPECT_EQ(cli::timeText(0.051), "0.1 ms");
    EXPECT_EQ(cli::timeText(12.34), "12.3 ms");
    EXPECT_EQ(cli::timeText(61234.56), "61234.6 ms");
}

TEST(ReportLinesTest, TheLongestTimeFits)
{
    EXPECT_EQ(cli::timeText(std::numeric_limits<double>::max()).size(), 309U + 5U);
}

TEST(ReportLinesTest, TextsStandInOneColumnBehindTheirLabels)
{
    EXPECT_EQ(cli::labelled("loaded", "a"), "  loaded     a\n");
    EXPECT_EQ(cli::below("b"), "             b\n");
    EXPECT_EQ(cli::labelled("a label that is long", "c"), "  a label that is long c\n");
}

} // namespace
