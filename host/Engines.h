// What libraries that run scripts and managed assemblies export. They are opened at run time, by name, and are no
// part of the host program.
#pragma once

#include "host/StdString.h"

#include <string>

namespace engines {

/// Export "netLoad" of "VxManagedCommand.dll": loads the managed assembly at `path`; `reserved` is always 0. Returns
/// whether it was loaded. Must not throw.
using NetLoad = bool (*)(const CStdStr<wchar_t>& path, int reserved);

/// Export "setPythonVersion" of "libVxPythonLoad.so": `libraryName` is the file name of the system's Python library,
/// for example "libpython3.11.so". May be absent. Must not throw.
using SetPythonVersion = void (*)(std::string libraryName);

/// Export "loadPythonFile" of "libVxPythonLoad.so": runs the script at the wide `path`. Returns 0 when it ran. Must
/// not throw. The working directory is the script's folder.
using LoadPythonFile = int (*)(const wchar_t* path);

} // namespace engines
