// Where the dynamic linker would find a library that a module needs.
#pragma once

#include "standalone/ElfFile.h"

#include <string>
#include <vector>

namespace standalone {

/// Folders that are searched for what one object needs, in their order, without a "/" at the end.
struct RunPath
{
    std::vector<std::string> older; ///< the object's own and those of the objects that need it
    std::vector<std::string> own;
};

/// The run paths of the object `file` at the narrow `path`, needed by one with the run path `needing`.
RunPath runPathOf(const ElfFile& file, const std::string& path, const RunPath& needing);

/// The narrow path of the library `name` for an object with the run path `searched`; empty when it is not found. The
/// libraries of the system are told by the linker's own list of them and by its two usual folders.
std::string findLibrary(const std::string& name, const RunPath& searched);

/// Whether this process has the library `name` in memory already.
bool isLibraryOpen(const std::string& name);

/// Whether the host, which is this process with the libraries that it was started with, offers `symbol`.
bool hostOffers(const char* symbol);

} // namespace standalone
