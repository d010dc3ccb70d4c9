// Any file as a native module: what is told of it without loading it stands in it. An input is the file; its length of
// addresses is made that of this machine.
#include "fuzz/MemoryFile.h"
#include "fuzz/Target.h"
#include "standalone/ElfFile.h"

#include <elf.h>
#include <link.h>

namespace fuzz {

namespace {

void requireIn(const std::string& file, std::string_view text, const char* what)
{
    require(text.size() <= standalone::kLongestElfName, std::string(what) + " has no end");
    require(file.find(text) != std::string::npos, std::string(what) + " does not stand in the file");
    require(text.find('\0') == std::string_view::npos, std::string(what) + " goes on behind its end");
}

void readElf(std::string_view bytes)
{
    std::string file(bytes);
    constexpr std::size_t kClass = EI_CLASS;
    if (file.size() > kClass) {
        file[kClass] = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
    }
    static const MemoryFile module;
    module.fill(file);
    standalone::ElfFile elf;
    const std::string problem = elf.open(module.path());
    if (!problem.empty()) {
        require(elf.symbols().empty() && elf.neededLibraries().empty(), "nothing is told of what is no module");
        return;
    }
    require(elf.symbols().size() <= file.size() / sizeof(ElfW(Sym)), "there are more symbols than have room");
    require(elf.neededLibraries().size() <= file.size() / sizeof(ElfW(Dyn)), "there are more libraries than have room");
    for (const standalone::ElfSymbol& symbol : elf.symbols()) {
        requireIn(file, symbol.name, "the name of a symbol");
    }
    for (const std::string& library : elf.neededLibraries()) {
        requireIn(file, library, "the name of a library");
    }
    requireIn(file, elf.ownName(), "the module's own name");
    requireIn(file, elf.olderRunPath(), "the older run path");
    requireIn(file, elf.runPath(), "the run path");
}

const Register kElf("elf", readElf);

} // namespace

} // namespace fuzz
