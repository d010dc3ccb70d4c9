#include "cli/NewReport.h"

#include "cli/ReportLines.h"
#include "cli/Shown.h"

#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

/// Grows when a reader of the old document would misread the new one.
constexpr int kFormat = 1;

} // namespace

std::string newBundleText(const NewBundleReport& report)
{
    std::string text = "Made " + shown(report.folder) + "\n";
    for (const std::string& file : report.files) {
        text += "  " + file + "\n";
    }
    text += "Next\n";
    for (const NextStep& step : report.next) {
        text += labelled(step.kind, step.command);
    }
    return text;
}

std::string newBundleJson(const NewBundleReport& report)
{
    Json commands = Json::array();
    for (const NewBundleCommand& command : commandsOf(report.bundle)) {
        commands.push_back({{"name", plainUtf8(command.name)}, {"kind", nameOf(command.kind)}});
    }
    Json next = Json::array();
    for (const NextStep& step : report.next) {
        next.push_back({{"kind", step.kind}, {"command", step.command}});
    }
    const Json document = {{"format", kFormat},
                           {"version", KEST_VERSION},
                           {"exitStatus", 0},
                           {"folder", plainUtf8FromLocale(report.folder)},
                           {"name", plainUtf8(report.bundle.name)},
                           {"upgradeCode", plainUtf8(report.bundle.upgradeCode)},
                           {"productCode", plainUtf8(report.bundle.productCode)},
                           {"files", report.files},
                           {"commands", std::move(commands)},
                           {"next", std::move(next)}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
