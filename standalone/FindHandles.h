// Listings that the autoloader began, by handle. It abandons them all: nobody says when one is done with.
#pragma once

#include "host/FileLayer.h"
#include "standalone/FolderListing.h"

#include <cstddef>
#include <cstdint>
#include <list>

namespace standalone {

/// Keeps the listings used last, in bounded number and memory. A handle is never given out twice: one whose listing is
/// gone reads as a listing at its end.
class FindHandles
{
public:
    /// Reads the folder at `path`, narrow. Returns the handle before its first entry, or the invalid handle with the
    /// errno in `error`.
    FindHandle begin(const char* path, int& error);

    /// Fills `data` with the next entry; false when there is none.
    bool next(FindHandle handle, WIN32_FIND_DATAW& data);

    /// How many listings are kept, and the memory that they take.
    std::size_t count() const noexcept { return listings.size(); }
    std::size_t bytes() const noexcept { return keptBytes; }

private:
    struct Listing
    {
        FindHandle handle = nullptr;
        FolderListing folder;
        std::size_t at = 0; ///< the next entry
    };

    using Place = std::list<Listing>::iterator;

    void dropOldest();
    void drop(Place listing);

    std::list<Listing> listings; ///< the one used last in front
    std::list<Listing> dropped;  ///< one at most, for its memory: the next listing takes it
    std::size_t keptBytes = 0;   ///< of the listings
    std::uintptr_t handlesGiven = 0;
};

} // namespace standalone
