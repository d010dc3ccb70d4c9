#include "standalone/LibrarySearch.h"

#include "standalone/ModuleFile.h"
#include "standalone/WholeFile.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <mutex>
#include <sys/stat.h>
#include <unordered_map>

// The true dlopen() where a rehearsing host answers in its place; see RehearsedLibraries.cc.
extern "C" void* __real_dlopen(const char* name, int mode);

namespace standalone {

namespace {

bool isRegularFile(const std::string& path)
{
    struct stat found
    {
    };
    return ::stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode);
}

std::string folderOf(const std::string& path)
{
    char* const resolved = ::realpath(path.c_str(), nullptr);
    std::string whole = resolved != nullptr ? resolved : path;
    std::free(resolved); // NOLINT(cppcoreguidelines-no-malloc): realpath's own
    return whole.substr(0, whole.rfind('/'));
}

std::string replaced(std::string text, const std::string& what, const std::string& by)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

/// The folders of `list`, which are joined by ":"; `origin` is the folder of the object that names them.
std::vector<std::string> foldersOf(std::string_view list, const std::string& origin)
{
    std::vector<std::string> folders;
    while (!list.empty()) {
        const std::string_view one = list.substr(0, list.find(':'));
        list.remove_prefix(std::min(one.size() + 1, list.size()));
        folders.push_back(replaced(replaced(std::string(one), "${ORIGIN}", origin), "$ORIGIN", origin));
    }
    return folders;
}

/// The linker's list of the system's libraries, /etc/ld.so.cache: a header, entries, and their texts.
class SystemLibraries
{
public:
    SystemLibraries()
    {
        constexpr std::size_t kLargest = std::size_t{64} << 20;
        constexpr std::string_view kMark = "glibc-ld.so.cache1.1";
        std::string content;
        if (!readWholeFile("/etc/ld.so.cache", kLargest, content).empty()) {
            return;
        }
        const std::size_t begin = content.find(kMark); // an older list may stand before it
        if (begin == std::string::npos) {
            return;
        }
        const std::string_view list = std::string_view(content).substr(begin);
        std::uint32_t count = 0;
        constexpr std::size_t kHeaderSize = 48;
        if (list.size() < kHeaderSize) {
            return;
        }
        std::memcpy(&count, list.data() + kMark.size(), sizeof count);
        for (std::size_t index = 0; index < count && kHeaderSize + (index + 1) * sizeof(Entry) <= list.size();
             ++index) {
            Entry entry{};
            std::memcpy(&entry, list.data() + kHeaderSize + index * sizeof entry, sizeof entry);
            byName[textAt(list, entry.name)].push_back(textAt(list, entry.path));
        }
    }

    const std::vector<std::string>& find(const std::string& name) const
    {
        static const std::vector<std::string> kNone;
        const auto found = byName.find(name);
        return found != byName.end() ? found->second : kNone;
    }

private:
    struct Entry
    {
        std::int32_t flags;
        std::uint32_t name;
        std::uint32_t path;
        std::uint32_t system;
        std::uint64_t capabilities;
    };

    static std::string textAt(std::string_view list, std::size_t offset)
    {
        const std::string_view text = list.substr(std::min(offset, list.size()));
        return std::string(text.substr(0, text.find('\0')));
    }

    std::unordered_map<std::string, std::vector<std::string>> byName;
};

/// Whether the linker would take the file at `path`; it passes over those of other machines.
bool isTaken(const std::string& path)
{
    return isRegularFile(path) && problemOfModuleFile(path).empty();
}

} // namespace

RunPath runPathOf(const ElfFile& file, const std::string& path, const RunPath& needing)
{
    const std::string origin = folderOf(path);
    RunPath made;
    if (file.runPath().empty()) { // the newer kind puts the older one of the same object out of force
        made.older = foldersOf(file.olderRunPath(), origin);
        made.older.insert(made.older.end(), needing.older.begin(), needing.older.end());
    }
    made.own = foldersOf(file.runPath(), origin);
    return made;
}

std::string findLibrary(const std::string& name, const RunPath& searched)
{
    if (name.find('/') != std::string::npos) {
        return isRegularFile(name) ? name : "";
    }
    static const SystemLibraries system;
    static const char* const listed = std::getenv("LD_LIBRARY_PATH");
    static const std::vector<std::string> environment = foldersOf(listed != nullptr ? listed : "", "");
    for (const auto* folders : {&searched.older, &environment, &searched.own}) {
        for (const std::string& folder : *folders) {
            std::string path = folder;
            path.append("/").append(name);
            if (isTaken(path)) {
                return path;
            }
        }
    }
    for (const std::string& path : system.find(name)) {
        if (isTaken(path)) {
            return path;
        }
    }
    for (const char* folder : {"/lib/", "/usr/lib/"}) {
        if (std::string path = folder + name; isTaken(path)) {
            return path;
        }
    }
    return "";
}

bool isLibraryOpen(const std::string& name)
{
    void* const library = __real_dlopen(name.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    return library != nullptr && ::dlclose(library) == 0;
}

bool hostOffers(const char* symbol)
{
    return ::dlsym(RTLD_DEFAULT, symbol) != nullptr;
}

} // namespace standalone
