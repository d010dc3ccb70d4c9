// What a text becomes when it is taken for a format that has no arguments.
#include "bundle/LogFormat.h"
#include "tests/TestLocale.h"

#include <cstdint>

namespace {

/// Between two brackets, so that it shows what a conversion takes with it.
std::wstring between(const std::wstring& text)
{
    return formatLogText(L"[" + text + L"]");
}

TEST(LogFormatTest, TextWithoutAPercentSignIsUnchanged)
{
    EXPECT_EQ(formatLogText(L""), L"");
    EXPECT_EQ(formatLogText(L"/a/b c.krx loading failed\n"), L"/a/b c.krx loading failed\n");
    EXPECT_EQ(formatLogText(L"a\\n\t\"\x1b"), L"a\\n\t\"\x1b");
}

TEST(LogFormatTest, TwoPercentSignsInARowBecomeOne)
{
    EXPECT_EQ(between(L"%%"), L"[%]");
    EXPECT_EQ(between(L"a%%b%%c"), L"[a%b%c]");
    EXPECT_EQ(between(L"%%%%"), L"[%%]");
}

TEST(LogFormatTest, APairIsReadBeforeAConversion)
{
    EXPECT_EQ(between(L"%%d"), L"[%d]");
    EXPECT_EQ(between(L"%%%d"), L"[%]");
    EXPECT_EQ(between(L"%%%%n"), L"[%%n]");
    EXPECT_EQ(between(L"%d%%d"), L"[%d]");
}

TEST(LogFormatTest, EveryKindOfConversionIsTakenOut)
{
    for (const wchar_t kind : std::wstring(L"diouxXeEfFgGaAcCsSpnmbB")) {
        EXPECT_EQ(between(std::wstring(L"%") + kind), L"[]") << static_cast<char>(kind);
        EXPECT_EQ(between(std::wstring(L"%") + kind + kind), std::wstring(L"[") + kind + L"]")
            << static_cast<char>(kind);
    }
}

TEST(LogFormatTest, EveryFlagGoesWithItsConversion)
{
    for (const wchar_t flag : std::wstring(L"-+ #0'I")) {
        EXPECT_EQ(between(std::wstring(L"%") + flag + L"d"), L"[]") << static_cast<char>(flag);
    }
    EXPECT_EQ(between(L"%-+ #0'Id"), L"[]");
}

TEST(LogFormatTest, WidthAndPrecisionGoWithTheirConversion)
{
    for (const wchar_t* text :
         {L"%5d", L"%1234567890d", L"%.3f", L"%10.4s", L"%*d", L"%.*f", L"%*.*g", L"%.d", L"%99999999999999999999s"}) {
        EXPECT_EQ(between(text), L"[]") << text;
    }
}

TEST(LogFormatTest, EveryLengthGoesWithItsConversion)
{
    for (const wchar_t* text : {L"%hd", L"%hhd", L"%ld", L"%lld", L"%qd", L"%Lf", L"%jd", L"%zd", L"%Zd", L"%td",
                                L"%ls", L"%lc", L"%hhn", L"%lln", L"%w32d"}) {
        EXPECT_EQ(between(text), L"[]") << text;
    }
}

TEST(LogFormatTest, PositionsOfArgumentsGoWithTheirConversion)
{
    EXPECT_EQ(between(L"%1$s"), L"[]");
    EXPECT_EQ(between(L"%2$*1$d"), L"[]");
    EXPECT_EQ(between(L"%1$n%2$ls"), L"[]");
}

TEST(LogFormatTest, APercentSignBeforeACharacterThatIsNoConversionGoesAlone)
{
    EXPECT_EQ(between(L"%/"), L"[/]");
    EXPECT_EQ(between(L"100%\n"), L"[100\n]");
    EXPECT_EQ(between(L"%y%k"), L"[yk]");
    EXPECT_EQ(between(L"%\u00e4"), L"[\u00e4]");
    EXPECT_EQ(between(L"%\U0001F600"), L"[\U0001F600]");
    EXPECT_EQ(between(L"%\xDCFF"), L"[\xDCFF]");
}

TEST(LogFormatTest, FlagsBeforeACharacterThatIsNoConversionGoWithTheirPercentSign)
{
    EXPECT_EQ(between(L"% 5.1l/"), L"[/]");
    EXPECT_EQ(between(L"%5%%"), L"[%]");
}

TEST(LogFormatTest, ATrailingPercentSignIsTakenOut)
{
    EXPECT_EQ(formatLogText(L"%"), L"");
    EXPECT_EQ(formatLogText(L"100%"), L"100");
    EXPECT_EQ(formatLogText(L"%%%"), L"%");
    EXPECT_EQ(formatLogText(L"a%-5.3l"), L"a");
}

TEST(LogFormatTest, WhatIsLeftOfTwoConversionsFormsNoThird)
{
    EXPECT_EQ(formatLogText(L"%5%d%d"), L"");
    EXPECT_EQ(formatLogText(L"%\n%\nn"), L"\n\nn");
    EXPECT_EQ(formatLogText(L"%d%%%dn"), L"%n");
}

TEST(LogFormatTest, EveryCodeUnitPassesUnchangedInEveryLocale)
{
    std::wstring all;
    for (std::uint32_t code = 1; code <= 0x10FFFF; ++code) {
        if (code != L'%') {
            all.push_back(static_cast<wchar_t>(code));
        }
    }
    EXPECT_TRUE(formatLogText(all) == all);
    for (const char* name : {"tr_TR.UTF-8", "de_DE.UTF-8", "de_DE.ISO-8859-1", "zh_CN.GB18030"}) {
        const TestLocale locale(name);
        EXPECT_TRUE(formatLogText(all) == all) << name;
    }
    std::setlocale(LC_ALL, "C");
    EXPECT_TRUE(formatLogText(all) == all);
    std::setlocale(LC_ALL, "C.UTF-8");
}

TEST(LogFormatTest, AVeryLongTextIsWrittenWhole)
{
    const std::wstring text(1'000'000, L'x');
    EXPECT_TRUE(formatLogText(text + L"%%") == text + L"%");
    EXPECT_EQ(formatLogText(std::wstring(1'000'000, L'%')), std::wstring(500'000, L'%'));
}

} // namespace
