// How the tool ends.
#pragma once

#include <stdexcept>

namespace cli {

inline constexpr int kAllWell = 0;
inline constexpr int kSomethingFailed = 1;
inline constexpr int kWrongUse = 2;

/// The tool was called in a way that cannot be done; its text, UTF-8, says what to change.
class WrongUse : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

} // namespace cli
