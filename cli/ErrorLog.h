// The autoloader's error log, taken apart again.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// One problem in the log. Texts are as they stand in the file, in the encoding of the global locale.
struct ErrorLogRecord
{
    std::string path;    ///< the manifest's or the module's; all of the line when its message is not a known one
    std::string message; ///< without what joins it to the path, and without the line end; may be empty

    bool operator==(const ErrorLogRecord&) const = default;
};

/// What a log says.
struct ErrorLogText
{
    std::string time; ///< when it was begun: the first line
    std::vector<ErrorLogRecord> records;
    bool isComplete = false; ///< it begins with the time line and ends with a line end

    bool operator==(const ErrorLogText&) const = default;
};

/// Takes `bytes`, the content of a log, apart. Never fails: what it does not know it hands on as it stands.
ErrorLogText parseErrorLog(std::string_view bytes);

/// The message of a component whose load failed, as it stands in ErrorLogRecord::message.
std::string_view loadingFailedMessage();

/// The path at `path` as the log shows it: the log's format takes percent signs out of it.
std::string pathInErrorLog(std::wstring_view path);

/// The log of this run.
struct ErrorLogFile
{
    std::string path;    ///< narrow, as the system takes it
    std::string problem; ///< UTF-8; why the log cannot be relied on: not opened, not a file, cut off
    ErrorLogText text;
};

/// Reads the log at `path` while the library that writes it is still open. Only a log that this process itself holds
/// open is read, for one that could not be opened still holds what an earlier run wrote.
ErrorLogFile readErrorLog(const std::string& path);

} // namespace cli
