// Errors that come out of code which the host does not trust: modules, commands, engines.
#pragma once

#include <string>

namespace standalone {

/// Says in one line of UTF-8 what the exception being handled is. Call it inside a catch block only. An error object
/// of the host is deleted: whoever catches its pointer owns it.
std::string describeCaughtError();

} // namespace standalone
