#include "cli/CheckedBundles.h"

#include "cli/ManifestDocument.h"
#include "cli/ManifestReading.h"
#include "cli/rules/ComponentRules.h"
#include "cli/rules/DependencyRules.h"
#include "cli/rules/FileRules.h"
#include "cli/rules/FormRules.h"
#include "cli/rules/HostRules.h"
#include "cli/rules/MenuRules.h"
#include "cli/rules/ModuleRules.h"
#include "cli/rules/Reasons.h"
#include "cli/rules/RuleTexts.h"
#include "cli/rules/ValueRules.h"

#include "host/LocaleText.h"
#include "loading/ModuleKind.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iterator>
#include <map>
#include <set>
#include <thread>
#include <tuple>

namespace cli {

namespace {

/// What all bundles have in common.
struct Surroundings
{
    RuleInput all;
    standalone::ModulesInMemory modules;
    unsigned machine = 0;
};

standalone::ModulesInMemory modulesOf(const Examination& examination)
{
    standalone::ModulesInMemory modules;
    for (const ExaminedBundle& bundle : examination.bundles) {
        for (const ExaminedComponent& component : bundle.components) {
            if (component.outcome == ComponentOutcome::kLoaded &&
                moduleKindOf(component.record.moduleName) == ModuleKind::kNative) {
                modules.add(localetext::narrow(component.record.moduleName));
            }
        }
    }
    return modules;
}

/// What stands in the bundle itself.
Findings lint(const ExaminedBundle& bundle, const Surroundings& surroundings)
{
    Findings findings;
    if (bundle.manifest.empty()) {
        return findings;
    }
    const ManifestDocument document = readManifestDocument(localetext::narrow(bundle.manifest));
    const ManifestReading reading = readingOf(document);
    const LintInput input{{bundle, document, reading}, surroundings.modules, surroundings.machine};
    if (!document.isMalformed) { // else the rest of it has not even been read
        addFormFindings(input, findings);
        addValueFindings(input, findings);
    }
    addFileFindings(input, findings);
    addModuleFindings(input, findings);
    return findings;
}

/// Whether `reason` only says that a file does not load.
bool isAboutTheFile(const Finding& reason)
{
    const Rule* const general[] = {&kComponentFails, &kFirstUseFails, &kLispFileMissing, &kMenuFileMissing,
                                   &kMenuNotConverted};
    return std::any_of(std::begin(general), std::end(general),
                       [&](const Rule* rule) { return rule->code == reason.rule->code; });
}

/// Whether `reason` says that a sound file does not load, for which only an engine can be at fault.
bool isAboutAnEngine(const Finding& reason)
{
    const ModuleKind kind = moduleKindOf(reason.subject);
    return (kind == ModuleKind::kLisp || kind == ModuleKind::kManaged) &&
           (reason.rule->code == kComponentFails.code || reason.rule->code == kFirstUseFails.code);
}

/// What keeps the bundle from loading, but for what `found` says more exactly.
void addReasons(const ExaminedBundle& bundle, Findings reasons, Findings& found)
{
    std::set<std::wstring> explained;
    for (const Finding& finding : found) {
        if (finding.rule->severity == Severity::kError && finding.rule->code.starts_with("KB8")) {
            explained.insert(finding.subject);
        }
    }
    for (Finding& reason : reasons) {
        const bool isAboutForm = reason.rule->code.starts_with("KB2"); // found already, with its notes
        if (isAboutForm || (isAboutTheFile(reason) && explained.contains(reason.subject))) {
            continue;
        }
        if (isAboutAnEngine(reason)) {
            reason.rule = &kEngineMissing;
            reason.what = "The engine for " + named(inBundle(bundle, reason.subject)) +
                          " is not installed here; nothing more can be told of this file.";
            reason.mend = "Install all engines with kestbundle, and check again.";
        }
        if (reason.rule->code == kMissingDependency.code) {
            reason.rule = &kDependencyElsewhere;
            reason.what = "The bundle depends on the UpgradeCode " + named(reason.subject) +
                          ", which no bundle that is checked has.";
            reason.mend = "See that the bundle with it is installed as well.";
            reason.found.clear();
            reason.expected.clear();
        }
        found.push_back(std::move(reason));
    }
}

/// `findings` with at most so many of each rule that people can still read them; the next one tells how many follow.
Findings fewOfEach(Findings findings)
{
    constexpr std::size_t kMostOfARule = 100;
    std::map<std::string_view, std::size_t> counts;
    for (const Finding& finding : findings) {
        ++counts[finding.rule->code];
    }
    std::map<std::string_view, std::size_t> kept;
    std::erase_if(findings, [&](Finding& finding) {
        const std::size_t number = ++kept[finding.rule->code];
        if (number == kMostOfARule + 1) {
            finding.what = std::to_string(counts[finding.rule->code] - kMostOfARule) +
                           " more findings of this kind are not shown.";
            finding.expected.clear();
            finding.found.clear();
            finding.mend = "Mend the others first.";
        }
        return number > kMostOfARule + 1;
    });
    return findings;
}

Findings findingsOf(const Surroundings& surroundings, const ExaminedBundle& bundle)
{
    Findings findings = lint(bundle, surroundings);
    addReasons(bundle, findReasons(surroundings.all, bundle, ManifestPlaces(bundle)), findings);
    std::stable_sort(findings.begin(), findings.end(), [](const Finding& one, const Finding& other) {
        return std::tie(one.place.line, one.place.column, one.rule->code) <
               std::tie(other.place.line, other.place.column, other.rule->code);
    });
    return fewOfEach(std::move(findings));
}

/// Calls `work` with each number below `count`, on as many threads as there are cores. The first exception ends it.
void forEachOnAllCores(std::size_t count, const std::function<void(std::size_t)>& work)
{
    std::atomic<std::size_t> next{0};
    std::atomic<bool> hasFailed{false};
    std::exception_ptr failure;
    const auto run = [&] {
        try {
            for (std::size_t index = next++; index < count && !hasFailed; index = next++) {
                work(index);
            }
        } catch (...) {
            if (!hasFailed.exchange(true)) {
                failure = std::current_exception();
            }
        }
    };
    {
        std::vector<std::jthread> threads;
        const std::size_t wanted = std::min<std::size_t>(std::max(1U, std::thread::hardware_concurrency()), count);
        for (std::size_t index = 1; index < wanted; ++index) {
            threads.emplace_back(run);
        }
        run();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

} // namespace

CheckedBundles checkBundles(const Examination& examination, unsigned machine, const OnBundleDone& onDone)
{
    CheckedBundles checked;
    checked.examination = &examination;
    checked.findings.resize(examination.bundles.size());
    const Surroundings surroundings{RuleInput(examination), modulesOf(examination), machine};
    forEachOnAllCores(examination.bundles.size(), [&](std::size_t index) {
        checked.findings[index] = findingsOf(surroundings, examination.bundles[index]);
        onDone();
    });
    return checked;
}

} // namespace cli
