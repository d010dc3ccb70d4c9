#include "cli/FindingJson.h"

#include "cli/JsonTexts.h"
#include "cli/Shown.h"

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

Json numberOrNull(int number)
{
    return number == 0 ? Json() : Json(number);
}

} // namespace

Json findingJson(const Finding& finding)
{
    return {{"code", finding.rule->code},
            {"name", finding.rule->name},
            {"severity", nameOf(finding.rule->severity)},
            {"bundle", orNull(plainUtf8(finding.bundle))},
            {"subject", orNull(plainUtf8(finding.subject))},
            {"file", orNull(plainUtf8(finding.place.file))},
            {"line", numberOrNull(finding.place.line)},
            {"column", numberOrNull(finding.place.column)},
            {"what", finding.what},
            {"expected", orNull(finding.expected)},
            {"found", orNull(finding.found)},
            {"change", orNull(finding.mend)}};
}

Json findingsJson(const Findings& findings)
{
    Json list = Json::array();
    for (const Finding& finding : findings) {
        list.push_back(findingJson(finding));
    }
    return list;
}

} // namespace cli
