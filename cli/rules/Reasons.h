// Everything that keeps a bundle, a component, a command or a menu from loading.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"
#include "cli/rules/RuleInput.h"

namespace cli {

/// What there is to say about all that was examined: first about roots, the list of menus and the host, then about each
/// bundle in the order of the examination. Reads the manifests once more, for their lines.
Findings findReasons(const Examination& examination);

/// About one bundle only.
Findings findReasons(const RuleInput& all, const ExaminedBundle& bundle, const ManifestPlaces& places);

/// About no bundle: roots, menu list, host.
Findings findGeneralReasons(const Examination& examination);

} // namespace cli
