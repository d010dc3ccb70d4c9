#include "cli/graph/TextWidth.h"

#include "standalone/Utf8.h"

#include <array>
#include <string_view>

namespace cli {

namespace {

struct Range
{
    char32_t first;
    char32_t last;
};

/// Characters as wide as they are high: those of East Asia, and pictographs.
constexpr std::array<Range, 9> kFull = {{{0x1100, 0x115F},
                                         {0x2E80, 0x303E},
                                         {0x3041, 0xA4CF},
                                         {0xAC00, 0xD7A3},
                                         {0xF900, 0xFAFF},
                                         {0xFE30, 0xFE6F},
                                         {0xFF00, 0xFF60},
                                         {0x1F300, 0x1FAFF},
                                         {0x20000, 0x3FFFD}}};

/// Characters that stand above or below others, or are not seen.
constexpr std::array<Range, 6> kWithoutWidth = {
    {{0x0300, 0x036F}, {0x1AB0, 0x1AFF}, {0x20D0, 0x20FF}, {0x200B, 0x200F}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}}};

template <std::size_t count>
bool isIn(const std::array<Range, count>& ranges, char32_t code)
{
    for (const Range& range : ranges) {
        if (code >= range.first && code <= range.last) {
            return true;
        }
    }
    return false;
}

/// In thousandths of the size of the font.
int widthOf(char32_t code)
{
    constexpr std::u32string_view kNarrow = U" !'(),./:;I[\\]fijlrt|";
    constexpr std::u32string_view kWide = U"@MWm%w";
    if (isIn(kWithoutWidth, code)) {
        return 0;
    }
    if (isIn(kFull, code)) {
        return 1000;
    }
    if (kNarrow.find(code) != std::u32string_view::npos) {
        return 400;
    }
    if (kWide.find(code) != std::u32string_view::npos) {
        return 980;
    }
    const bool isSmall = (code >= U'a' && code <= U'z') || (code >= U'0' && code <= U'9');
    return isSmall ? 630 : 750;
}

} // namespace

int textWidth(const std::string& text, int size)
{
    int width = 0;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = standalone::nextCodePoint(text, at);
        at += code == standalone::kNotUtf8 ? 1 : 0;
        width += widthOf(code);
    }
    return (width * size + 999) / 1000;
}

std::string clippedText(const std::string& text, int size, int width)
{
    if (textWidth(text, size) <= width) {
        return text;
    }
    int room = width * 1000 / size - widthOf(U'…');
    std::size_t end = 0;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = standalone::nextCodePoint(text, at);
        at += code == standalone::kNotUtf8 ? 1 : 0;
        room -= widthOf(code);
        if (room < 0) {
            break;
        }
        end = at;
    }
    return text.substr(0, end) + "…";
}

} // namespace cli
