#include "standalone/AssemblyFile.h"

#include "standalone/RegularFile.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace standalone {

namespace {

/// All headers lie at the front of the file.
constexpr std::size_t kRoom = 4096;

/// The number of `size` bytes at `offset`, least byte first; 0 beyond the end.
std::uint32_t numberAt(std::string_view bytes, std::size_t offset, std::size_t size)
{
    std::uint32_t number = 0;
    for (std::size_t at = size; at-- > 0;) {
        const std::size_t place = offset + at;
        number = number << 8 | (place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0U);
    }
    return number;
}

/// Whether the headers name one for the common language infrastructure.
bool hasManagedHeader(std::string_view bytes)
{
    constexpr std::size_t kPlaceOfHeader = 0x3C;
    constexpr std::size_t kFileHeader = 24; // its mark included
    constexpr std::uint32_t kNarrowMark = 0x10B;
    constexpr std::uint32_t kWideMark = 0x20B;
    constexpr std::size_t kDirectory = 14;
    const std::size_t header = numberAt(bytes, kPlaceOfHeader, 4);
    if (header > bytes.size() || bytes.substr(header, 4) != std::string_view("PE\0\0", 4)) {
        return false;
    }
    const std::size_t optional = header + kFileHeader;
    const std::uint32_t mark = numberAt(bytes, optional, 2);
    if (mark != kNarrowMark && mark != kWideMark) {
        return false;
    }
    const std::size_t directories = optional + (mark == kNarrowMark ? 96 : 112);
    return numberAt(bytes, directories - 4, 4) > kDirectory && numberAt(bytes, directories + kDirectory * 8, 4) != 0;
}

} // namespace

std::string problemOfAssembly(const std::string& path)
{
    std::string begin(kRoom, '\0');
    RegularFile file;
    std::size_t length = 0;
    std::string problem = file.open(path.c_str());
    if (problem.empty()) {
        problem = file.read(begin.data(), begin.size(), length);
    }
    if (!problem.empty()) {
        return problem;
    }
    begin.resize(length);
    return begin.starts_with("MZ") && hasManagedHeader(begin) ? "" : "it is not a managed assembly";
}

} // namespace standalone
