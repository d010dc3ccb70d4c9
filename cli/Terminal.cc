#include "cli/Terminal.h"

#include "standalone/Utf8.h"

#include <charconv>
#include <cstdlib>
#include <cwchar>
#include <sys/ioctl.h>
#include <unistd.h>

namespace cli {

namespace {

std::string_view environmentText(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::size_t columnsOf(char32_t code)
{
    const int columns = ::wcwidth(static_cast<wchar_t>(code));
    return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

} // namespace

bool hasColours()
{
    return ::isatty(STDOUT_FILENO) == 1 && environmentText("NO_COLOR").empty() && environmentText("TERM") != "dumb";
}

std::size_t terminalWidth()
{
    const std::string_view given = environmentText("COLUMNS");
    std::size_t columns = 0;
    const auto parsed = std::from_chars(given.data(), given.data() + given.size(), columns);
    if (!given.empty() && parsed.ec == std::errc() && parsed.ptr == given.data() + given.size() && columns > 0) {
        return columns;
    }
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::size_t columnsOf(std::string_view text)
{
    std::size_t columns = 0;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = standalone::nextCodePoint(text, at);
        at += code == standalone::kNotUtf8 ? 1 : 0;
        columns += columnsOf(code);
    }
    return columns;
}

std::string fittedTo(std::size_t columns, std::string_view text)
{
    constexpr std::string_view kCut = "...";
    if (columnsOf(text) <= columns) {
        return std::string(text);
    }
    if (columns < kCut.size()) {
        return std::string(kCut.substr(0, columns));
    }
    std::size_t used = kCut.size();
    std::size_t end = 0;
    for (std::size_t at = 0; at < text.size(); end = at) {
        const char32_t code = standalone::nextCodePoint(text, at);
        at += code == standalone::kNotUtf8 ? 1 : 0;
        used += columnsOf(code);
        if (used > columns) {
            break;
        }
    }
    return std::string(text.substr(0, end)) + std::string(kCut);
}

} // namespace cli
