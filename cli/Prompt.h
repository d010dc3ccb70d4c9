// Command names from standard input.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace cli {

/// Reads lines until "quit" or the end of the input. "?" lists `known`; any other line that is not blank is handed to
/// `runCommand` without the blanks around it. The prompt and the list go to `stream`; null: neither is shown.
void promptForCommands(std::FILE* stream, const std::function<void(const std::wstring&)>& runCommand,
                       const std::function<std::vector<std::wstring>()>& known);

} // namespace cli
