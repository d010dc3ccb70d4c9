#include "cli/ConsoleEcho.h"

#include "cli/Shown.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace cli {

ConsoleEcho::ConsoleEcho(bool isLive) : live(isLive)
{
    const int descriptor = live ? ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : -1;
    if (descriptor >= 0) {
        ownOutput.reset(::fdopen(descriptor, "w"));
    }
}

void ConsoleEcho::begin(std::string partHeading)
{
    heading = std::move(partHeading);
    printed.clear();
    shownUpTo = 0;
}

void ConsoleEcho::take(const std::string& piece)
{
    std::size_t searchFrom = printed.size();
    printed += piece;
    for (std::size_t end = printed.find('\n', searchFrom); end != std::string::npos;
         end = printed.find('\n', searchFrom)) {
        showLine(printed.substr(shownUpTo, end - shownUpTo));
        searchFrom = shownUpTo = end + 1;
    }
}

std::string ConsoleEcho::end()
{
    if (shownUpTo < printed.size()) {
        showLine(printed.substr(shownUpTo));
    }
    shownUpTo = 0;
    return std::exchange(printed, std::string());
}

void ConsoleEcho::showLine(const std::string& line)
{
    if (live) {
        print(shown(), std::exchange(heading, std::string()) + "  | " + shownOutput(line) + "\n");
    }
}

} // namespace cli
