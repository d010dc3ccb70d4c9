// Fresh identities.
#pragma once

#include <string>

namespace cli {

/// A random GUID in braces, in the form of manifests: "{8A6F2B10-3C47-4E19-8D52-7F3B9C0A1E01}".
std::string randomCode();

} // namespace cli
