#include "standalone/FindHandles.h"

#include <algorithm>
#include <cwchar>
#include <iterator>

namespace standalone {

namespace {

/// The autoloader walks one listing inside another: two would do. More are for whoever nests deeper.
constexpr std::size_t kAlwaysKept = 8;
constexpr std::size_t kMostKept = 32;
constexpr std::size_t kMostBytes = std::size_t{4} << 20;
/// Of the listing whose memory waits for the next one.
constexpr std::size_t kMostUnused = std::size_t{16} * 1024;

/// Fills `data`; false when the name does not fit.
bool fill(WIN32_FIND_DATAW& data, std::wstring_view name, bool isFolder)
{
    if (name.size() >= std::size(data.cFileName)) {
        return false;
    }
    data.dwFileAttributes = isFolder ? FILE_ATTRIBUTE_DIRECTORY : 0;
    data.ftCreationTime = data.ftLastAccessTime = data.ftLastWriteTime = FILETIME{0, 0};
    data.nFileSizeHigh = data.nFileSizeLow = data.dwReserved0 = data.dwReserved1 = 0;
    std::wmemcpy(data.cFileName, name.data(), name.size());
    data.cFileName[name.size()] = L'\0';
    data.cAlternateFileName[0] = L'\0';
    return true;
}

} // namespace

FindHandle FindHandles::begin(const char* path, int& error)
{
    if (dropped.empty()) {
        dropped.emplace_front();
    }
    Listing& listing = dropped.front();
    error = listing.folder.read(path);
    if (error != 0) {
        return invalidFindHandle();
    }
    listing.handle = reinterpret_cast<FindHandle>(++handlesGiven); // NOLINT(performance-no-int-to-ptr): a number
    listing.at = 0;
    keptBytes += listing.folder.bytes();
    listings.splice(listings.begin(), dropped);
    dropOldest();
    return listing.handle;
}

bool FindHandles::next(FindHandle handle, WIN32_FIND_DATAW& data)
{
    const auto found = std::find_if(listings.begin(), listings.end(),
                                    [handle](const Listing& listing) { return listing.handle == handle; });
    if (found == listings.end()) {
        return false;
    }
    listings.splice(listings.begin(), listings, found);
    while (found->at < found->folder.size()) {
        const std::size_t entry = found->at++;
        if (fill(data, found->folder.name(entry), found->folder.isFolder(entry))) {
            return true;
        }
    }
    drop(found);
    return false;
}

void FindHandles::dropOldest()
{
    while (listings.size() > kMostKept || (listings.size() > kAlwaysKept && bytes() > kMostBytes)) {
        drop(std::prev(listings.end()));
    }
}

void FindHandles::drop(Place listing)
{
    keptBytes -= listing->folder.bytes();
    dropped.clear();
    if (listing->folder.bytes() <= kMostUnused) {
        dropped.splice(dropped.begin(), listings, listing);
    } else {
        listings.erase(listing);
    }
}

} // namespace standalone
