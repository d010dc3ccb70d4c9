// Holds findings to their mends: applied for real, each takes its finding away and nothing that loaded.
#pragma once

#include "tests/rehearsal/Mends.h"

#include <functional>
#include <map>
#include <string>

namespace rehearsal {

/// How often each of allMends() was applied, by its position.
using MendCounts = std::map<std::size_t, std::size_t>;

/// Applies each mend of each finding on a tree of its own, which `make` makes anew at the same place. `name` tells the
/// tree in failures.
void expectMends(const std::string& name, const std::function<void()>& make, const MendTree& tree, MendCounts& counts);

} // namespace rehearsal
