// Lets one allocation of a piece of code fail after the other.
#pragma once

#include "tests/faults/FaultPoint.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <memory>
#include <new>
#include <string_view>

namespace faults {

/// The way called `name` of the kind called `kind`, which there must be.
inline const Way& wayOf(std::string_view kind, std::string_view name)
{
    for (const Way& way : allWays()) {
        if (way.kindName == kind && way.name == name) {
            return way;
        }
    }
    throw std::logic_error("no such way");
}

/// Calls `act` until it gets through; in call number N its allocation number N fails. Calls `check` after each call in
/// which one failed. What leaves `act` for lack of memory is no finding.
template <typename Act, typename Check>
void withEachAllocationFailing(std::string_view kind, Act act, Check check)
{
    constexpr long kMost = 100'000;
    for (long number = 1; number < kMost; ++number) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        Progress progress;
        arm(wayOf(kind, "once"), number, progress, false);
        try {
            act();
        } catch (const std::bad_alloc&) {
        }
        disarm();
        if (progress.strikes == 0) {
            EXPECT_GT(number, 1) << "nothing was allocated";
            return;
        }
        check();
    }
    FAIL() << "it does not come to an end";
}

/// How many descriptors this process has.
inline int descriptorCount()
{
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir("/proc/self/fd"), ::closedir);
    int count = 0;
    while (::readdir(folder.get()) != nullptr) {
        ++count;
    }
    return count;
}

} // namespace faults
