// Where the modules lie that are built for the tests.
#pragma once

#include <string>

inline const std::string kModules = KEST_TEST_MODULES;
