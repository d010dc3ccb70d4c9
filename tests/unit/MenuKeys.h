// The two lists of menus in the host's configuration.
#pragma once

#include <string>

inline const std::wstring kBundleKey = L"CUIX/LoadedBundleCuix";
inline const std::wstring kHostKey = L"CUIX/LoadedCuix";
