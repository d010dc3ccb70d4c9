// "Did you mean": the known name that a mistyped one is nearest to.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// The one of `known` that takes the fewest typing mistakes to become `given` (a character left out, added, exchanged,
/// or two neighbours swapped; a wrong letter case is half a mistake), the first of several. Nothing when even that one
/// is further away than a third of the longer name. Texts are compared byte by byte.
std::optional<std::string> nearestName(std::string_view given, const std::vector<std::string>& known);

} // namespace cli
