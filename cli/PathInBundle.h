// What is on disk where a path in a bundle leads.
#pragma once

#include <string>

namespace cli {

enum class PathState
{
    kFile,        ///< a regular file that can be read
    kMissing,     ///< nothing is there
    kLetterCase,  ///< missing, but `found` differs only in letter case
    kNotReadable, ///< not a regular file, or not to be read: `problem` says why
};

struct PathInBundle
{
    PathState state = PathState::kMissing;
    std::wstring found;     ///< for kLetterCase: the path as it is on disk
    std::string problem;    ///< UTF-8, one line
    bool isOutside = false; ///< what is there lies outside the bundle folder, once links are followed
};

/// Looks for the file at `path`, below the bundle folder `folder`; both are absolute.
PathInBundle lookFor(const std::wstring& folder, const std::wstring& path);

} // namespace cli
