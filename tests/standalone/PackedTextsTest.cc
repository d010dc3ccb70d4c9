// Texts that are kept packed.
#include "standalone/PackedTexts.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using standalone::PackedTexts;

/// Nothing, ASCII up to its last character, other letters, what no code point is, zeroes.
std::vector<std::wstring> texts()
{
    return {L"",
            L"DRAWGEAR",
            std::wstring(1000, L'~') + L'\x7F',
            L"\x80",
            L"Stra\u00DFe",
            L"\u00FF",
            L"\U0010FFFF",
            {static_cast<wchar_t>(0xDC80)},
            {static_cast<wchar_t>(0x80000041)},
            std::wstring(L"a\0b", 3)};
}

TEST(PackedTextsTest, EveryTextComesOutAsItWentIn)
{
    PackedTexts packed;
    for (const std::wstring& text : texts()) {
        EXPECT_EQ(PackedTexts::unpacked(packed.keep(text)), text);
        EXPECT_EQ(PackedTexts::unpacked(PackedTexts::packed(text)), text);
        EXPECT_EQ(packed.keep(text), PackedTexts::packed(text));
    }
}

TEST(PackedTextsTest, DifferentTextsHaveDifferentPackedForms)
{
    const std::vector<std::wstring> all = texts();
    for (std::size_t one = 0; one < all.size(); ++one) {
        for (std::size_t other = 0; other < one; ++other) {
            EXPECT_NE(PackedTexts::packed(all[one]), PackedTexts::packed(all[other]));
        }
    }
}

TEST(PackedTextsTest, AnAsciiTextTakesAByteForEachCharacter)
{
    EXPECT_EQ(PackedTexts::packed(L"DRAWGEAR"), "DRAWGEAR");
}

TEST(PackedTextsTest, WhatIsKeptStaysWhereItIsHoweverMuchFollows)
{
    PackedTexts packed;
    std::vector<std::pair<std::wstring, std::string_view>> kept;
    for (std::size_t number = 0; number < 3000; ++number) {
        std::wstring text = std::to_wstring(number) + (number % 7 == 0 ? L"\u00E9" : L"");
        text.append(number % 500 == 0 ? 20'000 : 20, L'.');
        const std::string_view form = packed.keep(text);
        kept.emplace_back(std::move(text), form);
    }
    for (const auto& [text, form] : kept) {
        ASSERT_EQ(PackedTexts::unpacked(form), text);
    }
}

TEST(PackedTextsTest, WhatIsTakenBackLeavesItsPlaceToTheNext)
{
    PackedTexts packed;
    const std::string_view first = packed.keep(L"FIRST");
    const std::string_view again = packed.keep(L"AGAIN");
    packed.takeBack(again);
    EXPECT_EQ(packed.keep(L"OTHER").data(), again.data());
    EXPECT_EQ(first, "FIRST");
}

TEST(PackedTextsTest, ClearedOnesTakeNewTexts)
{
    PackedTexts packed;
    packed.keep(std::wstring(20'000, L'x'));
    packed.clear();
    EXPECT_EQ(PackedTexts::unpacked(packed.keep(L"NEW")), L"NEW");
}

} // namespace
