#include "standalone/Utf8.h"

#include "host/LocaleText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

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

bool isAscii(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

/// Nearly all of nearly all texts is ASCII, so that it is taken this many bytes in a step, the last step over again
/// what the one before has done.
constexpr std::size_t kStep = sizeof(std::uint64_t);

/// Whether kStep bytes are ASCII.
bool isAsciiStep(const char* utf8)
{
    std::uint64_t together = 0;
    std::memcpy(&together, utf8, kStep);
    return (together & 0x8080808080808080) == 0;
}

/// Widens kStep bytes; false when there is more than ASCII among them.
bool widenStep(wchar_t* wide, const char* utf8)
{
    unsigned char bytes[kStep]; // the compiler need not fear that `wide` overlaps it
    std::memcpy(bytes, utf8, kStep);
    for (std::size_t i = 0; i < kStep; ++i) {
        wide[i] = static_cast<wchar_t>(bytes[i]);
    }
    return isAsciiStep(utf8);
}

/// Widens the ASCII that `utf8` begins with into `wide` and returns how much that was.
std::size_t widenAscii(wchar_t* wide, std::string_view utf8)
{
    std::size_t at = 0;
    if (utf8.size() >= kStep) {
        const std::size_t last = utf8.size() - kStep;
        while (at < last && widenStep(wide + at, utf8.data() + at)) {
            at += kStep;
        }
        if (at >= last && widenStep(wide + last, utf8.data() + last)) {
            return utf8.size();
        }
        at = std::min(at, last);
    }
    while (at < utf8.size() && isAscii(utf8[at])) {
        wide[at] = static_cast<wchar_t>(utf8[at]);
        ++at;
    }
    return at;
}

} // namespace

void widenUtf8(std::string_view text, std::wstring& wide)
{
    wide.resize(text.size());
    std::size_t units = widenAscii(wide.data(), text);
    if (units == text.size()) {
        return;
    }
    for (std::size_t at = units; at < text.size();) {
        const char32_t code = nextCodePoint(text, at);
        at += code == kNotUtf8 ? 1 : 0;
        wide[units++] = static_cast<wchar_t>(code == kNotUtf8 ? 0xFFFD : code);
    }
    wide.resize(units);
}

namespace {

/// Control characters, and those beside letters that turn the line round, end it, or show nothing at all.
bool isUnseen(char32_t code)
{
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool isDirection = code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
                             (code >= 0x2066 && code <= 0x2069);
    return isControl || isDirection || code == 0x2028 || code == 0x2029 || code == 0xFEFF;
}

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
    return escapedUnseen(bytes);
}

std::string escapedUnseen(std::string_view text, std::string_view allowed)
{
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const char32_t code = nextCodePoint(text, at);
        if (code == kNotUtf8) {
            ++at;
        } else if (!isUnseen(code) || allowed.find(text[start]) != std::string_view::npos) {
            shown.append(text, start, at - start);
            continue;
        }
        for (std::size_t i = start; i < at; ++i) {
            appendEscapedByte(shown, text[i]);
        }
    }
    return shown;
}

std::string displayable(std::string_view text)
{
    return displayable(localetext::widen(text));
}

} // namespace standalone
