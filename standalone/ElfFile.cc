#include "standalone/ElfFile.h"

#include "standalone/WholeFile.h"

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <link.h>

namespace standalone {

namespace {

/// Larger ones are not examined.
constexpr std::size_t kLargestFile = std::size_t{1} << 30;

constexpr std::uint64_t kEverything = static_cast<std::uint64_t>(-1);

using Header = ElfW(Ehdr);
using ProgramHeader = ElfW(Phdr);
using Dynamic = ElfW(Dyn);
using Symbol = ElfW(Sym);
using Entries = std::vector<std::pair<std::int64_t, std::uint64_t>>;

/// The value of the last entry `tag`; 0 when there is none.
std::uint64_t valueOf(const Entries& entries, std::int64_t tag)
{
    std::uint64_t value = 0;
    for (const auto& [candidate, candidateValue] : entries) {
        value = candidate == tag ? candidateValue : value;
    }
    return value;
}

} // namespace

std::string ElfFile::open(const std::string& path)
{
    if (std::string problem = readWholeFile(path, kLargestFile, content); !problem.empty()) {
        return problem;
    }
    if (std::string problem = readHeaders(); !problem.empty()) {
        return problem;
    }
    readDynamicPart();
    return "";
}

/// Copies the value number `index` of `bytes` into `value`: nothing in a file is where the machine would have it.
template <typename Value>
bool ElfFile::read(std::string_view bytes, std::size_t index, Value& value) const
{
    if (index >= bytes.size() / sizeof(Value)) {
        return false;
    }
    std::memcpy(&value, bytes.data() + index * sizeof(Value), sizeof(Value));
    return true;
}

std::string ElfFile::readHeaders()
{
    Header header;
    if (!read(content, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) {
        return "it is no native module: it does not begin like an ELF file";
    }
    if (header.e_ident[EI_CLASS] != (sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32)) {
        return "it is made for machines with another length of addresses";
    }
    if (header.e_type != ET_DYN) {
        return "it is no shared object";
    }
    if (header.e_phentsize != sizeof(ProgramHeader) || header.e_phoff > content.size()) {
        return "its table of segments cannot be read";
    }
    const std::string_view table = std::string_view(content).substr(header.e_phoff);
    ProgramHeader part;
    for (std::size_t index = 0; index < header.e_phnum && read(table, index, part); ++index) {
        const bool isThere = part.p_offset <= content.size();
        const std::uint64_t size = isThere ? std::min<std::uint64_t>(part.p_filesz, content.size() - part.p_offset) : 0;
        if (part.p_type == PT_LOAD) {
            segments.push_back({part.p_vaddr, part.p_offset, size});
        } else if (part.p_type == PT_DYNAMIC && isThere) {
            dynamicPart = std::string_view(content).substr(part.p_offset, size);
        }
    }
    return dynamicPart.empty() ? "it says nothing to the dynamic linker, as a shared object has to" : "";
}

void ElfFile::readDynamicPart()
{
    Entries entries;
    Dynamic entry;
    for (std::size_t index = 0; read(dynamicPart, index, entry) && entry.d_tag != DT_NULL; ++index) {
        entries.emplace_back(entry.d_tag, entry.d_un.d_val);
    }
    names = bytesAt(valueOf(entries, DT_STRTAB), valueOf(entries, DT_STRSZ));
    readNames(entries);
    readSymbols(valueOf(entries, DT_SYMTAB), symbolCount(valueOf(entries, DT_HASH), valueOf(entries, DT_GNU_HASH)));
}

void ElfFile::readNames(const Entries& entries)
{
    for (const auto& [tag, value] : entries) {
        if (tag == DT_NEEDED) {
            needed.emplace_back(textAt(value));
        } else if (tag == DT_SONAME) {
            soname = textAt(value);
        } else if (tag == DT_RPATH) {
            rpath = textAt(value);
        } else if (tag == DT_RUNPATH) {
            runpath = textAt(value);
        }
    }
}

void ElfFile::readSymbols(std::uint64_t table, std::size_t count)
{
    const std::string_view bytes = bytesAt(table, kEverything);
    Symbol symbol;
    for (std::size_t index = 1; index < count && read(bytes, index, symbol); ++index) { // the first one is none
        const unsigned binding = ELF64_ST_BIND(symbol.st_info);
        const unsigned visibility = ELF64_ST_VISIBILITY(symbol.st_other);
        const bool isOfOthers = binding == STB_GLOBAL || binding == STB_WEAK || binding == STB_GNU_UNIQUE;
        if (!isOfOthers || visibility == STV_HIDDEN || visibility == STV_INTERNAL) {
            continue;
        }
        allSymbols.push_back({textAt(symbol.st_name), symbol.st_shndx != SHN_UNDEF, binding == STB_WEAK});
    }
}

/// No entry tells how many symbols there are; the tables by which they are looked up do.
std::size_t ElfFile::symbolCount(std::uint64_t hash, std::uint64_t gnuHash) const
{
    std::uint32_t chains = 0;
    if (hash != 0 && read(bytesAt(hash, kEverything), 1, chains)) {
        return chains;
    }
    return gnuHash != 0 ? countByGnuHash(gnuHash) : 0;
}

std::size_t ElfFile::countByGnuHash(std::uint64_t address) const
{
    constexpr std::size_t kHeaderWords = 4;
    const std::string_view table = bytesAt(address, kEverything);
    std::uint32_t buckets = 0;
    std::uint32_t firstHashed = 0;
    std::uint32_t filterWords = 0;
    if (!read(table, 0, buckets) || !read(table, 1, firstHashed) || !read(table, 2, filterWords)) {
        return 0;
    }
    const std::size_t bucketBegin = kHeaderWords + filterWords * (sizeof(void*) / sizeof(std::uint32_t));
    std::uint32_t last = 0;
    for (std::size_t index = 0; index < buckets; ++index) {
        std::uint32_t first = 0;
        if (!read(table, bucketBegin + index, first)) {
            return 0;
        }
        last = std::max(last, first);
    }
    if (last < firstHashed) {
        return firstHashed; // none can be looked up: all are asked for
    }
    std::uint32_t hash = 0;
    const std::size_t chainBegin = bucketBegin + buckets;
    while (read(table, chainBegin + (last - firstHashed), hash) && (hash & 1) == 0) { // the last of a chain is odd
        ++last;
    }
    return std::size_t{last} + 1;
}

std::string_view ElfFile::bytesAt(std::uint64_t address, std::uint64_t length) const
{
    for (const Segment& segment : segments) {
        if (address >= segment.address && address - segment.address < segment.size) {
            const std::uint64_t begin = address - segment.address;
            return std::string_view(content).substr(segment.offset + begin, std::min(length, segment.size - begin));
        }
    }
    return {};
}

std::string_view ElfFile::textAt(std::uint64_t offset) const
{
    const std::string_view text = names.substr(std::min<std::uint64_t>(offset, names.size()), kLongestElfName);
    return text.substr(0, text.find('\0'));
}

} // namespace standalone
