// From the host's journal to the facts of a report.
#include "cli/ManifestComponents.h"
#include "cli/MenuDifference.h"
#include "cli/MissingEngine.h"
#include "cli/RunReport.h"

#include "host/LocaleText.h"
#include "standalone/CommandTable.h"
#include "standalone/Host.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace cli {

namespace {

/// A time as it was measured. An engine that tells a wrong time of its start spoils that, and the one of the load that
/// it was part of: those are 0.
double soundTime(double milliseconds)
{
    return std::isfinite(milliseconds) && milliseconds > 0 ? milliseconds : 0;
}

std::wstring folderOfManifest(const std::wstring& manifest)
{
    return manifest.substr(0, std::min(manifest.rfind(L'/'), manifest.size()));
}

} // namespace

ReportCollector::ReportCollector(RunReport& target, standalone::Host& source) : report(target), host(source) {}

void ReportCollector::collect(std::optional<std::size_t> during,
                              const std::vector<standalone::LispQueue::Evaluation>& evaluations)
{
    command = during;
    const std::size_t firstExpression = report.expressions.size();
    const standalone::Journal& journal = host.journal();
    for (; position < journal.size(); ++position) {
        std::visit([this](const auto& entry) { take(entry); }, journal.at(position));
    }
    // Expressions are evaluated in the order in which they were accepted.
    auto next = evaluations.begin();
    for (std::size_t i = firstExpression; i < report.expressions.size() && next != evaluations.end(); ++i) {
        ExpressionFacts& facts = report.expressions[i].entry;
        if (facts.queued.accepted && facts.queued.expression == next->expression) {
            facts.evaluated = true;
            facts.succeeded = next->succeeded;
            facts.problem = next->problem;
            facts.milliseconds = soundTime(next->milliseconds);
            ++next;
        }
    }
}

void ReportCollector::take(const standalone::ManifestRead& read)
{
    BundleFacts bundle;
    bundle.folder = folderOfManifest(read.path);
    bundle.manifest = read.path;
    bundle.read = read;
    bundleByFolder.try_emplace(bundle.folder, report.bundles.size());
    report.bundles.push_back(std::move(bundle));
}

void ReportCollector::take(const standalone::ModuleLoad& load)
{
    const auto bundle = bundleOf(load.path);
    count(bundle, load.loaded ? &BundleActivity::modulesLoaded : &BundleActivity::componentsFailed);
    report.modules.push_back(traced(load, bundle));
    report.modules.back().entry.milliseconds = soundTime(load.milliseconds);
}

void ReportCollector::take(const standalone::ScriptLoad& load)
{
    const auto bundle = bundleOf(load.path);
    count(bundle, load.loaded ? &BundleActivity::scriptsLoaded : &BundleActivity::componentsFailed);
    ScriptFacts facts{load.path, load.loaded, load.problem, soundTime(load.milliseconds)};
    if (!load.loaded && load.problem.empty()) {
        facts.problem = "the engine has not said what became of it";
        facts.milliseconds.reset();
    }
    report.scripts.push_back(traced(std::move(facts), bundle));
}

void ReportCollector::take(const standalone::EngineStart& start)
{
    report.engineStarts.push_back(traced(standalone::EngineStart{start.description, soundTime(start.milliseconds)}));
}

void ReportCollector::take(const standalone::EngineOpen& engine)
{
    report.engines.push_back(traced(engine));
    report.engines.back().entry.problem = withRemedy(engine.problem);
}

void ReportCollector::take(const standalone::ExpressionQueued& queued)
{
    constexpr std::wstring_view kOpening = L"(LOAD \"";
    std::optional<std::size_t> bundle;
    if (queued.expression.starts_with(kOpening)) {
        bundle = bundleOf(std::wstring_view(queued.expression).substr(kOpening.size()));
    }
    if (queued.accepted) {
        count(bundle, &BundleActivity::expressionsQueued);
    }
    report.expressions.push_back(traced(ExpressionFacts{queued, false, false, "", 0}, bundle));
    report.expressions.back().entry.queued.problem = withRemedy(queued.problem);
}

void ReportCollector::take(const standalone::CommandAnnounced& announced)
{
    report.announced.push_back(traced(announced));
}

void ReportCollector::take(const standalone::CommandRegistered& registered)
{
    if (host.commands().moduleOf(registered.name) != registered.module) {
        return; // taken back: its module failed
    }
    const auto bundle = bundleOf(localetext::widen(registered.module));
    count(bundle, &BundleActivity::commandsRegistered);
    report.registered.push_back(traced(registered, bundle));
}

void ReportCollector::take(const standalone::MenuConversion& conversion)
{
    const auto bundle = bundleOf(conversion.source);
    if (conversion.converted.empty()) {
        count(bundle, &BundleActivity::componentsFailed);
    }
    report.menuConversions.push_back(traced(conversion, bundle));
}

