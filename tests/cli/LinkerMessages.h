// What the dynamic linker says.
#pragma once

#include <string>

/// Behind the name of a library that is not there.
inline const std::string kMissing = ": cannot open shared object file: No such file or directory";
