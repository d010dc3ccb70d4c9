// What a manifest names, without judging it: whose an announced command is, and which engine a component asks for, can
// be told in no other way, since the host does not learn it. Every decision about a bundle is the autoloader's.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// A component that a manifest names.
struct ManifestComponent
{
    std::wstring path;                  ///< absolute; empty when the manifest names no module that begins with "./"
    std::wstring pythonVersion;         ///< may be empty
    bool isOnDemand = false;            ///< it loads when one of its commands is used, not at start-up
    std::vector<std::wstring> commands; ///< local names, upper case, not empty, in document order

    /// It is a Python script that names no PythonVersion: the autoloader passes it over without a word.
    bool isPassedOver() const;
};

/// By its extension, the module at `path` is a Python script, or a managed assembly.
bool isPythonScript(std::wstring_view path);
bool isManagedAssembly(std::wstring_view path);

/// Reads the components of the manifest at `path` through the host's own reader, which notes that in the journal. As
/// far as it is well-formed; empty when it cannot be opened.
std::vector<ManifestComponent> readManifestComponents(const std::wstring& path);

} // namespace cli
