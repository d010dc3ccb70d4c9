// KB5xx: components, and how they load.
#pragma once

#include "cli/rules/RuleInput.h"

namespace cli {

inline constexpr Rule kNoComponents{"KB501", "no-components", Severity::kWarning,
                                    "A bundle without components never counts as loaded."};
inline constexpr Rule kNoModuleName{"KB502", "no-module-name", Severity::kError, "A component has no ModuleName."};
inline constexpr Rule kModulePathForm{"KB503", "module-path-form", Severity::kError,
                                      "A ModuleName does not begin with \"./\"."};
inline constexpr Rule kLoadCtrlFlag{"KB504", "load-ctrl-flag", Severity::kError,
                                    "A LoadCtrlFlag other than 1 keeps a component from loading at start-up."};
inline constexpr Rule kNeverLoads{"KB505", "never-loads", Severity::kError,
                                  "A component loads neither at start-up nor on a command."};
inline constexpr Rule kNotTrueOrFalse{"KB506", "not-true-or-false", Severity::kWarning,
                                      "A value that is to be \"True\" or \"False\" is neither."};
inline constexpr Rule kStartupWins{"KB507", "startup-wins", Severity::kWarning,
                                   "A component that loads at start-up has its commands never announced."};
inline constexpr Rule kNoCommands{"KB508", "no-commands", Severity::kError,
                                  "A component that loads on a command has no command."};
inline constexpr Rule kUnknownExtension{"KB509", "unknown-extension", Severity::kError,
                                        "No loader takes a file with this extension."};
inline constexpr Rule kNoPythonVersion{"KB510", "no-python-version", Severity::kError,
                                       "A Python script has no PythonVersion."};
inline constexpr Rule kPythonNotFound{"KB511", "python-not-found", Severity::kError,
                                      "The Python that a script asks for cannot be used."};
inline constexpr Rule kComponentFails{"KB512", "component-fails", Severity::kError,
                                      "A component fails to load at start-up."};
inline constexpr Rule kFirstUseFails{"KB513", "first-use-fails", Severity::kError,
                                     "A component fails to load when its command is used, and nobody is told."};
inline constexpr Rule kLispFileMissing{"KB514", "lisp-file-missing", Severity::kError,
                                       "A LISP file that cannot be read is queued all the same."};
inline constexpr Rule kLispPathTooLong{"KB515", "lisp-path-too-long", Severity::kError,
                                       "The path of a LISP file is longer than an expression can be."};
inline constexpr Rule kLispPathChanged{"KB516", "lisp-path-changed", Severity::kError,
                                       "The path of a LISP file does not survive in an expression."};
inline constexpr Rule kOtherPythonVersion{"KB517", "other-python-version", Severity::kWarning,
                                          "An earlier component decides on the PythonVersion of a script."};

std::vector<const Rule*> componentRules();

void addComponentFindings(const BundleInput& input, Findings& findings);

} // namespace cli
