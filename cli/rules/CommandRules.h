// KB6xx: the commands that components are loaded for.
#pragma once

#include "cli/rules/RuleInput.h"

namespace cli {

inline constexpr Rule kEmptyCommandName{"KB601", "empty-command-name", Severity::kWarning,
                                        "A command has no Local name."};
inline constexpr Rule kRepeatedCommand{"KB602", "repeated-command", Severity::kWarning,
                                       "A bundle declares a command twice."};
inline constexpr Rule kCommandOfAnotherBundle{"KB603", "command-of-another-bundle", Severity::kWarning,
                                              "Another bundle declares the same command and is found earlier."};
inline constexpr Rule kNoCommandLeft{"KB604", "no-command-left", Severity::kError,
                                     "All commands of a component load something else."};
inline constexpr Rule kIdleCommands{"KB605", "idle-commands", Severity::kNote,
                                    "The commands of a component that loads at start-up are not announced."};

std::vector<const Rule*> commandRules();

void addCommandFindings(const BundleInput& input, Findings& findings);

} // namespace cli
