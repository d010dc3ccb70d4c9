// Which requirements of a bundle the running host does not meet, written out plainly.
#pragma once

#include "manifest/Records.h"
#include "tests/HostDouble.h"

#include <string>
#include <vector>

namespace fuzz {

/// The words by which the log names the requirements that `host` does not meet, in its order.
std::vector<std::string> mismatches(const KestRuntimeRequirements& runtime, const hostdouble::State& host);

/// The number that `text` begins with, a point as decimal point; 0 when it begins with none.
double number(const std::wstring& text);

/// The whole number that `text` begins with, as near as an int comes.
int wholeNumber(const std::wstring& text);

} // namespace fuzz
