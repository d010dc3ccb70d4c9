// What lies in the search roots, beside the bundles.
#pragma once

#include "cli/Examination.h"

namespace cli {

/// Adds the roots in which the host of `examination` searches, and behind the bundles what lies there and looks like
/// one without being found: whatever has a name that ends like a bundle's, and folders that hold a manifest.
void addRoots(Examination& examination);

} // namespace cli
