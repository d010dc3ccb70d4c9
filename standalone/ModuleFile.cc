#include "standalone/ModuleFile.h"

#include "standalone/RegularFile.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <link.h>
#include <utility>

/// The header of the program's own file, which the linker provides.
extern const ElfW(Ehdr) __ehdr_start __attribute__((visibility("hidden"))); // NOLINT(bugprone-reserved-identifier)

namespace standalone {

namespace {

constexpr unsigned char kOwnByteOrder = std::endian::native == std::endian::little ? ELFDATA2LSB : ELFDATA2MSB;

/// Program headers follow the file's header: this is room for as many as a linker writes.
constexpr std::size_t kRoom = 4096;

} // namespace

std::string machineName(unsigned number)
{
    switch (number) {
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
        return "machine number " + std::to_string(number);
    }
}

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
        return "it is made for " + machineName(header.e_machine) + ", and this machine is " +
               machineName(__ehdr_start.e_machine);
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

std::optional<unsigned> machineNumber(std::wstring_view name)
{
    constexpr std::pair<std::wstring_view, unsigned> kMachines[] = {
        {L"x86_64", EM_X86_64}, {L"x86", EM_X86_64}, {L"aarch64", EM_AARCH64}, {L"i386", EM_386},
        {L"i686", EM_386},      {L"armv7l", EM_ARM}, {L"riscv64", EM_RISCV},
    };
    for (const auto& [known, number] : kMachines) {
        if (known == name) {
            return number;
        }
    }
    return std::nullopt;
}

std::optional<unsigned> machineOfFile(const std::string& path)
{
    RegularFile file;
    std::array<char, offsetof(ElfW(Ehdr), e_version)> begin{};
    std::size_t length = 0;
    if (!file.open(path.c_str()).empty() || !file.read(begin.data(), begin.size(), length).empty() ||
        length < begin.size() || std::memcmp(begin.data(), ELFMAG, SELFMAG) != 0) {
        return std::nullopt;
    }
    std::array<unsigned char, 2> bytes{};
    std::memcpy(bytes.data(), begin.data() + offsetof(ElfW(Ehdr), e_machine), bytes.size());
    const bool isBig = begin[EI_DATA] == ELFDATA2MSB;
    return bytes[isBig ? 1 : 0] + 256U * bytes[isBig ? 0 : 1];
}

std::string problemOnMachine(const std::string& path, unsigned number)
{
    RegularFile file;
    if (std::string problem = file.open(path.c_str()); !problem.empty()) {
        return problem;
    }
    const std::optional<unsigned> found = machineOfFile(path);
    if (!found) {
        return "it is no native module: it does not begin like an ELF file";
    }
    return *found == number
               ? ""
               : "it is made for " + machineName(*found) + ", and the machine asked for is " + machineName(number);
}

unsigned ownMachine()
{
    return __ehdr_start.e_machine;
}

} // namespace standalone
