// What the module core-threads.krx offers to other modules. They link with it, so they can only be loaded after it.
#pragma once

extern "C" {

/// The pitch of the metric coarse thread of `diameter` (8 for M8), in millimetres; 0 when there is no such thread.
double coreThreadPitch(int diameter);
}
