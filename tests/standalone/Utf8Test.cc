#include "standalone/Utf8.h"

#include "standalone/StoredText.h"

#include "host/LocaleText.h"

#include <gtest/gtest.h>

#include <clocale>

using namespace std::string_literals;
using standalone::displayable;

namespace {

class Utf8Test : public testing::Test
{
protected:
    ~Utf8Test() override { std::setlocale(LC_ALL, "C"); }
};

TEST_F(Utf8Test, TextIsWidenedWhateverTheLocale)
{
    EXPECT_EQ(standalone::wideFromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), L"a\u00E9\u20AC\U0001F600");
    EXPECT_EQ(standalone::wideFromUtf8(""), L"");
}

TEST_F(Utf8Test, WhatIsNotUtf8IsRefused)
{
    const std::string refused[] = {
        "\x80"s,             // a byte that only continues
        "\xC3"s,             // cut off
        "\xC0\xAF"s,         // overlong
        "\xE0\x80\xAF"s,     // overlong
        "\xF0\x80\x80\xAF"s, // overlong
        "\xED\xA0\x80"s,     // a surrogate
        "\xF4\x90\x80\x80"s, // above the last code point
        "\xFF"s,
        "a\xE2\x82z"s,
    };
    for (const std::string& text : refused) {
        EXPECT_EQ(standalone::wideFromUtf8(text), std::nullopt) << displayable(std::string_view(text));
    }
}

TEST_F(Utf8Test, ControlCharactersAndStrayBytesAreShownByTheirValue)
{
    EXPECT_EQ(displayable(L"a\nb\x7F\u0085"s), "a\\x0Ab\\x7F\\xC2\\x85");
    EXPECT_EQ(displayable(L"x"s + static_cast<wchar_t>(localetext::kUndecodableByte + 0xE9) + L"y"), "x\\xE9y");
    EXPECT_EQ(displayable(std::wstring{L'x', static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000)}),
              "x\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST_F(Utf8Test, AUtf8FileNameIsReadableInEveryLocale)
{
    EXPECT_EQ(displayable(std::string_view("/caf\xC3\xA9")), "/caf\xC3\xA9");
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    EXPECT_EQ(displayable(std::string_view("/caf\xC3\xA9")), "/caf\xC3\xA9");
    EXPECT_EQ(displayable(std::string_view("/caf\xE9")), "/caf\\xE9");
}

TEST_F(Utf8Test, EveryCodeUnitCanBeStored)
{
    const std::uint32_t borders[] = {0,        0x7F,     0x80,      0x7FF,     0x800,      0xD7FF,     0xD800,
                                     0xDC80,   0xDCFF,   0xDFFF,    0xFFFF,    0x10000,    0x10FFFF,   0x110000,
                                     0x1FFFFF, 0x200000, 0x3FFFFFF, 0x4000000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    std::wstring all;
    for (const std::uint32_t code : borders) {
        const std::wstring one(1, static_cast<wchar_t>(code));
        EXPECT_EQ(standalone::textFromStored(standalone::storedText(one)), one) << code;
        all += one;
    }
    EXPECT_EQ(standalone::textFromStored(standalone::storedText(all)), all);
}

TEST_F(Utf8Test, CharactersAreStoredInPlainUtf8)
{
    EXPECT_EQ(standalone::storedText(L"a;\u00E9\u20AC\U0001F600"), "a;\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(standalone::storedText(std::wstring(1, static_cast<wchar_t>(0xDCE9))), "\xED\xB3\xA9");
}

TEST_F(Utf8Test, BytesThatWereNeverStoredAreRefused)
{
    for (const std::string& bytes : {"\x80"s, "\xC3"s, "\xC0\xAF"s, "\xFF"s, "\xE2\x82z"s,
                                     "\xFE\x84\x80\x80\x80\x80\x80"s}) { // one more than the largest code unit
        EXPECT_EQ(standalone::textFromStored(bytes), std::nullopt) << displayable(std::string_view(bytes));
    }
}

} // namespace
