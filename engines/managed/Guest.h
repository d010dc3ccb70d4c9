// The host's side of managed code: what it may be asked for from C#, and on which thread.
#pragma once

#include "engines/Visit.h"

#include "host/EngineHost.h"

namespace engines {

/// One visit in managed code. The thread that makes it is the host's thread as long as it lives; what other threads
/// have printed since the last visit is printed at its beginning and its end.
class ManagedVisit
{
public:
    ManagedVisit();
    ManagedVisit(const ManagedVisit&) = delete;
    ManagedVisit& operator=(const ManagedVisit&) = delete;
    ~ManagedVisit();

private:
    bool isInner; ///< a visit of this thread lives already
    Visit visit;
};

/// Prints on the host's console, from any thread. Without a host the text is lost.
void printForManaged(const std::string& text) noexcept;

/// Tells the runtime the C++ functions that managed code calls. Call before any managed code runs.
void addManagedCallbacks();

} // namespace engines
