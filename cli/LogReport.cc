#include "cli/LogReport.h"

#include "cli/FindingJson.h"
#include "cli/FindingText.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr char kSilence[] = "Much is never logged: bundles that wait for others, menus, commands. \"kestbundle list\" "
                            "says what becomes of\neach bundle.\n";

std::string entryText(const LogEntry& entry, bool hasColours)
{
    std::string text = "\n" + shownLine(entry.path) + "\n";
    text += entry.message.empty() ? "" : "  logged: " + shownLine(entry.message) + "\n";
    text += "  " + meaningOf(entry.problem) + "\n";
    if (const std::string advice = adviceFor(entry); !advice.empty()) {
        text += "  " + advice + "\n";
    }
    for (const Finding& finding : entry.findings) {
        text += findingText(finding, hasColours);
    }
    return text;
}

/// What there is to say about the log as a whole.
std::string stateText(const LogFile& log, std::size_t count)
{
    if (log.size == 0) {
        return "It is empty: a start has opened it and written nothing. The disk may be full.\n";
    }
    std::string text = "Begun " + shownLine(plainUtf8FromLocale(log.text.time)) + "; ";
    text += count == 0 ? "nothing was logged at that start.\n" : counted(count, "record", "records") + ".\n";
    if (!log.isWhole) {
        text += "It has " + std::to_string(log.size) + " bytes, more than any start writes; only its begin was read.\n";
    } else if (!log.text.isComplete) {
        text += "It ends in the middle of a line: the disk may be full, or a start is just under way.\n";
    }
    return text;
}

} // namespace

std::string logText(const LogFile& log, const std::vector<LogEntry>& entries, bool hasColours)
{
    std::string text = "Error log: " + shown(log.path) + "\n" + stateText(log, entries.size());
    for (const LogEntry& entry : entries) {
        text += entryText(entry, hasColours);
    }
    return text + "\n" + kSilence;
}

std::string logJson(const LogFile& log, const std::vector<LogEntry>& entries, int exitStatus)
{
    Json records = Json::array();
    for (const LogEntry& entry : entries) {
        const std::string advice = adviceFor(entry);
        records.push_back({{"path", entry.path},
                           {"message", entry.message},
                           {"problem", nameOf(entry.problem)},
                           {"meaning", meaningOf(entry.problem)},
                           {"standing", nameOf(entry.standing)},
                           {"advice", advice.empty() ? Json() : Json(advice)},
                           {"bundle", entry.bundle.empty() ? Json() : Json(plainUtf8(entry.bundle))},
                           {"findings", findingsJson(entry.findings)}});
    }
    const Json document = {{"format", 1},
                           {"version", KEST_VERSION},
                           {"exitStatus", exitStatus},
                           {"file", plainUtf8FromLocale(log.path)},
                           {"begun", log.size == 0 ? Json() : Json(plainUtf8FromLocale(log.text.time))},
                           {"isComplete", log.text.isComplete},
                           {"isWhole", log.isWhole},
                           {"size", log.size},
                           {"records", std::move(records)}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
