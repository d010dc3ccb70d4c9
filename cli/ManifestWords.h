// What a manifest names, without judging it: whose an announced command is can be told in no other way, since the
// host learns the bare name. Every decision about a bundle is the autoloader's.
#pragma once

#include <string>
#include <vector>

namespace cli {

struct ManifestWords
{
    std::vector<std::wstring> commands; ///< local names, upper case, not empty, in document order
    /// It names a script or a managed assembly: when one of these loads, the host is not told.
    bool hasSilentComponents = false;
};

/// Reads the manifest at `path` through the host's own reader, which notes that in the journal. As far as it is
/// well-formed; empty when it cannot be opened.
ManifestWords readManifestWords(const std::wstring& path);

} // namespace cli
