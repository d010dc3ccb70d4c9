// The one LISP world of the process: its boot, and the calls into it.
#pragma once

#include <string>
#include <string_view>

namespace engines {

/// Boots LISP if that has not happened and evaluates the forms in `expression`. Returns what went wrong, in one line of
/// UTF-8 (undecodable bytes as they are), or empty text.
std::string evaluateLisp(std::string_view expression);

/// Runs the function that a script has registered as command `number`; the host's KestEngineCommand.
std::string runLispCommand(int number);

} // namespace engines
