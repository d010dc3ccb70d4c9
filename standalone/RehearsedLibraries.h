// Libraries that the autoloader opens by itself, in a host that rehearses.
#pragma once

#include "host/ModuleLayer.h"

namespace standalone {

/// In place of the export `name` of an engine: a function that examines; null when there is none in its place.
ProcAddress rehearsedExport(const char* name) noexcept;

} // namespace standalone
