#include "cli/CheckReport.h"

#include "cli/Shown.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string_view>
#include <system_error>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

/// `path`, UTF-8, as a reference in a URI: everything but letters, digits and a few marks is encoded.
std::string uriOf(const std::string& path)
{
    constexpr std::string_view kPlain = "-._~/";
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string uri = path.starts_with('/') ? "file://" : "";
    for (const char one : path) {
        const auto byte = static_cast<unsigned char>(one);
        const bool isLetter = (one >= 'A' && one <= 'Z') || (one >= 'a' && one <= 'z') || (one >= '0' && one <= '9');
        if (isLetter || kPlain.find(one) != std::string_view::npos) {
            uri += one;
        } else {
            uri += {'%', kDigits[byte >> 4], kDigits[byte & 0xF]};
        }
    }
    return uri;
}

/// The path of a file as it is given, without a "./" in front.
std::string referenceTo(const CheckReport& report, const std::wstring& file)
{
    std::string path = plainUtf8(report.targets.asGiven(file));
    while (path.starts_with("./")) {
        path.erase(0, 2);
    }
    return uriOf(path);
}

Json ruleJson(const Rule& rule)
{
    return {{"id", rule.code},
            {"name", rule.name},
            {"shortDescription", {{"text", rule.title}}},
            {"defaultConfiguration", {{"level", nameOf(rule.severity)}}}};
}

Json resultJson(const CheckReport& report, const Finding& finding, std::size_t ruleIndex)
{
    const Place place = placeOf(finding);
    Json physical = {{"artifactLocation", {{"uri", referenceTo(report, place.file)}}}};
    if (place.line > 0) {
        physical["region"] = {{"startLine", place.line}};
        if (place.column > 0) {
            physical["region"]["startColumn"] = place.column;
        }
    }
    const bool isRaised = report.isStrict && finding.rule->severity == Severity::kWarning;
    return {{"ruleId", finding.rule->code},
            {"ruleIndex", ruleIndex},
            {"level", nameOf(isRaised ? Severity::kError : finding.rule->severity)},
            {"message", {{"text", finding.what + (finding.mend.empty() ? "" : " " + finding.mend)}}},
            {"locations", Json::array({Json{{"physicalLocation", std::move(physical)}}})}};
}

} // namespace

std::string checkSarif(const CheckReport& report)
{
    std::vector<const Rule*> rules; // those that found something
    Json ruleList = Json::array();
    Json results = Json::array();
    for (const Findings& ofBundle : report.checked.findings) {
        for (const Finding& finding : ofBundle) {
            const auto found = std::find_if(rules.begin(), rules.end(),
                                            [&](const Rule* rule) { return rule->code == finding.rule->code; });
            const auto index = static_cast<std::size_t>(found - rules.begin());
            if (found == rules.end()) {
                rules.push_back(finding.rule);
                ruleList.push_back(ruleJson(*finding.rule));
            }
            results.push_back(resultJson(report, finding, index));
        }
    }
    const Json driver = {{"name", "kestbundle"}, {"version", KEST_VERSION}, {"rules", std::move(ruleList)}};
    Json run = {{"tool", {{"driver", driver}}}, {"columnKind", "unicodeCodePoints"}, {"results", std::move(results)}};
    const Json document = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                           {"version", "2.1.0"},
                           {"runs", Json::array({std::move(run)})}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
