#include "engines/managed/Text.h"

#include "host/LocaleText.h"

#include <array>

namespace engines {

namespace {

constexpr char32_t kNoCharacter = 0xFFFD;

constexpr bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// How many bytes the character that `bytes` begins with takes; 0 when there is none.
std::size_t characterLength(std::string_view bytes)
{
    const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    const unsigned char first = byteAt(0);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || bytes.size() < length) {
        return 0;
    }
    char32_t code = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) {
            return 0;
        }
        code = (code << 6) | (byteAt(i) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
    const bool isCharacter = code >= kSmallest.at(length) && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
    return isCharacter ? length : 0;
}

} // namespace

std::string utf8Of(MonoString* text)
{
    std::string bytes;
    if (text == nullptr) {
        return bytes;
    }
    const mono_unichar2* units = mono_string_chars(text);
    const int length = mono_string_length(text);
    for (int i = 0; i < length; ++i) {
        char32_t code = units[i];
        if (isHighSurrogate(code) && i + 1 < length && isLowSurrogate(units[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (units[++i] - 0xDC00U);
        }
        const bool isHalf = isHighSurrogate(code) || isLowSurrogate(code);
        localetext::appendUtf8(bytes, static_cast<wchar_t>(isHalf ? kNoCharacter : code));
    }
    return bytes;
}

std::string repairedUtf8(std::string_view bytes)
{
    std::string repaired;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        if (length == 0) {
            localetext::appendUtf8(repaired, static_cast<wchar_t>(kNoCharacter));
        } else {
            repaired.append(bytes.substr(0, length));
        }
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return repaired;
}

} // namespace engines
