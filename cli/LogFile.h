// An error log that some start has left behind.
#pragma once

#include "cli/ErrorLog.h"

#include <cstdint>
#include <string>

namespace cli {

struct LogFile
{
    std::string path; ///< narrow
    std::uintmax_t size = 0;
    bool isWhole = true;    ///< false: it is so long that only its begin was read
    bool isForeign = false; ///< it does not begin as the autoloader begins its log
    ErrorLogText text;
};

/// Reads the log at `path`. Throws WrongUse, with what to do, when there is none or it cannot be read. `isUsual`: it
/// lies where the autoloader writes it, so that a missing one has other causes than a wrong name.
LogFile readLogFile(const std::string& path, bool isUsual);

} // namespace cli
