#include "cli/OptionFolder.h"

#include "cli/ExitStatus.h"
#include "standalone/Utf8.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>

namespace cli {

std::string existingFolder(const std::string& option, const std::string& folder)
{
    const auto refuse = [&](int error) {
        throw WrongUse(option + ": \"" + standalone::displayable(std::string_view(folder)) +
                       "\": " + standalone::displayable(std::string_view(std::strerror(error))));
    };
    struct stat found
    {
    };
    if (::stat(folder.c_str(), &found) != 0) {
        refuse(errno);
    }
    if (!S_ISDIR(found.st_mode)) {
        refuse(ENOTDIR);
    }
    std::string absolute = folder;
    if (!folder.starts_with('/')) { // scripts change the working directory
        std::error_code error;
        absolute = std::filesystem::canonical(folder, error).string();
        if (error) {
            refuse(error.value());
        }
    }
    while (absolute.size() > 1 && absolute.ends_with('/')) {
        absolute.pop_back();
    }
    return absolute;
}

} // namespace cli
