// What "kestbundle check" finds in a set of bundles.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace cli {

/// All bundles of an examination that takes others for loaded, each with its findings.
struct CheckedBundles
{
    const Examination* examination = nullptr;
    std::vector<Findings> findings; ///< by bundle, as in the examination; by line and column, then by code
};

/// Called for each bundle that is done, from several threads at a time.
using OnBundleDone = std::function<void()>;

/// Finds what is to be said about each bundle of `examination`, which must outlive the result, on all cores. `machine`
/// is the number in ELF of the machine that the bundles are for; 0: this one.
CheckedBundles checkBundles(const Examination& examination, unsigned machine, const OnBundleDone& onDone);

} // namespace cli
