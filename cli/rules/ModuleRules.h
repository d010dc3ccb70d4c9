// KB81x: what is in the files of components, told without loading them.
#pragma once

#include "cli/rules/LintInput.h"

#include <vector>

namespace cli {

inline constexpr Rule kOtherMachine{"KB811", "other-machine", Severity::kError,
                                    "A native module is made for another machine."};
inline constexpr Rule kNotAModule{"KB812", "not-a-module", Severity::kError,
                                  "A native module is no file that the dynamic linker takes."};
inline constexpr Rule kMissingLibrary{"KB813", "missing-library", Severity::kError,
                                      "A library that a native module needs cannot be found."};
inline constexpr Rule kUndefinedSymbol{"KB814", "undefined-symbol", Severity::kError,
                                       "A native module asks for a symbol that nobody offers."};
inline constexpr Rule kNoModuleEntry{"KB815", "no-module-entry", Severity::kError,
                                     "A native module does not export its entry."};
inline constexpr Rule kNotAnAssembly{"KB816", "not-an-assembly", Severity::kError,
                                     "A managed component is no managed assembly."};
inline constexpr Rule kScriptEncoding{"KB817", "script-encoding", Severity::kWarning, "A script is no text in UTF-8."};

std::vector<const Rule*> moduleRules();

void addModuleFindings(const LintInput& input, Findings& findings);

} // namespace cli
