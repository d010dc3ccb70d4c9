// What can be told of a native module from its file, before any of it is mapped into the process.
#pragma once

#include <string>

namespace standalone {

/// Why the file at the narrow `path` cannot be loaded as a module: it is made for another kind of machine, or it is cut
/// short, which would end the process when the missing part is touched. Empty when nothing of that is so; whatever else
/// may be wrong with it, the dynamic linker says. In UTF-8. The format is ELF, of the System V ABI.
std::string problemOfModuleFile(const std::string& path);

} // namespace standalone
