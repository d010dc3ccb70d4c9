// Folders that are named on the command line.
#pragma once

#include <string>

namespace cli {

/// `folder` as an absolute path without a "/" at its end. Throws WrongUse, naming `option`, when it is no folder.
std::string existingFolder(const std::string& option, const std::string& folder);

} // namespace cli
