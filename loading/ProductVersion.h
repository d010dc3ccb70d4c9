// The product version that bundles are compared with.
#pragma once

namespace loading {

/// The text of a decimal number. Whoever checks bundles for a host of another version sets another text, which outlives
/// its use, before they are read: the comparison itself remains the one that hosts get. Not exported: in the shared
/// library nobody can.
extern const wchar_t* productVersion;

} // namespace loading
