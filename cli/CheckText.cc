#include "cli/CheckReport.h"

#include "cli/FindingText.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"

#include <algorithm>

namespace cli {

namespace {

std::string findingLines(const CheckReport& report, const Finding& finding, bool hasColours)
{
    const Place place = placeOf(finding);
    std::string text = shownLine(plainUtf8(report.targets.asGiven(place.file)));
    if (place.line > 0) {
        text += ":" + std::to_string(place.line);
        text += place.column > 0 ? ":" + std::to_string(place.column) : "";
    }
    text += ": " + severityText(finding.rule->severity, hasColours) + ": " + finding.what + " [" +
            std::string(finding.rule->code) + " " + std::string(finding.rule->name) + "]\n";
    return finding.mend.empty() ? text : text + "    " + finding.mend + "\n";
}

std::string summary(const CheckReport& report)
{
    const auto& all = report.checked.findings;
    const auto faulty = static_cast<std::size_t>(
        std::count_if(all.begin(), all.end(), [](const Findings& ofBundle) { return !ofBundle.empty(); }));
    std::string text = counted(all.size(), "bundle", "bundles") + " checked: ";
    if (faulty == 0) {
        return text + "nothing found.\n";
    }
    Findings every;
    for (const Findings& ofBundle : all) {
        every.insert(every.end(), ofBundle.begin(), ofBundle.end());
    }
    text += findingCounts(every) + " in " + (all.size() == 1 ? "it" : std::to_string(faulty) + " of them") + ".";
    return text + (report.isStrict ? " Warnings count as errors.\n" : "\n");
}

} // namespace

std::size_t countOf(const CheckedBundles& checked, Severity severity)
{
    std::size_t count = 0;
    for (const Findings& ofBundle : checked.findings) {
        count += static_cast<std::size_t>(std::count_if(
            ofBundle.begin(), ofBundle.end(), [&](const Finding& one) { return one.rule->severity == severity; }));
    }
    return count;
}

Place placeOf(const Finding& finding)
{
    return finding.place.file.empty() ? Place{finding.bundle, 0, 0} : finding.place;
}

std::string checkText(const CheckReport& report, bool hasColours)
{
    std::string text;
    for (const Findings& ofBundle : report.checked.findings) {
        for (const Finding& finding : ofBundle) {
            text += findingLines(report, finding, hasColours);
        }
    }
    return text + summary(report);
}

} // namespace cli
