// What keeps an engine from running a component, and what to install. The autoloader tries an engine and goes on
// without a word, so that the reason is found by trying again.
#pragma once

#include <string>
#include <string_view>

namespace cli {

/// `problem`, UTF-8, with what to do about a library that it says is missing. Unchanged when it names none, or when
/// nobody knows where that library comes from.
std::string withRemedy(std::string problem);

/// Why a script that asks for `version` ("python3.11", UTF-8) could not be run, in one line of UTF-8.
std::string pythonProblem(const std::string& version);

} // namespace cli
