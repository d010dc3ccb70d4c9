// Options whose value is one of a few.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace cli {

/// Lets only `choices` pass, and proposes the nearest one. The help shows them as "{one,other}".
CLI::Validator oneOf(const std::vector<std::string>& choices);

} // namespace cli
