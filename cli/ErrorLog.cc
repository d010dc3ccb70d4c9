#include "cli/ErrorLog.h"

#include "bundle/LogFormat.h"
#include "host/LocaleText.h"
#include "manifest/BundleLogText.h"

#include <algorithm>

namespace cli {

namespace {

constexpr std::string_view kMessages[] = {bundlelogtext::kFileFormatError, bundlelogtext::kWrongProductVersion,
                                          bundlelogtext::kWrongOS,         bundlelogtext::kWrongArchitecture,
                                          bundlelogtext::kWrongPlatform,   bundlelogtext::kLoadingFailed};

/// A message without what joins it to a path and without its line end.
std::string_view bareMessage(std::string_view message)
{
    message.remove_prefix(message.find_first_not_of(": "));
    message.remove_suffix(1);
    return message;
}

/// `line`, with its line end, as a path and one of the known messages.
ErrorLogRecord recordOf(std::string_view line)
{
    for (const std::string_view message : kMessages) {
        if (line.ends_with(message)) {
            return {std::string(line.substr(0, line.size() - message.size())), std::string(bareMessage(message))};
        }
    }
    line.remove_suffix(line.ends_with('\n') ? 1 : 0);
    return {std::string(line), ""};
}

} // namespace

ErrorLogText parseErrorLog(std::string_view bytes)
{
    // A path may hold line ends, so that records are told apart by the whole group that stands before each.
    const std::string separator = "\n" + std::string(bundlelogtext::kSplitLine) + "\n";
    ErrorLogText log;
    const std::size_t timeEnd = bytes.find('\n');
    log.time = bytes.substr(0, timeEnd);
    log.isComplete = timeEnd != std::string_view::npos && timeEnd > 0 && bytes.ends_with('\n');
    std::size_t at = bytes.find(separator);
    while (at != std::string_view::npos) {
        const std::size_t begin = at + separator.size();
        at = bytes.find(separator, begin);
        log.records.push_back(recordOf(bytes.substr(begin, at == std::string_view::npos ? at : at - begin)));
    }
    return log;
}

std::string_view loadingFailedMessage()
{
    return bareMessage(bundlelogtext::kLoadingFailed);
}

std::string pathInErrorLog(std::wstring_view path)
{
    return localetext::narrow(formatLogText(path));
}

} // namespace cli
