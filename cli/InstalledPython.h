// The Python that scripts can be run with on this machine.
#pragma once

#include <string>

namespace cli {

/// What a component can give as PythonVersion here.
struct InstalledPython
{
    std::string version = "python3.11";
    bool isThere = false; ///< else `version` is only a likely one
};

/// The newest one whose library can be opened.
InstalledPython findInstalledPython();

} // namespace cli
