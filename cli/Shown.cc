#include "cli/Shown.h"

#include "host/LocaleText.h"
#include "standalone/Utf8.h"

#include <climits>
#include <cwchar>
#include <langinfo.h>

namespace cli {

namespace {

/// `text`, valid UTF-8, in the encoding of the global locale.
std::string localeBytes(std::string_view text)
{
    std::string bytes;
    std::mbstate_t state{};
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = standalone::nextCodePoint(text, at);
        char encoded[MB_LEN_MAX];
        const std::mbstate_t before = state;
        const std::size_t length = std::wcrtomb(encoded, static_cast<wchar_t>(code), &state);
        if (length != static_cast<std::size_t>(-1)) {
            bytes.append(encoded, length);
            continue;
        }
        state = before;
        char escape[16];
        std::snprintf(escape, sizeof(escape), "\\u{%04lX}", static_cast<unsigned long>(code));
        bytes += escape;
    }
    return bytes;
}

} // namespace

std::string shownLine(std::string_view text)
{
    return standalone::escapedUnseen(text);
}

std::string shownOutput(std::string_view text)
{
    return standalone::escapedUnseen(text, "\n\t");
}

std::string plainUtf8(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t unit : text) {
        const auto code = static_cast<char32_t>(unit);
        const bool isCharacter = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
        localetext::appendUtf8(bytes, isCharacter ? unit : L'\uFFFD');
    }
    return bytes;
}

std::string plainUtf8FromLocale(std::string_view text)
{
    return plainUtf8(localetext::widen(text));
}

void print(std::FILE* stream, std::string_view text)
{
    if (std::string_view(::nl_langinfo(CODESET)) == "UTF-8") {
        printUtf8(stream, text);
    } else {
        const std::string bytes = localeBytes(text);
        printUtf8(stream, bytes);
    }
}

void printUtf8(std::FILE* stream, std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

} // namespace cli
