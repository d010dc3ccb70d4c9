// What can be told of a managed assembly from its file.
#pragma once

#include <string>

namespace standalone {

/// Why the file at the narrow `path` is no managed assembly, in UTF-8; empty when it is one. The format is that of
/// ECMA-335: a portable executable with a header for the common language infrastructure.
std::string problemOfAssembly(const std::string& path);

} // namespace standalone
