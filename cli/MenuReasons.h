// Why an entry stands in the list of menus as it does, and why a menu does not.
#pragma once

#include "cli/Examination.h"

#include <string>

namespace cli {

/// What there is to explain about `entry`, which `component` has left in the list; empty when nothing is. UTF-8.
std::string reasonOfEntry(const ExaminedComponent& component, const std::wstring& entry);

/// Why the menu `component` of `bundle` is not registered: a sentence, UTF-8.
std::string reasonAgainst(const Examination& examination, const ExaminedBundle& bundle,
                          const ExaminedComponent& component);

} // namespace cli
