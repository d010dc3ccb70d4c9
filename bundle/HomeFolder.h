#pragma once

#include <string>

/// The value of HOME as it stands. Throws std::logic_error when it is not set: there is no folder to fall back on.
std::string homeFolder();
