#include "cli/ReportLines.h"

#include "standalone/Utf8.h"

#include <array>
#include <charconv>

namespace cli {

std::string shown(std::wstring_view text)
{
    return standalone::displayable(text);
}

std::string shown(const std::string& bytesOfLocale)
{
    return standalone::displayable(std::string_view(bytesOfLocale));
}

std::string quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

std::string labelled(const std::string& label, const std::string& text)
{
    constexpr std::size_t kColumn = 11;
    return "  " + label + std::string(label.size() < kColumn ? kColumn - label.size() : 1, ' ') + text + "\n";
}

std::string below(const std::string& text)
{
    return labelled("", text);
}

std::string counted(std::size_t count, const std::string& one, const std::string& many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string timeText(double milliseconds)
{
    std::array<char, 400> digits{}; // the largest number has 309 before the point
    char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), milliseconds, std::chars_format::fixed, 1).ptr;
    return std::string(digits.data(), end) + " ms";
}

} // namespace cli
