#include "tests/TestLocale.h"

#include "host/LocaleText.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <vector>

using localetext::narrow;
using localetext::widen;

namespace {

class LocaleTextTest : public testing::Test
{
protected:
    LocaleTextTest() { std::setlocale(LC_ALL, "C.UTF-8"); }
};

constexpr wchar_t undecoded(int byte)
{
    return static_cast<wchar_t>(static_cast<int>(localetext::kUndecodableByte) + byte);
}

char byteOf(int value)
{
    return std::bit_cast<char>(static_cast<unsigned char>(value));
}

} // namespace

TEST_F(LocaleTextTest, TextIsWidenedByTheGlobalLocale)
{
    EXPECT_EQ(widen("a\xC3\xB6\xE6\xB0\xB4\xF0\x9F\x98\x80"), L"aö水\U0001F600");
    const TestLocale latin("de_DE.ISO-8859-1");
    EXPECT_EQ(widen("a\xF6"), L"aö");
    const TestLocale chinese("zh_CN.GB18030");
    EXPECT_EQ(widen("a\xCB\xAE\x94\x39\xFC\x36"), L"a水\U0001F600");
}

TEST_F(LocaleTextTest, BytesThatTheLocaleCannotDecodeAreCarriedOneByOne)
{
    EXPECT_EQ(widen("a\xFFz"), (std::wstring{L'a', undecoded(0xFF), L'z'}));
    EXPECT_EQ(widen("\xC3"), (std::wstring{undecoded(0xC3)}));
    EXPECT_EQ(widen("\xE6\xB0z"), (std::wstring{undecoded(0xE6), undecoded(0xB0), L'z'}));
    EXPECT_EQ(widen("\xED\xB2\x80"), (std::wstring{undecoded(0xED), undecoded(0xB2), undecoded(0x80)}))
        << "a surrogate is no character, the private ones least of all";
    const TestLocale classic("C");
    EXPECT_EQ(widen("\xC3\xB6"), (std::wstring{undecoded(0xC3), undecoded(0xB6)}));
}

TEST_F(LocaleTextTest, Utf8BeyondTheLastCodePointIsCarriedByteByByte)
{
    for (const std::string& bytes :
         std::vector<std::string>{"\xF4\x90\x80\x80", "\xF6\xA9\xA9\xA9", "\xF7\xBF\xBF\xBF"}) {
        std::wstring expected;
        for (const char byte : bytes) {
            expected += undecoded(static_cast<unsigned char>(byte));
        }
        EXPECT_EQ(widen(bytes), expected);
        EXPECT_EQ(narrow(expected), bytes);
    }
}

TEST_F(LocaleTextTest, ZeroBytesAreText)
{
    EXPECT_EQ(widen(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(narrow(std::wstring_view(L"a\0b", 3)), std::string("a\0b", 3));
}

TEST_F(LocaleTextTest, EveryByteSequenceComesBackInEveryLocale)
{
    for (const char* name : {"C", "C.UTF-8", "de_DE.ISO-8859-1", "zh_CN.GB18030", "zh_HK.BIG5-HKSCS"}) {
        const TestLocale locale(name);
        int lost = 0;
        for (int one = 1; one < 256; ++one) {
            for (int two = 1; two < 256; ++two) {
                const std::string pair{byteOf(one), byteOf(two)};
                const std::string text = pair + "/" + pair + pair;
                lost += narrow(widen(text)) == text ? 0 : 1;
            }
        }
        EXPECT_EQ(lost, 0) << name;
    }
}

TEST_F(LocaleTextTest, CharacterThatTheLocaleHasNoCodeForComesOutInUtf8)
{
    const TestLocale latin("de_DE.ISO-8859-1");
    EXPECT_EQ(narrow(L"ö水"), "\xF6\xE6\xB0\xB4");
}

TEST_F(LocaleTextTest, CharacterThatTheLocaleWouldJoinWithTheNextIsNotLost)
{
    const TestLocale hongKong("zh_HK.BIG5-HKSCS");
    EXPECT_EQ(narrow(L"Ê"), "\xC3\x8A");
    EXPECT_EQ(narrow(L"Êa"), "\xC3\x8A"
                             "a");
}

TEST_F(LocaleTextTest, WhatIsNoCodePointComesOutAsReplacementCharacter)
{
    const std::wstring beyond{static_cast<wchar_t>(0x110000), static_cast<wchar_t>(0xFFFFFFFFU)};
    EXPECT_EQ(narrow(beyond), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST_F(LocaleTextTest, Utf8IsTheSameInEveryLocaleAndGivesUndecodableBytesBack)
{
    const std::wstring text = localetext::widen("\xC3\x9F\xFF") + static_cast<wchar_t>(0x110000);
    EXPECT_EQ(localetext::utf8(text), "\xC3\x9F\xFF\xEF\xBF\xBD");
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(localetext::utf8(text), "\xC3\x9F\xFF\xEF\xBF\xBD");
    EXPECT_EQ(localetext::utf8(localetext::widen("\xC3\x9F")), "\xC3\x9F");
}

TEST_F(LocaleTextTest, CaseIsIgnoredForAsciiLettersOnly)
{
    EXPECT_TRUE(localetext::equalIgnoringCase(L".BunDle", L".bundle"));
    EXPECT_FALSE(localetext::equalIgnoringCase(L".bundle", L".bundl"));
    EXPECT_FALSE(localetext::equalIgnoringCase(L"Ö", L"ö"));
    EXPECT_FALSE(localetext::equalIgnoringCase(L"@[`{", L"`{@["));
}

TEST_F(LocaleTextTest, UpperCaseFollowsTheGlobalLocale)
{
    std::wstring text = L"line ö ß \U00010428";
    localetext::upperByGlobalLocale(text);
    EXPECT_EQ(text, L"LINE Ö ß \U00010400");
    const TestLocale turkish("tr_TR.UTF-8");
    text = L"line";
    localetext::upperByGlobalLocale(text);
    EXPECT_EQ(text, L"LİNE");
}