void ReportCollector::take(const standalone::ConfigurationWrite& write)
{
    report.configurationWrites.push_back(write);
}

void ReportCollector::take(const standalone::HostNotice& notice)
{
    report.notices.push_back(notice);
}

std::optional<std::size_t> ReportCollector::bundleOf(std::wstring_view path)
{
    for (std::size_t slash = path.find(L'/', 1); slash != std::wstring::npos; slash = path.find(L'/', slash + 1)) {
        const auto found = bundleByFolder.find(std::wstring(path.substr(0, slash)));
        if (found != bundleByFolder.end()) {
            return found->second;
        }
    }
    return std::nullopt;
}

void ReportCollector::count(std::optional<std::size_t> bundle, std::size_t BundleActivity::*what)
{
    if (bundle) {
        ++(report.bundles[*bundle].activity.*what);
    }
}

void ReportCollector::countFromLog()
{
    std::set<std::string> counted; // from the journal
    for (const auto& module : report.modules) {
        counted.insert(pathInErrorLog(module.entry.path));
    }
    for (const auto& script : report.scripts) {
        counted.insert(pathInErrorLog(script.entry.path));
    }
    for (const std::string& path : report.failedComponents()) {
        if (!counted.contains(path)) {
            count(bundleOf(localetext::widen(path)), &BundleActivity::componentsFailed);
        }
    }
}

void ReportCollector::countMenus()
{
    std::unordered_map<std::wstring_view, std::wstring_view> sources;
    for (const auto& conversion : report.menuConversions) {
        if (!conversion.entry.converted.empty()) {
            sources[conversion.entry.converted] = conversion.entry.source;
        }
    }
    for (const std::wstring& entry : menuEntries(report.menus.after)) {
        const auto converted = sources.find(entry);
        count(bundleOf(converted != sources.end() ? converted->second : std::wstring_view(entry)),
              &BundleActivity::menus);
    }
}

void ReportCollector::judgeBundles()
{
    countFromLog();
    countMenus();
    std::unordered_map<std::string, std::vector<std::string>> reasonsByManifest;
    for (const ErrorLogRecord& record : report.log.text.records) {
        auto& reasons = reasonsByManifest[record.path];
        if (std::find(reasons.begin(), reasons.end(), record.message) == reasons.end()) {
            reasons.push_back(record.message);
        }
    }
    for (BundleFacts& bundle : report.bundles) {
        bundle.activity = report.bundles[bundleByFolder.at(bundle.folder)].activity; // a folder may be found twice
        if (const auto found = reasonsByManifest.find(pathInErrorLog(bundle.manifest));
            found != reasonsByManifest.end()) {
            bundle.reasons = found->second;
        }
        if (!bundle.reasons.empty() || bundle.read.malformed) {
            bundle.state = BundleFacts::State::kDropped;
        } else if (!bundle.read.opened) {
            bundle.state = BundleFacts::State::kUnreadable;
        } else if (!report.log.problem.empty() && !bundle.isActive()) {
            bundle.state = BundleFacts::State::kUnknown;
        }
    }
    attributeAnnouncements();
}

/// Reads the manifest of `bundle` once more; that this fails now must not pass for a manifest that names nothing.
void ReportCollector::readComponents(BundleFacts& bundle)
{
    const std::size_t entry = host.journal().size();
    bundle.components = readManifestComponents(bundle.manifest);
    const auto again = std::get<standalone::ManifestRead>(host.journal().at(entry));
    if (bundle.read.problem.empty() && !again.problem.empty()) {
        report.notices.push_back({"The manifest \"" + standalone::displayable(std::wstring_view(bundle.manifest)) +
                                  "\" could not be read once more: " + again.problem +
                                  "; what it announces is not all in this report"});
    }
}

void ReportCollector::attributeAnnouncements()
{
    std::unordered_map<std::wstring, std::optional<std::size_t>> ownerByName;
    for (const auto& announced : report.announced) {
        ownerByName.try_emplace(announced.entry.name);
    }
    for (std::size_t index = 0; index < report.bundles.size(); ++index) {
        BundleFacts& bundle = report.bundles[index];
        if (bundle.state != BundleFacts::State::kKept && bundle.state != BundleFacts::State::kUnknown) {
            continue;
        }
        readComponents(bundle);
        std::set<std::wstring_view> seen;
        for (const ManifestComponent& component : bundle.components) {
            for (const std::wstring& name : component.commands) {
                const auto owner = ownerByName.find(name);
                if (owner != ownerByName.end() && seen.insert(name).second) {
                    // Of several that declare it, the first one's is loaded.
                    owner->second = owner->second.value_or(index);
                    bundle.announced.push_back(name);
                    bundle.state = BundleFacts::State::kKept;
                }
            }
        }
    }
    for (auto& announced : report.announced) {
        announced.bundle = ownerByName[announced.entry.name];
    }
    position = host.journal().size(); // the second reading is ours, not the autoloader's
}

} // namespace cli
