// Folders of the stand-alone host's own files. Paths are narrow, as the system takes them.
#pragma once

#include <string>

namespace standalone {

/// The folder that `path` lies in: "." when it has no "/", "/" for a file of the root.
std::string folderOf(const std::string& path);

/// Makes `folder` and what is missing above it; new folders are for their owner alone (mode 0700). Returns 0, or the
/// errno of the step that failed.
int makeFolders(const std::string& folder);

} // namespace standalone
