// What a Python library needs around it to start: its standard library, and an environment that cannot mislead it.
#pragma once

#include "engines/EnvironmentVariable.h"

#include <list>
#include <string>

namespace engines {

/// Where the standard library of a Python library lies.
struct StandardLibrary
{
    std::string home;    ///< the prefix above it; absolute
    std::string problem; ///< why there is none; else empty
};

/// Looks for the standard library of `version` ("3.11.2") beside the library at the real path `libraryFile`: another
/// Python that comes first on PATH is none of its business.
StandardLibrary findStandardLibrary(const std::string& libraryFile, const std::string& version);

/// While it lives, the process's environment makes Python start the same way everywhere: with this home, and
/// undisturbed by folders of the user's own and by variables that begin with PYTHON, some of which end the process when
/// their value is wrong.
class StartEnvironment
{
public:
    explicit StartEnvironment(const std::string& home);

    /// The variables that differ, as they were: NAME=VALUE, or NAME when it was not set, each ended by a zero byte.
    std::string changes() const;

private:
    std::list<EnvironmentVariable> variables; ///< each of another name
};

} // namespace engines
