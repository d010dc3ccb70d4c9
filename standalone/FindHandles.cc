#include "standalone/FindHandles.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <utility>

namespace standalone {

namespace {

/// The autoloader walks one listing inside another: two would do. More are for whoever nests deeper.
constexpr std::size_t kAlwaysKept = 8;
constexpr std::size_t kMostKept = 32;
constexpr std::size_t kMostBytes = std::size_t{4} << 20;

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
    Listing listing;
    error = listing.folder.read(path);
    if (error != 0) {
        return invalidFindHandle();
    }
    listing.handle = reinterpret_cast<FindHandle>(++handlesGiven); // NOLINT(performance-no-int-to-ptr): a number
    listings.push_front(std::move(listing));
    dropOldest();
    return listings.front().handle;
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
    listings.erase(found);
    return false;
}

std::size_t FindHandles::bytes() const noexcept
{
    std::size_t sum = 0;
    for (const Listing& listing : listings) {
        sum += listing.folder.bytes();
    }
    return sum;
}

void FindHandles::dropOldest()
{
    while (listings.size() > kMostKept || (listings.size() > kAlwaysKept && bytes() > kMostBytes)) {
        listings.pop_back();
    }
}

} // namespace standalone
