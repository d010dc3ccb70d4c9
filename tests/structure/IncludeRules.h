// Who may include whom. The arrows between the folders are what keeps the library free of its surroundings.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace structure {

/// Source texts by their path from the top of the checkout, "/" between the parts.
using Sources = std::map<std::string, std::string>;

/// What is wrong with the include lines of `sources`: one line of text for each, in the order of paths and lines.
///
/// - A folder includes only the folders and headers that it may, itself, and the libraries that it may.
/// - What it must never include it does not reach through other headers either.
/// - A header of ours is included by its path from the top of the checkout, and is there. Tests, samples and the like
/// may
///   also name one that stands beside them.
std::vector<std::string> wrongIncludes(const Sources& sources);

/// The files of `sources` with more than `limit` lines, each with its number of lines.
std::vector<std::string> longFiles(const Sources& sources, std::size_t limit);

} // namespace structure
