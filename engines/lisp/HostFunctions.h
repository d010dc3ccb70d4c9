// The functions of package KEST-HOST that are written in C++; world.lisp builds what scripts see upon them.
#pragma once

namespace engines {

/// Defines them; the package exists.
void defineHostFunctions();

} // namespace engines
