#include "standalone/Utf8.h"

#include "host/LocaleText.h"

#include <cstdint>

namespace standalone {

char32_t nextCodePoint(std::string_view text, std::size_t& at) noexcept
{
    const auto byteAt = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
    const std::uint8_t lead = byteAt(at);
    if (lead < 0x80) {
        ++at;
        return lead;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() - at < length) {
        return kNotUtf8;
    }
    char32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(at + i) & 0xC0U) != 0x80U) {
            return kNotUtf8;
        }
        code = (code << 6) | (byteAt(at + i) & 0x3FU);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (overlong || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        return kNotUtf8;
    }
    at += length;
    return code;
}

std::optional<std::wstring> wideFromUtf8(std::string_view text)
{
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = nextCodePoint(text, at);
        if (code == kNotUtf8) {
            return std::nullopt;
        }
        wide.push_back(static_cast<wchar_t>(code));
    }
    return wide;
}

namespace {

void appendEscapedByte(std::string& shown, char byte)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto value = static_cast<std::uint8_t>(byte);
    shown += {'\\', 'x', kDigits[value >> 4], kDigits[value & 0xF]};
}

} // namespace

std::string displayable(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t unit : text) {
        const auto code = static_cast<char32_t>(unit);
        if (localetext::isUndecodableByte(unit)) {
            bytes.push_back(static_cast<char>(code - static_cast<char32_t>(localetext::kUndecodableByte)));
        } else {
            const bool isCharacter = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
            localetext::appendUtf8(bytes, isCharacter ? unit : L'\uFFFD');
        }
    }
    std::string shown;
    shown.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t start = at;
        const char32_t code = nextCodePoint(bytes, at);
        if (code == kNotUtf8) {
            ++at;
        }
        const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
        if (code != kNotUtf8 && !isControl) {
            shown.append(bytes, start, at - start);
            continue;
        }
        for (std::size_t i = start; i < at; ++i) {
            appendEscapedByte(shown, bytes[i]);
        }
    }
    return shown;
}

std::string displayable(std::string_view text)
{
    return displayable(localetext::widen(text));
}

} // namespace standalone
