#include "standalone/Folders.h"

#include <cerrno>
#include <sys/stat.h>

namespace standalone {

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

int makeFolders(const std::string& folder)
{
    for (std::size_t end = folder.find('/', 1);; end = folder.find('/', end + 1)) {
        const std::string part = folder.substr(0, end);
        struct stat found
        {
        };
        if (::stat(part.c_str(), &found) == 0) {
            if (!S_ISDIR(found.st_mode)) {
                return ENOTDIR;
            }
        } else if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) { // EEXIST: another process was faster
            return errno;
        }
        if (end == std::string::npos) {
            return 0;
        }
    }
}

} // namespace standalone
