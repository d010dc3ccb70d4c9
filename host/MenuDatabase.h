// The host's menu database.
#pragma once

#include "host/StdString.h"

class Database
{
public:
    /// Makes a menu file in the current format (".cuix") from the legacy one (".mnu", ".mns", ".menuc") at the full
    /// path `source`, and writes its full path into `converted`, passed in empty. Where it is written is the host's
    /// choice. Returns true, with a path that is not empty, on success; everything else counts as failure. An
    /// exception passes through the autoloader to the caller of its entry point.
    static bool convertMenuToCuix(const CStdStr<wchar_t>& source, CStdStr<wchar_t>& converted);
};
