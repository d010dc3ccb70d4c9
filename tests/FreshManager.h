// The one manager, made anew.
#pragma once

#include "bundle/BundleManager.h"
#include "tests/HostDouble.h"

#include <algorithm>
#include <memory>
#include <string>

/// Ends the manager and makes it anew over a recording host that is as new, as if the library had been closed and
/// opened again. No call is recorded yet.
inline KestBundleManager& restartManagerAndHost()
{
    KestBundleManager* one = KestBundleManager::getInstance();
    std::destroy_at(one); // what it still says goes to the old host
    hostdouble::reset();
    std::construct_at(one);
    hostdouble::state().calls.clear();
    hostdouble::state().stringCopies = 0;
    return *one;
}

/// What the log holds behind the time line.
inline std::string loggedProblems()
{
    const std::string log = hostdouble::logText();
    return log.substr(std::min(log.size(), log.find('\n') + 1));
}
