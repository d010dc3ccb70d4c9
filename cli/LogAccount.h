// An error log, each record with what it means and what holds now.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"
#include "cli/LogFile.h"

#include <string>
#include <vector>

namespace cli {

/// What a record says about.
enum class LogProblem
{
    kMalformed,
    kProductVersion,
    kOS,
    kArchitecture,
    kPlatform,
    kLoadingFailed,
    kUnknown,
};

/// The word for `problem` in all reports; stable, since scripts read it.
const char* nameOf(LogProblem problem);

/// How a record stands to what is installed now.
enum class LogStanding
{
    kStill,    ///< a start would log it again
    kNoLonger, ///< a start would not
    kGone,     ///< there is no such bundle or module
    kUnknown,  ///< the record itself is not understood
};

const char* nameOf(LogStanding standing);

struct LogEntry
{
    std::string path;    ///< UTF-8, valid; nothing is escaped
    std::string message; ///< the same
    LogProblem problem = LogProblem::kUnknown;
    LogStanding standing = LogStanding::kUnknown;
    std::wstring bundle; ///< the folder, unless the standing is kGone or kUnknown
    Findings findings;   ///< the reasons for kStill
};

/// What a record of `problem` means, and what is to be done: sentences.
std::string meaningOf(LogProblem problem);
std::string adviceFor(const LogEntry& entry);

/// The records of `log` beside `examination`.
std::vector<LogEntry> logEntries(const LogFile& log, const Examination& examination);

} // namespace cli
