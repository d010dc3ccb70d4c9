// What the bundle manager's lists hold on the heap.
#pragma once

#include "tests/growth/LiveMemory.h"

class KestBundleManager;

/// The blocks of the lists and maps of `manager` and of all that is in them.
Blocks blocksHeldBy(const KestBundleManager& manager);
