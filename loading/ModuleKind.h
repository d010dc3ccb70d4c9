// What kind of module a path names, by its extension.
#pragma once

#include "host/StdString.h"

enum class ModuleKind
{
    kManaged, ///< ".dll"
    kNative,  ///< ".krx"
    kLisp,    ///< ".lsp", ".kelx", ".vls"
    kPython,  ///< ".py"
    kOther,
};

/// The kind of the module at `path`; the letter case of the extension does not matter.
ModuleKind moduleKindOf(const CStdStr<wchar_t>& path);
