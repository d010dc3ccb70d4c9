// How the recording host writes down what it is asked. For its own sources alone.
#pragma once

#include "tests/HostDouble.h"

#include <initializer_list>

namespace hostdouble {

/// Records a call; true when it is the one that shall fail.
bool record(const std::string& name, std::initializer_list<std::string> arguments);

/// Adds the result to the call recorded last.
template <typename Result>
Result result(Result value, const std::string& text)
{
    state().calls.back() += " -> " + text;
    return value;
}

/// Writes out what the log still holds and forgets the listings that were abandoned.
void forgetFiles();

} // namespace hostdouble
