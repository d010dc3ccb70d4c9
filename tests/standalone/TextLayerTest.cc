#include "tests/TestLocale.h"

#include "host/TextLayer.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <string>

namespace {

class TextLayerTest : public testing::Test
{
protected:
    TextLayerTest() { std::setlocale(LC_ALL, "C.UTF-8"); }
};

} // namespace

TEST_F(TextLayerTest, FormattingEndsTheTextAndAnswersItsLength)
{
    std::array<wchar_t, 16> buffer;
    buffer.fill(L'#');
    EXPECT_EQ(_tarswprintf(buffer.data(), buffer.size(), L"(%ls %d)", L"水", 42), 6);
    EXPECT_STREQ(buffer.data(), L"(水 42)");
    EXPECT_EQ(buffer[7], L'#') << "nothing is written behind the end";
}

TEST_F(TextLayerTest, TextThatFitsExactlyIsNotCut)
{
    std::array<wchar_t, 5> buffer{};
    EXPECT_EQ(_tarswprintf(buffer.data(), buffer.size(), L"%ls", L"abcd"), 4);
    EXPECT_STREQ(buffer.data(), L"abcd");
}

TEST_F(TextLayerTest, LongerTextIsCutAtTheBufferAndTheAnswerIsNegative)
{
    std::array<wchar_t, 6> buffer;
    buffer.fill(L'#');
    EXPECT_LT(_tarswprintf(buffer.data(), 5, L"%ls", L"abcde"), 0);
    EXPECT_STREQ(buffer.data(), L"abcd");
    EXPECT_EQ(buffer[5], L'#');
    EXPECT_LT(_tarswprintf(buffer.data(), 1, L"%ls", L"abcde"), 0);
    EXPECT_STREQ(buffer.data(), L"");
}

TEST_F(TextLayerTest, LongPathInALoadExpressionIsCutAt2048Units)
{
    const std::wstring path(5000, L'水');
    std::wstring buffer(2049, L'\0');
    EXPECT_LT(_tarswprintf(buffer.data(), buffer.size(), L"(LOAD \"%ls\")", path.c_str()), 0);
    EXPECT_EQ(buffer, L"(LOAD \"" + path.substr(0, 2041) + L'\0');
}

TEST_F(TextLayerTest, NothingFitsIntoNothing)
{
    wchar_t untouched = L'#';
    EXPECT_LT(_tarswprintf(&untouched, 0, L"%ls", L"abc"), 0);
    EXPECT_EQ(untouched, L'#');
}

TEST_F(TextLayerTest, NarrowArgumentThatCannotBeDecodedGivesEmptyText)
{
    std::array<wchar_t, 16> buffer{};
    EXPECT_LT(_tarswprintf(buffer.data(), buffer.size(), L"ab%s", "\xFF"), 0);
    EXPECT_STREQ(buffer.data(), L"");
}

TEST_F(TextLayerTest, DecimalNumbersAreRead)
{
    EXPECT_EQ(_wtof(L"26"), 26.0);
    EXPECT_EQ(_wtof(L"26.5"), 26.5);
    EXPECT_EQ(_wtof(L"-0.25"), -0.25);
    EXPECT_EQ(_wtof(L"+7"), 7.0);
    EXPECT_EQ(_wtof(L".5"), 0.5);
    EXPECT_EQ(_wtof(L"5."), 5.0);
    EXPECT_EQ(_wtof(L"1e3"), 1000.0);
    EXPECT_EQ(_wtof(L"1.5E-1"), 0.15);
    EXPECT_EQ(_wtof(L"2e+2"), 200.0);
}

TEST_F(TextLayerTest, NumberEndsWhereTheTextStopsBeingOne)
{
    EXPECT_EQ(_wtof(L"26.0_1"), 26.0);
    EXPECT_EQ(_wtof(L"1.2.3"), 1.2);
    EXPECT_EQ(_wtof(L"3e"), 3.0);
    EXPECT_EQ(_wtof(L"3e+x"), 3.0);
    EXPECT_EQ(_wtof(L"0x10"), 0.0);
    EXPECT_EQ(_wtof(L"4水"), 4.0);
    EXPECT_EQ(_wtof(L" \t\r\n\v\f 8 9"), 8.0);
}

TEST_F(TextLayerTest, TextWithoutANumberIsZero)
{
    for (const wchar_t* text :
         {L"", L" ", L"abc", L".", L"-", L"+-1", L"--1", L"- 1", L"inf", L"nan", L"e5", L"٣", L",5"}) {
        EXPECT_EQ(_wtof(text), 0.0) << std::wstring(text).size();
        EXPECT_EQ(_wtoi(text), 0);
    }
}

TEST_F(TextLayerTest, PointIsTheDecimalPointInEveryLocale)
{
    for (const char* name : {"de_DE.UTF-8", "de_DE.ISO-8859-1", "C"}) {
        const TestLocale locale(name);
        EXPECT_EQ(_wtof(L"26.5"), 26.5) << name;
        EXPECT_EQ(_wtof(L"26,5"), 26.0) << name;
    }
}

TEST_F(TextLayerTest, NumbersBeyondTheRangeOfDoubleAreInfinityOrZero)
{
    EXPECT_EQ(_wtof(L"1e999"), HUGE_VAL);
    EXPECT_EQ(_wtof(L"-1e999"), -HUGE_VAL);
    EXPECT_EQ(_wtof(L"1e-999"), 0.0);
    EXPECT_EQ(_wtof(L"1e999999999999999999999"), HUGE_VAL);
    EXPECT_EQ(_wtof(L"1e-999999999999999999999"), 0.0);
    EXPECT_EQ(_wtof(std::wstring(400, L'9').c_str()), HUGE_VAL);
    EXPECT_EQ(_wtof((L"0." + std::wstring(400, L'0') + L"1").c_str()), 0.0);
    EXPECT_EQ(_wtof((L"0." + std::wstring(400, L'0') + L"1e999").c_str()), HUGE_VAL);
    EXPECT_EQ(_wtof((L"1" + std::wstring(400, L'0') + L"e-999").c_str()), 0.0);
    EXPECT_EQ(_wtof((L"1" + std::wstring(400, L'0') + L"e-400").c_str()), 1.0);
    EXPECT_EQ(_wtof(L"0e999"), 0.0);
}

TEST_F(TextLayerTest, WholeNumbersAreReadInDecimal)
{
    EXPECT_EQ(_wtoi(L"42"), 42);
    EXPECT_EQ(_wtoi(L"  -7x"), -7);
    EXPECT_EQ(_wtoi(L"+3.9"), 3);
    EXPECT_EQ(_wtoi(L"010"), 10);
    EXPECT_EQ(_wtoi(L"0x10"), 0);
    EXPECT_EQ(_wtoi(L"1e3"), 1);
}

TEST_F(TextLayerTest, WholeNumbersThatDoNotFitAreTheNearest)
{
    EXPECT_EQ(_wtoi(L"2147483647"), INT_MAX);
    EXPECT_EQ(_wtoi(L"2147483648"), INT_MAX);
    EXPECT_EQ(_wtoi(L"-2147483648"), INT_MIN);
    EXPECT_EQ(_wtoi(L"-2147483649"), INT_MIN);
    EXPECT_EQ(_wtoi(std::wstring(1000, L'9').c_str()), INT_MAX);
}
