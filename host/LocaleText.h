// Texts between the process's locale and 32-bit wide characters, as the autoloader and its host both do it.
//
// "The global locale" is the one that setlocale() sets (a named C++ global locale sets it too).
#pragma once

#include <climits>
#include <cwchar>
#include <cwctype>
#include <string>
#include <string_view>
#include <type_traits>

namespace localetext {

/// A byte that the locale cannot decode is carried as the code unit kUndecodableByte + byte. These code units are
/// low surrogates: no document and no locale yields them, so narrowing can turn each back into its one byte.
inline constexpr wchar_t kUndecodableByte = 0xDC00;

/// Whether `unit` stands for a byte (0x80 to 0xFF) that the locale could not decode.
constexpr bool isUndecodableByte(wchar_t unit)
{
    return unit >= kUndecodableByte + 0x80 && unit <= kUndecodableByte + 0xFF;
}

constexpr bool isCodePoint(wchar_t unit)
{
    return static_cast<char32_t>(unit) <= 0x10FFFF;
}

/// Decodes the character that `text` begins with, in the encoding of the global locale, into `unit` and returns how
/// many bytes it takes; 0 when there is none, or when narrowing would not give back these very bytes (some encodings
/// have two codes for one character).
inline std::size_t decodedLength(std::string_view text, wchar_t& unit)
{
    std::mbstate_t state{};
    const std::size_t used = std::mbrtowc(&unit, text.data(), text.size(), &state);
    // Larger: an error, or a character cut off at the end. A decoder left in the middle holds back a second character.
    // The C library's UTF-8 goes on where that of the rest of the world ends.
    if (used == 0 || used > text.size() || !isCodePoint(unit) || isUndecodableByte(unit) || std::mbsinit(&state) == 0) {
        return 0;
    }
    char encoded[MB_LEN_MAX];
    state = std::mbstate_t{};
    const bool isSame =
        std::wcrtomb(encoded, unit, &state) == used && std::string_view(encoded, used) == text.substr(0, used);
    return isSame ? used : 0;
}

/// Whether `text` is ASCII from one end to the other, as nearly all are. Looks at all of it: the compiler then takes
/// many units in a step.
template <typename Char>
constexpr bool isAscii(std::basic_string_view<Char> text)
{
    std::make_unsigned_t<Char> together = 0;
    for (const Char unit : text) {
        together |= static_cast<std::make_unsigned_t<Char>>(unit);
    }
    return together < 0x80;
}

/// Widens `text`, which is in the multibyte encoding of the global locale. Never fails and loses nothing.
inline std::wstring widen(std::string_view text)
{
    if (isAscii(text)) {
        return {text.begin(), text.end()};
    }
    std::wstring wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        auto unit = static_cast<wchar_t>(byte);
        std::size_t used = 1;
        // Where a character begins, every encoding that a locale can have reads plain ASCII as ASCII (or, for the
        // backslash and the tilde of old Japanese ones, should: they stand in paths).
        if (byte >= 0x80) {
            used = decodedLength(text, unit);
            if (used == 0) {
                unit = static_cast<wchar_t>(kUndecodableByte + byte);
                used = 1;
            }
        }
        wide.push_back(unit);
        text.remove_prefix(used);
    }
    return wide;
}

/// Appends `unit` to `bytes` in UTF-8. What no code point is (above 0x10FFFF) becomes U+FFFD.
inline void appendUtf8(std::string& bytes, wchar_t unit)
{
    const char32_t code = isCodePoint(unit) ? static_cast<char32_t>(unit) : 0xFFFD;
    const auto tail = [&](int shift) { bytes.push_back(static_cast<char>(0x80 | ((code >> shift) & 0x3F))); };
    if (code < 0x80) {
        bytes.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        bytes.push_back(static_cast<char>(0xC0 | (code >> 6)));
        tail(0);
    } else if (code < 0x10000) {
        bytes.push_back(static_cast<char>(0xE0 | (code >> 12)));
        tail(6);
        tail(0);
    } else {
        bytes.push_back(static_cast<char>(0xF0 | ((code >> 18) & 0x07)));
        tail(12);
        tail(6);
        tail(0);
    }
}

/// `text` in UTF-8, whatever the locale. A byte that the locale could not decode comes out as it was: where the locale
/// is a plain one, such bytes are UTF-8 themselves.
inline std::string utf8(std::wstring_view text)
{
    if (isAscii(text)) {
        return {text.begin(), text.end()};
    }
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t unit : text) {
        if (isUndecodableByte(unit)) {
            bytes.push_back(static_cast<char>(unit - kUndecodableByte));
        } else {
            appendUtf8(bytes, unit);
        }
    }
    return bytes;
}

/// Narrows `text` to the multibyte encoding of the global locale. Undoes what widen() carried through; a character
/// that the locale has no code for comes out in UTF-8, the encoding of nearly all file names. Never fails.
inline std::string narrow(std::wstring_view text)
{
    if (isAscii(text)) {
        return {text.begin(), text.end()};
    }
    std::string bytes;
    bytes.reserve(text.size());
    constexpr auto kNotEncoded = static_cast<std::size_t>(-1);
    for (const wchar_t unit : text) {
        if (static_cast<char32_t>(unit) < 0x80) {
            bytes.push_back(static_cast<char>(unit));
            continue;
        }
        if (isUndecodableByte(unit)) {
            bytes.push_back(static_cast<char>(unit - kUndecodableByte));
            continue;
        }
        char encoded[MB_LEN_MAX];
        std::mbstate_t state{};
        const std::size_t length = isCodePoint(unit) ? std::wcrtomb(encoded, unit, &state) : kNotEncoded;
        if (length == kNotEncoded ||
            std::mbsinit(&state) == 0) { // held back, to be joined with what follows: lost here
            appendUtf8(bytes, unit);
        } else {
            bytes.append(encoded, length);
        }
    }
    return bytes;
}

/// The lower-case mapping of the classic ("C") locale: the letters A to Z and nothing else.
constexpr wchar_t lowerByClassicLocale(wchar_t unit)
{
    return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
}

/// Whether two texts are equal, length included, when both are lowered with the classic locale.
constexpr bool equalIgnoringCase(std::wstring_view one, std::wstring_view other)
{
    if (one.size() != other.size()) {
        return false;
    }
    for (std::size_t i = 0; i < one.size(); ++i) {
        if (lowerByClassicLocale(one[i]) != lowerByClassicLocale(other[i])) {
            return false;
        }
    }
    return true;
}

/// Upper-cases `text` in place, character by character, with the mapping of the global locale.
inline void upperByGlobalLocale(std::wstring& text)
{
    for (wchar_t& unit : text) {
        // A locale gives an upper case to lower-case letters alone, and of ASCII it may add none to a to z.
        const bool mayBeLower = static_cast<char32_t>(unit) >= 0x80 || (unit >= L'a' && unit <= L'z');
        if (mayBeLower) {
            unit = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(unit)));
        }
    }
}

} // namespace localetext
