// KB7xx: menus of bundles, and the host's list of menus.
#pragma once

#include "cli/rules/RuleInput.h"

namespace cli {

inline constexpr Rule kMenuNotAtStartup{"KB701", "menu-not-at-startup", Severity::kError,
                                        "A menu that does not load at start-up is never registered."};
inline constexpr Rule kMenuNotRegistered{"KB702", "menu-not-registered", Severity::kError,
                                         "A menu is not registered, because its bundle never gets its turn."};
inline constexpr Rule kEmptyMenuEntry{"KB703", "empty-menu-entry", Severity::kNote,
                                      "A component behind a menu leaves an empty entry in the list of menus."};
inline constexpr Rule kEntriesRunTogether{"KB704", "entries-run-together", Severity::kWarning,
                                          "Entries of the host's list of menus run together."};
inline constexpr Rule kSemicolonInMenuPath{"KB705", "semicolon-in-menu-path", Severity::kError,
                                           "The path of a menu holds a \";\"."};
inline constexpr Rule kMenuNotConverted{"KB706", "menu-not-converted", Severity::kError,
                                        "A menu in an older format cannot be converted."};
inline constexpr Rule kMenuFileMissing{"KB707", "menu-file-missing", Severity::kWarning,
                                       "A menu file that cannot be read is registered all the same."};
inline constexpr Rule kHostEntryDamaged{"KB708", "host-entry-damaged", Severity::kWarning,
                                        "An entry of the host's own is cut or lost when older menus are taken out."};

std::vector<const Rule*> menuRules();

void addMenuFindings(const BundleInput& input, Findings& findings);

/// What happens to entries of the host's list that no bundle has put there.
void addMenuListFindings(const Examination& examination, Findings& findings);

} // namespace cli
