// What the percent signs of a log text leave of it, told character by character.
#pragma once

#include <string>
#include <string_view>

namespace fuzz {

inline bool isAmong(wchar_t unit, std::wstring_view units)
{
    return units.find(unit) != std::wstring_view::npos;
}

/// What becomes of `text`, character by character. A zero code unit ends it.
inline std::wstring withoutFormats(const std::wstring& text)
{
    enum
    {
        kText,
        kPercent,
        kConversion,
    } state = kText;
    std::wstring left;
    for (const wchar_t unit : text) {
        if (state == kPercent && unit == L'%') {
            left += L'%';
            state = kText;
        } else if (state != kText && isAmong(unit, L"-+ #'I0123456789$*.hlLqjzZtw")) {
            state = kConversion;
        } else if (state != kText && isAmong(unit, L"diouxXeEfFgGaAcCsSpnmbB")) {
            state = kText;
        } else if (unit == L'%') {
            state = kPercent;
        } else {
            state = kText;
            left += unit;
        }
    }
    return left;
}

} // namespace fuzz
