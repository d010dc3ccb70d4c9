#include "bundle/LogFormat.h"

#include <algorithm>
#include <cwchar>

namespace {

/// The position behind the conversion that follows the percent sign before `at`. A character that ends no conversion
/// is not part of it.
std::size_t skipConversion(std::wstring_view text, std::size_t at)
{
    constexpr std::wstring_view kModifiers = L"-+ #'I0123456789$*.hlLqjzZtw";
    constexpr std::wstring_view kConversions = L"diouxXeEfFgGaAcCsSpnmbB";
    at = std::min(text.find_first_not_of(kModifiers, at), text.size());
    return at < text.size() && kConversions.find(text[at]) != std::wstring_view::npos ? at + 1 : at;
}

/// `text` without the conversions that need an argument.
std::wstring withoutConversions(std::wstring_view text)
{
    std::wstring format;
    format.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t percent = std::min(text.find(L'%', at), text.size());
        format.append(text, at, percent - at);
        if (percent == text.size()) {
            break;
        }
        if (text.substr(percent, 2) == L"%%") {
            format.append(L"%%");
            at = percent + 2;
        } else {
            at = skipConversion(text, percent + 1);
        }
    }
    return format;
}

} // namespace

std::wstring formatLogText(std::wstring_view text)
{
    const std::wstring format = withoutConversions(text);
    std::wstring formatted(format.size() + 1, L'\0'); // never longer than its format
    const int length = std::swprintf(formatted.data(), formatted.size(), format.c_str());
    formatted.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return formatted;
}
