// What the module bolt-catalogue.krx offers to other modules. They link with it, so they can only be loaded after it.
#pragma once

extern "C" {

/// The stress area of a bolt of `diameter` (8 for M8), in square millimetres; 0 when there is no such bolt.
double boltStressArea(int diameter);
}
