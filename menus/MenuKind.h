// What kind of menu a path names, by its extension.
#pragma once

#include "host/StdString.h"

enum class MenuKind
{
    kCurrent, ///< ".cuix": the host loads it as it is
    kLegacy,  ///< ".mnu", ".mns", ".menuc": the host converts it first
    kOther,   ///< no menu
};

/// The kind of the menu at `path`, up to its first zero code unit; the letter case of the extension does not matter.
MenuKind menuKindOf(const CStdStr<wchar_t>& path);
