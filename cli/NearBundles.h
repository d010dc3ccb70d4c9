// What lies in the search roots, beside the bundles.
#pragma once

#include "cli/Examination.h"

#include <string>
#include <vector>

namespace cli {

/// Adds the roots in which the host of `examination` searches, and behind the bundles what lies there and looks like
/// one without being found: whatever has a name that ends like a bundle's, and folders that hold a manifest.
void addRoots(Examination& examination);

/// Whether the absolute `path` has such a name, or is such a folder.
bool looksLikeABundle(const std::wstring& path);

/// The entries of the folder `folder` that look like a bundle, sorted by their bytes; absolute when `folder` is.
std::vector<std::wstring> nearBundles(const std::wstring& folder);

} // namespace cli
