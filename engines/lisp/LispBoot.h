// The start of LISP in a process that is not its own.
#pragma once

namespace engines {

/// Boots LISP on the calling thread and defines what scripts see. It does so once; false says that the second part
/// failed. The caller puts back what a Visit puts back.
bool bootLisp();

} // namespace engines
