// The entries of one folder, read at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

/// Holds no descriptor. Entries stand in the order of the code units of their names, "." and ".." among them, so that
/// two machines with the same files see the same.
class FolderListing
{
public:
    /// Reads the folder at `path`, which is narrow. Returns 0, or the errno of the step that failed; the listing is
    /// empty then.
    int read(const char* path);

    std::size_t size() const noexcept { return entries.size(); }
    std::wstring_view name(std::size_t entry) const { return nameOf(entries[entry]); }

    /// Whether the entry is a folder, or a symbolic link to one.
    bool isFolder(std::size_t entry) const { return entries[entry].isFolder; }

    /// The memory that the listing takes.
    std::size_t bytes() const noexcept
    {
        return names.capacity() * sizeof(wchar_t) + entries.capacity() * sizeof(Entry);
    }

private:
    struct Entry
    {
        std::size_t nameBegin;
        std::uint32_t nameLength;
        bool isFolder;
    };

    int readEntries(int folder);
    void add(int folder, const char* name, unsigned char type);
    std::wstring_view nameOf(const Entry& entry) const
    {
        return std::wstring_view(names).substr(entry.nameBegin, entry.nameLength);
    }

    std::wstring names; ///< one behind the other
    std::vector<Entry> entries;
};

} // namespace standalone
