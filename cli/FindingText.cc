#include "cli/FindingText.h"

#include "cli/ReportLines.h"

#include <algorithm>

namespace cli {

namespace {

const char* colourOf(Severity severity)
{
    switch (severity) {
    case Severity::kError:
        return "\x1B[31m";
    case Severity::kWarning:
        return "\x1B[33m";
    case Severity::kNote:
        break;
    }
    return "\x1B[36m";
}

std::string detail(const std::string& label, const std::string& text)
{
    constexpr std::size_t kColumn = 10;
    return text.empty() ? "" : "    " + label + std::string(kColumn - label.size(), ' ') + text + "\n";
}

} // namespace

std::string severityText(Severity severity, bool hasColours)
{
    const std::string name = nameOf(severity);
    return hasColours ? colourOf(severity) + name + "\x1B[0m" : name;
}

std::string placeText(const Place& place, const std::wstring& bundle)
{
    if (place.file.empty() || place.file == bundle) {
        return "";
    }
    const std::wstring folder = bundle + L"/";
    std::string text =
        shown(!bundle.empty() && place.file.starts_with(folder) ? place.file.substr(folder.size()) : place.file);
    if (place.line > 0) {
        text += ":" + std::to_string(place.line);
        text += place.column > 0 ? ":" + std::to_string(place.column) : "";
    }
    return text;
}

std::string findingText(const Finding& finding, bool hasColours)
{
    const std::string place = placeText(finding.place, finding.bundle);
    return "  " + severityText(finding.rule->severity, hasColours) + " " + std::string(finding.rule->code) + " " +
           std::string(finding.rule->name) + (place.empty() ? "" : ", " + place) + "\n    " + finding.what + "\n" +
           detail("expected", finding.expected) + detail("found", finding.found) + detail("change", finding.mend);
}

std::string findingLine(const Finding& finding, bool hasColours)
{
    const std::string place = placeText(finding.place, finding.bundle);
    return "  " + severityText(finding.rule->severity, hasColours) + " " + std::string(finding.rule->code) + ": " +
           (place.empty() ? "" : place + ": ") + finding.what + "\n";
}

std::string findingCounts(const Findings& findings)
{
    std::string text;
    const auto add = [&](Severity severity, const char* one, const char* many) {
        const auto count =
            static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), [&](const Finding& finding) {
                return finding.rule->severity == severity;
            }));
        if (count > 0) {
            text += (text.empty() ? "" : ", ") + counted(count, one, many);
        }
    };
    add(Severity::kError, "error", "errors");
    add(Severity::kWarning, "warning", "warnings");
    add(Severity::kNote, "note", "notes");
    return text;
}

} // namespace cli
