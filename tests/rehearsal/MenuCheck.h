// Whether the account of the menus and the findings tell one thing.
#pragma once

#include "cli/Examination.h"

namespace rehearsal {

/// Each menu that is not registered, and each empty entry that a component leaves, has a finding in the account of the
/// menus, and it is one of those that are told everywhere.
void expectMenuFindings(const cli::Examination& examination);

} // namespace rehearsal
