#include "cli/LogAccount.h"

#include "cli/Shown.h"
#include "cli/rules/ComponentRules.h"
#include "cli/rules/Reasons.h"
#include "cli/rules/RequirementRules.h"
#include "cli/rules/SearchRules.h"
#include "manifest/BundleLogText.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <unordered_map>

namespace cli {

namespace {

struct Known
{
    LogProblem problem;
    const char* message;
    const Rule* rule; ///< null: what concerns the module
};

constexpr Known kKnown[] = {
    {LogProblem::kMalformed, bundlelogtext::kFileFormatError, &kMalformedManifest},
    {LogProblem::kProductVersion, bundlelogtext::kWrongProductVersion, &kWrongProductVersion},
    {LogProblem::kOS, bundlelogtext::kWrongOS, &kWrongOS},
    {LogProblem::kArchitecture, bundlelogtext::kWrongArchitecture, &kWrongArchitecture},
    {LogProblem::kPlatform, bundlelogtext::kWrongPlatform, &kWrongPlatform},
    {LogProblem::kLoadingFailed, bundlelogtext::kLoadingFailed, nullptr},
};

const Known* knownFor(const ErrorLogRecord& record)
{
    const auto* const found = std::find_if(std::begin(kKnown), std::end(kKnown), [&](const Known& known) {
        return !record.message.empty() && std::string_view(known.message).find(record.message) != std::string::npos;
    });
    return found == std::end(kKnown) ? nullptr : found;
}

/// Finds what stands behind records, in one examination.
class Comparison
{
public:
    explicit Comparison(const Examination& examined) : all(examined), examination(examined)
    {
        for (const ErrorLogRecord& record : examination.log.records) {
            isLoggedNow[record.path + '\n' + record.message] = true;
        }
        for (const ExaminedBundle& bundle : examination.bundles) {
            owners.emplace(pathInErrorLog(bundle.manifest), Owner{&bundle, L""});
            for (const ExaminedComponent& component : bundle.components) {
                const std::wstring& module = component.record.moduleName;
                owners.emplace(pathInErrorLog(module), Owner{&bundle, module});
            }
        }
    }

    LogEntry entryOf(const ErrorLogRecord& record)
    {
        LogEntry entry;
        entry.path = plainUtf8FromLocale(record.path);
        entry.message = plainUtf8FromLocale(record.message);
        const Known* const known = knownFor(record);
        if (known == nullptr) {
            return entry;
        }
        entry.problem = known->problem;
        const auto owner = owners.find(record.path);
        if (owner == owners.end()) {
            entry.standing = LogStanding::kGone;
            return entry;
        }
        entry.bundle = owner->second.bundle->folder;
        entry.standing =
            isLoggedNow.contains(record.path + '\n' + record.message) ? LogStanding::kStill : LogStanding::kNoLonger;
        if (entry.standing == LogStanding::kStill) {
            for (const Finding& finding : findingsOf(*owner->second.bundle)) {
                const bool fits = known->rule != nullptr ? finding.rule == known->rule
                                                         : finding.subject == owner->second.module &&
                                                               finding.rule->severity == Severity::kError;
                if (fits) {
                    entry.findings.push_back(finding);
                }
            }
        }
        return entry;
    }

private:
    struct Owner
    {
        const ExaminedBundle* bundle;
        std::wstring module; ///< empty: the manifest
    };

    const Findings& findingsOf(const ExaminedBundle& bundle)
    {
        const auto [found, isNew] = findings.try_emplace(&bundle);
        if (isNew) {
            found->second = findReasons(all, bundle, ManifestPlaces(bundle));
        }
        return found->second;
    }

    const RuleInput all;
    const Examination& examination;
    std::unordered_map<std::string, bool> isLoggedNow; ///< by path and message
    std::unordered_map<std::string, Owner> owners;     ///< by path, as the log shows it
    std::map<const ExaminedBundle*, Findings> findings;
};

} // namespace

const char* nameOf(LogProblem problem)
{
    constexpr const char* kNames[] = {"malformed", "product version", "OS",     "architecture",
                                      "platform",  "loading failed",  "unknown"};
    return kNames[static_cast<std::size_t>(problem)];
}

const char* nameOf(LogStanding standing)
{
    constexpr const char* kNames[] = {"still", "no longer", "gone", "unknown"};
    return kNames[static_cast<std::size_t>(standing)];
}

std::string meaningOf(LogProblem problem)
{
    switch (problem) {
    case LogProblem::kMalformed:
        return "The manifest is no well-formed XML; the bundle was dropped.";
    case LogProblem::kProductVersion:
        return "The host's product version is outside SeriesMin to SeriesMax; the bundle was dropped.";
    case LogProblem::kOS:
        return "The bundle requires another operating system; it was dropped.";
    case LogProblem::kArchitecture:
        return "The bundle requires another architecture, or names none; it was dropped.";
    case LogProblem::kPlatform:
        return "The bundle requires another host product; it was dropped.";
    case LogProblem::kLoadingFailed:
        return "This start-up component could not be loaded; the others of its bundle were still tried.";
    case LogProblem::kUnknown:
        break;
    }
    return "The autoloader writes no such line.";
}

std::string adviceFor(const LogEntry& entry)
{
    switch (entry.standing) {
    case LogStanding::kStill:
        break;
    case LogStanding::kNoLonger:
        return entry.problem == LogProblem::kLoadingFailed
                   ? "Nothing that shows from outside keeps it from loading now. What it does itself when it is loaded "
                     "shows with \"kestbundle run\"."
                   : "A start would not log this now: the bundle was mended since, or the host was another one.";
    case LogStanding::kGone:
        return "No bundle that is installed now has this path; it may have been removed or moved since.";
    case LogStanding::kUnknown:
        return "The log may be damaged, or another program has written into it.";
    }
    return entry.findings.empty() ? "\"kestbundle explain\" says more." : "";
}

std::vector<LogEntry> logEntries(const LogFile& log, const Examination& examination)
{
    Comparison comparison(examination);
    std::vector<LogEntry> entries;
    for (const ErrorLogRecord& record : log.text.records) {
        entries.push_back(comparison.entryOf(record));
    }
    return entries;
}

} // namespace cli
