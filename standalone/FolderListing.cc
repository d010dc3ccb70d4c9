#include "standalone/FolderListing.h"

#include "host/LocaleText.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace standalone {

namespace {

/// Enough for a folder of a thousand entries in one call.
constexpr std::size_t kBlock = std::size_t{64} * 1024;

/// What a bundle's folder has, so that most listings need not grow.
constexpr std::size_t kUsualEntries = 8;
constexpr std::size_t kUsualName = 16;

/// Appends `name` widened; one that is ASCII, as nearly all are, without a text of its own in between.
void appendWidened(std::wstring& names, std::string_view name)
{
    if (!localetext::isAscii(name)) {
        names += localetext::widen(name);
        return;
    }
    const std::size_t begin = names.size();
    names.resize(begin + name.size());
    std::copy(name.begin(), name.end(), names.begin() + static_cast<std::ptrdiff_t>(begin));
}

} // namespace

int FolderListing::read(const char* path)
{
    entries.clear();
    names.clear();
    entries.reserve(kUsualEntries);
    names.reserve(kUsualEntries * kUsualName);
    const int folder = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    if (folder < 0) {
        return errno;
    }
    const struct Closing // also when there is no memory for the names
    {
        int folder;
        ~Closing() { ::close(folder); }
    } closing{folder};
    const int error = readEntries(closing.folder);
    if (error != 0) {
        entries.clear();
        return error;
    }
    // No code unit of a name is beyond the code points, so that machines with signed and unsigned units order alike.
    std::sort(entries.begin(), entries.end(),
              [this](const Entry& one, const Entry& other) { return nameOf(one) < nameOf(other); });
    return 0;
}

/// Asks the kernel itself: opendir() would add a call that looks at the folder once more, readdir() smaller blocks and
/// an allocation, to each of ten thousand folders.
int FolderListing::readEntries(int folder)
{
    alignas(dirent64) static char block[kBlock];
    for (;;) {
        const ssize_t length = ::getdents64(folder, block, kBlock);
        if (length <= 0) {
            return length < 0 ? errno : 0;
        }
        for (const char* record = block; record < block + length;) {
            decltype(dirent64::d_reclen) recordLength = 0;
            std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
            unsigned char type = DT_UNKNOWN;
            std::memcpy(&type, record + offsetof(dirent64, d_type), sizeof type);
            add(folder, record + offsetof(dirent64, d_name), type);
            record += recordLength;
        }
    }
}

void FolderListing::add(int folder, const char* name, unsigned char type)
{
    bool isFolder = type == DT_DIR;
    if (type == DT_LNK || type == DT_UNKNOWN) { // the record does not say it
        struct stat status = {};
        // What is there but cannot be examined counts as a folder: whoever lists it is then told why that fails.
        isFolder = ::fstatat(folder, name, &status, 0) == 0 ? S_ISDIR(status.st_mode)
                                                            : errno != ENOENT && errno != ENOTDIR && errno != ELOOP;
    }
    const std::size_t nameBegin = names.size();
    appendWidened(names, name);
    entries.push_back({nameBegin, static_cast<std::uint32_t>(names.size() - nameBegin), isFolder});
}

} // namespace standalone
