#include "cli/Prompt.h"

#include "cli/Shown.h"
#include "host/LocaleText.h"
#include "standalone/Utf8.h"

#include <iostream>
#include <string_view>

namespace cli {

namespace {

std::string withoutBlanksAround(const std::string& line)
{
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t begin = line.find_first_not_of(kBlanks);
    return begin == std::string::npos ? "" : line.substr(begin, line.find_last_not_of(kBlanks) + 1 - begin);
}

std::string listOf(const std::vector<std::wstring>& names)
{
    std::string list = names.empty() ? "no command is known\n" : "";
    for (const std::wstring& name : names) {
        list += standalone::displayable(std::wstring_view(name)) + "\n";
    }
    return list;
}

} // namespace

void promptForCommands(std::FILE* stream, const std::function<void(const std::wstring&)>& runCommand,
                       const std::function<std::vector<std::wstring>()>& known)
{
    const auto show = [stream](const std::string& text) {
        if (stream != nullptr) {
            print(stream, text);
        }
    };
    std::string line;
    for (show("\n> "); std::getline(std::cin, line); show("\n> ")) {
        const std::string name = withoutBlanksAround(line);
        if (name == "quit") {
            return;
        }
        if (name == "?") {
            show(listOf(known()));
        } else if (!name.empty()) {
            runCommand(localetext::widen(name));
        }
    }
    show("\n");
}

} // namespace cli
