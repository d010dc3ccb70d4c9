// Files that are read and written as a whole. Paths are narrow, as the system takes them.
#pragma once

#include <string>
#include <string_view>

namespace standalone {

/// Reads the regular file at `path`, of `limit` bytes at most, into `content`. Returns an empty text, or what is wrong
/// in UTF-8. Never waits, as opening a pipe would.
std::string readWholeFile(const std::string& path, std::size_t limit, std::string& content);

/// Makes `content` the content of the file at `path`, at once: whoever reads it meanwhile gets the old content or the
/// new one. Returns 0, or the errno of the step that failed, which leaves no trace. A process that is killed meanwhile
/// leaves `path` + ".new" at most, which the next call for the same path takes away; where the file system has no files
/// without a name, it can leave a file under a name of its own.
int replaceWholeFile(const std::string& path, std::string_view content);

/// Takes away what a process that was killed in replaceWholeFile() left for `path`. One that is alive does its work
/// all the same.
void discardUnfinished(const std::string& path);

} // namespace standalone
