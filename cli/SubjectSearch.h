// What a word on the command line means: a bundle, a command or a menu.
#pragma once

#include "cli/Explanation.h"

#include <string>
#include <vector>

namespace cli {

/// Adds all that `subject` names to the commands and menus of `explanation`, and the bundles that it names or that
/// stand behind those to `bundles`; nothing twice. Throws WrongUse, with the nearest name, when it names nothing.
///
/// A bundle is named by its folder's path, the name of that with or without ".bundle", its package's Name or its
/// UpgradeCode, or a file that it declares; a command in any letter case; a menu by its path or file name.
void addSubject(Explanation& explanation, std::vector<const ExaminedBundle*>& bundles, const std::string& subject);

} // namespace cli
