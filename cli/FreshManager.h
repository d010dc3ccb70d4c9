// The autoloader's manager for one rehearsal.
#pragma once

#include "bundle/BundleManager.h"

namespace cli {

/// The one manager, made anew, so that it writes to the log of the host that lives now. At the end its bundles go,
/// while their host is still there.
class FreshManager
{
public:
    FreshManager();
    FreshManager(const FreshManager&) = delete;
    FreshManager& operator=(const FreshManager&) = delete;
    ~FreshManager();

    KestBundleManager& operator*() const noexcept { return one; }

private:
    KestBundleManager& one;
};

/// Puts a loaded bundle without manifest in front for each identity that the bundles of `manager` depend on and do not
/// have themselves.
void addOtherBundles(KestBundleManager& manager);

} // namespace cli
