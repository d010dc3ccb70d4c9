// A shared object in the ELF format of the System V ABI, read from its file without loading it. Nothing that stands in
// the file is believed: every place and every count is held against the file's size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace standalone {

/// Of longer names only so much is read: in a file without any end of a name, each symbol would have the whole rest.
inline constexpr std::size_t kLongestElfName = 4096;

/// A symbol for the dynamic linker.
struct ElfSymbol
{
    std::string_view name; ///< in the file's own table of names
    bool isDefined = false;
    bool isWeak = false;
};

/// What the dynamic linker is told by a shared object of this machine's kind.
class ElfFile
{
public:
    /// Reads the file at the narrow `path`. Returns an empty text, or why it is no shared object of this machine's kind
    /// that can be loaded, in UTF-8.
    std::string open(const std::string& path);

    const std::vector<std::string>& neededLibraries() const noexcept { return needed; }
    const std::string& ownName() const noexcept { return soname; }
    /// Folders joined by ":", as they stand in the file; of the two kinds the older one also holds for needed
    /// libraries.
    const std::string& olderRunPath() const noexcept { return rpath; }
    const std::string& runPath() const noexcept { return runpath; }

    /// All global and weak symbols that other objects can see, or that this one asks for.
    const std::vector<ElfSymbol>& symbols() const noexcept { return allSymbols; }

private:
    struct Segment
    {
        std::uint64_t address;
        std::uint64_t offset;
        std::uint64_t size;
    };

    std::string readHeaders();
    void readDynamicPart();
    void readNames(const std::vector<std::pair<std::int64_t, std::uint64_t>>& entries);
    void readSymbols(std::uint64_t table, std::size_t count);
    std::size_t symbolCount(std::uint64_t hash, std::uint64_t gnuHash) const;
    std::size_t countByGnuHash(std::uint64_t address) const;

    /// The bytes at `address` as they are mapped, `length` at most; fewer, or none, where the file ends.
    std::string_view bytesAt(std::uint64_t address, std::uint64_t length) const;
    std::string_view textAt(std::uint64_t offset) const;
    template <typename Value>
    bool read(std::string_view bytes, std::size_t index, Value& value) const;

    std::string content;
    std::vector<Segment> segments;
    std::string_view dynamicPart;
    std::string_view names;
    std::vector<std::string> needed;
    std::string soname;
    std::string rpath;
    std::string runpath;
    std::vector<ElfSymbol> allSymbols;
};

} // namespace standalone
