// Files and folders that are made together or not at all.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace cli {

/// Something could not be made; its text, UTF-8, says what and why.
class NotMade : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Makes files and folders, never in the place of one that is there. Whatever it made is taken away again when it is
/// destroyed, unless keep() was called. Paths are absolute and narrow; every failure is a NotMade.
class NewFiles
{
public:
    NewFiles() = default;
    NewFiles(const NewFiles&) = delete;
    NewFiles& operator=(const NewFiles&) = delete;
    ~NewFiles();

    /// Makes one folder; `mode` is narrowed by the process's mask.
    void makeFolder(const std::string& path, mode_t mode = 0777);

    /// Makes the folders of `path` that are missing, for their owner alone.
    void makeMissingFolders(const std::string& path);

    /// Writes a file.
    void write(const std::string& path, std::string_view content);

    /// What was made stays.
    void keep() { made.clear(); }

private:
    std::vector<std::string> made; ///< in order
};

} // namespace cli
