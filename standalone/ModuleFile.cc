#include "standalone/ModuleFile.h"

#include "standalone/RegularFile.h"

#include <array>
#include <bit>
#include <cstring>
#include <link.h>

/// The header of the program's own file, which the linker provides.
extern const ElfW(Ehdr) __ehdr_start __attribute__((visibility("hidden"))); // NOLINT(bugprone-reserved-identifier)

namespace standalone {

namespace {

constexpr unsigned char kOwnByteOrder = std::endian::native == std::endian::little ? ELFDATA2LSB : ELFDATA2MSB;

/// Program headers follow the file's header: this is room for as many as a linker writes.
constexpr std::size_t kRoom = 4096;

std::string machineName(const ElfW(Ehdr) & header)
{
    switch (header.e_machine) {
    case EM_X86_64:
        return "64-bit x86";
    case EM_386:
        return "32-bit x86";
    case EM_AARCH64:
        return "64-bit Arm";
    case EM_ARM:
        return "32-bit Arm";
    case EM_RISCV:
        return "RISC-V";
    default:
        return "machine number " + std::to_string(int{header.e_machine});
    }
}

} // namespace

std::string problemOfModuleFile(const std::string& path)
{
    RegularFile file;
    std::array<char, kRoom> begin{};
    std::size_t length = 0;
    if (!file.open(path.c_str()).empty() || !file.read(begin.data(), begin.size(), length).empty()) {
        return "";
    }
    ElfW(Ehdr) header;
    if (length < sizeof header) {
        return "";
    }
    std::memcpy(&header, begin.data(), sizeof header);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_DATA] != kOwnByteOrder) {
        return "";
    }
    // Up to the machine's number the header is the same for files of 32 and 64 bits.
    if (header.e_machine != __ehdr_start.e_machine) {
        return "it is made for " + machineName(header) + ", and this machine is " + machineName(__ehdr_start);
    }
    for (std::size_t index = 0; index < header.e_phnum; ++index) {
        ElfW(Phdr) part;
        const std::size_t offset = header.e_phoff + index * sizeof part;
        if (header.e_phentsize != sizeof part || offset > length || sizeof part > length - offset) {
            break;
        }
        std::memcpy(&part, begin.data() + offset, sizeof part);
        const bool isThere = part.p_offset <= file.size() && part.p_filesz <= file.size() - part.p_offset;
        if (part.p_type == PT_LOAD && !isThere) {
            return "the file is cut short: it has " + std::to_string(file.size()) + " bytes and needs at least " +
                   std::to_string(part.p_offset + part.p_filesz);
        }
    }
    return "";
}

} // namespace standalone
