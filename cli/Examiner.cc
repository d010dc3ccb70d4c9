#include "cli/Examiner.h"

#include "cli/FreshManager.h"
#include "cli/MenuDifference.h"
#include "cli/MissingEngine.h"
#include "cli/NearBundles.h"
#include "cli/Shown.h"

#include "bundle/EntryPoints.h"
#include "host/Configuration.h"
#include "loading/ModuleKind.h"
#include "manifest/Bundle.h"
#include "standalone/CaughtError.h"
#include "standalone/Configuration.h"
#include "standalone/LispQueue.h"
#include "standalone/Rehearsal.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace cli {

namespace {

constexpr wchar_t kHostMenus[] = L"CUIX/LoadedCuix";
constexpr wchar_t kBundleMenus[] = L"CUIX/LoadedBundleCuix";

standalone::HostSettings rehearsing(standalone::HostSettings settings)
{
    settings.rehearses = true;
    return settings;
}

/// Puts the working directory back at its end: the Python loader leaves it at a script's folder.
class WorkingDirectory
{
public:
    WorkingDirectory() noexcept : folder(::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {}
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;
    ~WorkingDirectory()
    {
        if (folder >= 0 && ::fchdir(folder) == 0) {
            ::close(folder);
        }
    }

private:
    int folder;
};

/// The bundles that get their turn when menus are gathered, which leaves no trace of its own in bundles without menus:
/// the autoloader's order once more, with its condition that each UpgradeCode counts once.
std::set<const KestBundle*> bundlesWithMenuTurn(KestBundleManager& manager)
{
    std::set<const KestBundle*> bundles;
    std::set<std::wstring_view> placed;
    manager.attemptInDependencyOrder(
        {}, [&](const KestBundle& bundle) { return placed.contains(bundle.package.upgradeCode); },
        [&](const KestBundle& bundle) {
            bundles.insert(&bundle);
            return placed.insert(bundle.package.upgradeCode).second;
        });
    return bundles;
}

} // namespace

Examiner::Examiner(standalone::HostSettings settings)
    : host(rehearsing(std::move(settings)), [](const std::string& /*printed*/) {})
{
    facts.host = host.settings();
    const char* home = std::getenv("HOME");
    facts.home = home != nullptr ? home : "";
}

Examination Examiner::examine(const std::function<void(KestBundleManager&)>& bringMenusInStep)
{
    const WorkingDirectory kept;
    const FreshManager manager;
    try {
        start(*manager, bringMenusInStep);
    } catch (...) {
        facts.failure = standalone::describeCaughtError();
    }
    for (const auto& notice : host.journal().only<standalone::HostNotice>()) {
        facts.notices.push_back(notice.text);
    }
    takeReadings();
    takeMenus();
    takeLog();
    takeBundles(*manager);
    rehearseCommands(*manager);
    return std::move(facts);
}

void Examiner::start(KestBundleManager& manager, const std::function<void(KestBundleManager&)>& bringMenusInStep)
{
    standalone::Configuration& store = host.configuration();
    {
        const standalone::Configuration::Turn turn(store);
        facts.hostMenus.before = store.text(TarvixConfig::kMenus, kHostMenus);
        facts.bundleMenus.before = store.text(TarvixConfig::kMenus, kBundleMenus);
        bringMenusInStep(manager);
        facts.hostMenus.after = store.text(TarvixConfig::kMenus, kHostMenus);
        facts.bundleMenus.after = store.text(TarvixConfig::kMenus, kBundleMenus);
        rehearseAnotherUpdate(manager);
    }
    for (const KestBundle* bundle : manager.bundles) {
        if (bundle->isLoad) {
            menusOnly.insert(bundle);
        }
    }
    const std::size_t begin = host.journal().size();
    excute();
    atStartup = seenSince(begin);
    facts.commands.insert(manager.commandMap.begin(), manager.commandMap.end());
}

/// An update works on what the one before it has left, and the first is often the one that still goes well.
void Examiner::rehearseAnotherUpdate(KestBundleManager& manager)
{
    standalone::Configuration& store = host.configuration();
    manager.writeCuixToConfig(facts.bundleMenus.after.value_or(L""));
    facts.hostMenus.afterAnother = store.text(TarvixConfig::kMenus, kHostMenus);
    facts.bundleMenus.afterAnother = store.text(TarvixConfig::kMenus, kBundleMenus);
}

void Examiner::takeReadings()
{
    for (auto& read : host.journal().only<standalone::ManifestRead>()) {
        readings.insert_or_assign(read.path, read);
    }
}

void Examiner::takeMenus()
{
    for (auto& conversion : host.journal().only<standalone::MenuConversion>()) {
        conversions.insert_or_assign(conversion.source, conversion);
    }
    for (std::wstring& menu : menuEntries(facts.bundleMenus.after)) {
        registeredMenus.insert(std::move(menu));
    }
}

void Examiner::takeLog()
{
    facts.log = parseErrorLog(host.rehearsal()->written(standalone::userConfigurationFolder() + "/BundleErrorLog.txt"));
    for (const ErrorLogRecord& record : facts.log.records) {
        if (record.message == loadingFailedMessage()) {
            failedPaths.insert(record.path);
        } else {
            logged[record.path].push_back(record.message);
        }
    }
}

void Examiner::takeBundles(KestBundleManager& manager)
{
    const std::set<const KestBundle*> withMenuTurn = bundlesWithMenuTurn(manager);
    auto kept = std::find_if(manager.bundles.begin(), manager.bundles.end(),
                             [](const KestBundle* bundle) { return !bundle->xmlPath.empty(); });
    for (std::size_t index = 0; index < std::min(manager.bundlePaths.size(), manager.manifestPaths.size()); ++index) {
        ExaminedBundle bundle;
        bundle.folder = manager.bundlePaths[index];
        bundle.manifest = manager.manifestPaths[index];
        bundle.read = readings[bundle.manifest];
        if (const auto found = logged.find(pathInErrorLog(bundle.manifest)); found != logged.end()) {
            bundle.logged = found->second;
        }
        if (kept != manager.bundles.end() && (*kept)->xmlPath == bundle.manifest) {
            bundle.hadMenuTurn = withMenuTurn.contains(*kept);
            take(bundle, **kept++);
        } else { // its records are gone with it: read once more, as far as the autoloader read
            KestBundle dropped(bundle.folder, bundle.manifest);
            dropped.parseXml();
            take(bundle, dropped);
            bundle.state = dropped.getIsReadError() ? BundleState::kMalformed : BundleState::kRequirementNotMet;
        }
        facts.bundles.push_back(std::move(bundle));
    }
}

void Examiner::take(ExaminedBundle& bundle, const KestBundle& read)
{
    bundle.records = {read.package, read.company, read.runtime, read.dependentBundles};
    for (const KestComponentEntry& entry : read.components) {
        ExaminedComponent component;
        component.record = entry;
        judge(component, read.isLoad);
        bundle.components.push_back(std::move(component));
    }
    bundle.state = stateOf(bundle, read);
}

BundleState Examiner::stateOf(const ExaminedBundle& bundle, const KestBundle& kept) const
{
    if (!bundle.read.opened) {
        return BundleState::kUnreadable;
    }
    if (menusOnly.contains(&kept)) {
        return BundleState::kMenusOnly;
    }
    if (kept.getIsLoad()) {
        const bool hasFailed = std::any_of(bundle.components.begin(), bundle.components.end(),
                                           [](const auto& one) { return one.outcome == ComponentOutcome::kFailed; });
        return hasFailed ? BundleState::kLoadedWithFailures : BundleState::kLoaded;
    }
    const auto isSatisfied = [&](const KestDependentBundle& dependency) {
        const auto& loaded = kept.manager->loadedStatus;
        return std::any_of(loaded.begin(), loaded.end(),
                           [&](const auto& status) { return status.upgradeCode == dependency.upgradeCode; });
    };
    const auto& dependencies = kept.dependentBundles;
    return std::all_of(dependencies.begin(), dependencies.end(), isSatisfied) ? BundleState::kKept
                                                                              : BundleState::kWaiting;
}

void Examiner::judge(ExaminedComponent& component, bool isReached)
{
    const KestComponentEntry& entry = component.record;
    if (entry.loadsAtStartup()) {
        const auto found = conversions.find(entry.moduleName);
        if (found != conversions.end() && (found->second.converted.empty() || isRegistered(found->second.converted))) {
            component.menu = found->second.converted;
            component.problem = found->second.problem;
            component.outcome = component.menu.empty() ? ComponentOutcome::kMenuFailed : ComponentOutcome::kMenu;
            return;
        }
        if (isRegistered(entry.moduleName)) {
            component.menu = entry.moduleName;
            component.outcome = ComponentOutcome::kMenu;
            return;
        }
    }
    if (!isReached) {
        return;
    }
    if (entry.loadsAtStartup()) {
        component.outcome = startupOutcome(component);
        component.problem =
            component.outcome == ComponentOutcome::kFailed ? problemOf(entry, atStartup) : std::string();
    } else {
        component.outcome = entry.loadsOnCommand() ? ComponentOutcome::kOnDemand : ComponentOutcome::kNeither;
    }
}

bool Examiner::isRegistered(const std::wstring& menu) const
{
    if (menu.find(L';') == std::wstring::npos) {
        return !menu.empty() && registeredMenus.contains(menu); // empty entries stand for no menu
    }
    // Such a path is stored as it is, and read back as several entries.
    return (L";" + facts.bundleMenus.after.value_or(L"") + L";").find(L";" + menu + L";") != std::wstring::npos;
}

ComponentOutcome Examiner::startupOutcome(const ExaminedComponent& component) const
{
    if (failedPaths.contains(pathInErrorLog(component.record.moduleName))) {
        return ComponentOutcome::kFailed;
    }
    // Of a LISP file only the expression is seen, in which its path may be another one.
    const bool isSeen = atStartup.contains(component.record.moduleName) ||
                        moduleKindOf(component.record.moduleName) == ModuleKind::kLisp;
    return isSeen ? ComponentOutcome::kLoaded : ComponentOutcome::kPassedOver;
}

void Examiner::rehearseCommands(KestBundleManager& manager)
{
    std::unordered_map<std::wstring, std::vector<std::wstring>> namesByModule;
    for (const auto& [name, module] : facts.commands) {
        if (!name.empty()) {
            namesByModule[module].push_back(name);
        }
    }
    for (ExaminedBundle& bundle : facts.bundles) {
        for (ExaminedComponent& component : bundle.components) {
            const auto names = namesByModule.find(component.record.moduleName);
            if (component.outcome != ComponentOutcome::kOnDemand || names == namesByModule.end()) {
                continue;
            }
            component.commands = names->second;
            component.onDemand = rehearseCommand(manager, component.commands.front(), component.record);
        }
    }
}

OnDemandLoad Examiner::rehearseCommand(KestBundleManager& manager, const std::wstring& name,
                                       const KestComponentEntry& entry)
{
    const std::size_t begin = host.journal().size();
    try {
        manager.loadCommandBundle(name.c_str());
    } catch (...) {
        return {false, standalone::describeCaughtError()};
    }
    const SeenByPath seen = seenSince(begin); // one at most: nothing runs that could load others
    if (!seen.empty()) {
        return {seen.begin()->second.isLoaded, seen.begin()->second.problem};
    }
    const auto version = manager.pythonVersionMap.find(entry.moduleName);
    const bool isAnothersFault =
        version != manager.pythonVersionMap.end() && version->second.empty() && !entry.pythonVersion.empty();
    return {false,
            isAnothersFault ? "an earlier component with this script has no PythonVersion" : problemOf(entry, seen)};
}

Examiner::SeenByPath Examiner::seenSince(std::size_t position)
{
    SeenByPath seen;
    for (const standalone::JournalEntry& entry : host.journal().since(position)) {
        if (const auto* module = std::get_if<standalone::ModuleLoad>(&entry)) {
            seen.insert_or_assign(module->path, Seen{module->loaded, module->problem});
        } else if (const auto* script = std::get_if<standalone::ScriptLoad>(&entry)) {
            seen.insert_or_assign(script->path, Seen{script->loaded, script->problem});
        } else if (const auto* queued = std::get_if<standalone::ExpressionQueued>(&entry)) {
            seen.insert_or_assign(standalone::pathLoadedBy(queued->expression),
                                  Seen{queued->accepted, withRemedy(queued->problem)});
        }
    }
    return seen;
}

std::string Examiner::problemOf(const KestComponentEntry& entry, const SeenByPath& seen)
{
    if (const auto found = seen.find(entry.moduleName); found != seen.end()) {
        return found->second.problem;
    }
    if (moduleKindOf(entry.moduleName) == ModuleKind::kPython && !entry.pythonVersion.empty()) {
        return pythonProblem(plainUtf8FromLocale(entry.pythonVersion));
    }
    const auto& engines = host.journal().only<standalone::EngineOpen>();
    return moduleKindOf(entry.moduleName) == ModuleKind::kManaged && !engines.empty()
               ? withRemedy(engines.back().problem)
               : "";
}

Examination examineInstalled(standalone::HostSettings settings)
{
    Examiner examiner(std::move(settings));
    Examination examination = examiner.examine([](KestBundleManager& /*manager*/) { excuteCuix(); });
    addRoots(examination);
    return examination;
}

Examination examineFolders(standalone::HostSettings settings, const std::vector<std::wstring>& folders,
                           OtherBundles others)
{
    std::vector<std::wstring> none;
    Examiner examiner(std::move(settings));
    Examination examination = examiner.examine([&](KestBundleManager& manager) {
        for (const std::wstring& folder : folders) {
            if (manager.fetchXmlPath(folder)) {
                manager.bundlePaths.emplace_back(folder);
            } else {
                none.push_back(folder);
            }
        }
        if (manager.collectBundle()) {
            if (others == OtherBundles::kLoaded) {
                addOtherBundles(manager);
            }
            manager.loadBundleCuix();
        } else {
            manager.writeCuixToConfig({});
        }
    });
    for (std::wstring& folder : none) {
        ExaminedBundle bundle;
        bundle.folder = std::move(folder);
        examination.bundles.push_back(std::move(bundle));
    }
    return examination;
}

} // namespace cli
