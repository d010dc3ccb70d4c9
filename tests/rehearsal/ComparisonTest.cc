// What a rehearsal foretells is what comes about: random bundle trees, each rehearsed and then loaded for real.
#include "tests/rehearsal/MenuCheck.h"
#include "tests/rehearsal/RandomTree.h"
#include "tests/rehearsal/RehearsalFolder.h"

#include "bundle/BundleManager.h"
#include "bundle/EntryPoints.h"
#include "cli/Examination.h"
#include "cli/rules/Reasons.h"
#include "host/Configuration.h"
#include "host/LocaleText.h"
#include "manifest/Bundle.h"
#include "standalone/Configuration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>

namespace rehearsal {

namespace {

namespace fs = std::filesystem;
using cli::BundleState;
using localetext::narrow;
using localetext::widen;

/// What can be said of a start, whether it was rehearsed or real.
struct Outcome
{
    std::vector<std::string> states; ///< "state folder", in the order found
    std::string log;                 ///< behind its time line
    std::vector<std::string> menus;  ///< the two stored lists; "-" for none
    std::map<std::string, std::string> commands;
    std::map<std::string, bool> onDemand; ///< whether the first use of a command loads its component

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome)
{
    for (const std::string& state : outcome.states) {
        stream << state << "\n";
    }
    stream << "log:\n" << outcome.log;
    for (const std::string& menu : outcome.menus) {
        stream << "menus: " << menu << "\n";
    }
    for (const auto& [name, module] : outcome.commands) {
        stream << "command \"" << name << "\" of " << module << "\n";
    }
    for (const auto& [name, isLoaded] : outcome.onDemand) {
        stream << "first use of \"" << name << (isLoaded ? "\" loads\n" : "\" fails\n");
    }
    return stream;
}

std::string orNone(const std::optional<std::wstring>& list)
{
    return list ? narrow(*list) : "-";
}

std::string contentOf(const std::string& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// Everything below `folder`, with its content.
std::map<std::string, std::string> treeIn(const fs::path& folder)
{
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        tree[entry.path()] = entry.is_symlink()        ? fs::read_symlink(entry.path()).string()
                             : entry.is_regular_file() ? contentOf(entry.path())
                                                       : "folder";
    }
    return tree;
}

/// Whether nothing comes of `component`, or not what it was meant for.
bool isIdle(const cli::ExaminedComponent& component)
{
    switch (component.outcome) {
    case cli::ComponentOutcome::kFailed:
    case cli::ComponentOutcome::kPassedOver:
    case cli::ComponentOutcome::kMenuFailed:
    case cli::ComponentOutcome::kNeither:
        return true;
    case cli::ComponentOutcome::kOnDemand:
        return !component.onDemand || !component.onDemand->isLoaded;
    case cli::ComponentOutcome::kNotReached:
    case cli::ComponentOutcome::kLoaded:
    case cli::ComponentOutcome::kMenu:
        break;
    }
    return false;
}

/// Whatever does not load has a reason: each bundle, each component of a loaded one, and each command that another
/// module has.
void expectReasons(const cli::Examination& examination)
{
    std::map<std::wstring, std::set<std::wstring>> subjects; // by bundle; an empty one is the bundle itself
    for (const cli::Finding& finding : cli::findReasons(examination)) {
        EXPECT_NE(finding.what, "");
        subjects[finding.bundle].insert(finding.subject);
    }
    for (const cli::ExaminedBundle& bundle : examination.bundles) {
        const std::set<std::wstring>& told = subjects[bundle.folder];
        if (!bundle.isLoaded() || bundle.state == BundleState::kLoadedWithFailures) {
            EXPECT_FALSE(told.empty()) << narrow(bundle.folder) << " is " << nameOf(bundle.state) << " for no reason";
        }
        for (const cli::ExaminedComponent& component : bundle.components) {
            const std::wstring& module = component.record.moduleName;
            EXPECT_TRUE(!isIdle(component) || module.empty() || told.contains(module))
                << narrow(module) << " does not load for no reason";
            for (const KestCommands& group : component.record.commands) {
                for (const KestCommand& command : group.commands) {
                    const auto winner = examination.commands.find(command.localName);
                    const bool isLost = component.outcome == cli::ComponentOutcome::kOnDemand && !module.empty() &&
                                        winner != examination.commands.end() && winner->second != module;
                    EXPECT_TRUE(!isLost || command.localName.empty() || told.contains(command.localName))
                        << narrow(command.localName) << " of " << narrow(module) << " is another one's for no reason";
                }
            }
        }
    }
}

/// What cli::examineInstalled() foretells.
Outcome rehearse(const standalone::HostSettings& settings)
{
    const cli::Examination examination = cli::examineInstalled(settings);
    EXPECT_EQ(examination.failure, "");
    expectReasons(examination);
    expectMenuFindings(examination);
    Outcome outcome;
    for (const cli::ExaminedBundle& bundle : examination.bundles) {
        if (bundle.state != BundleState::kNotABundle) {
            outcome.states.push_back(std::string(nameOf(bundle.state)) + " " + narrow(bundle.folder));
        }
        for (const cli::ExaminedComponent& component : bundle.components) {
            for (const std::wstring& name : component.commands) {
                outcome.onDemand[narrow(name)] = component.onDemand->isLoaded;
            }
        }
    }
    for (const cli::ErrorLogRecord& record : examination.log.records) {
        outcome.log.append(record.path).append(": ").append(record.message).append("\n");
    }
    outcome.menus = {orNone(examination.hostMenus.after), orNone(examination.bundleMenus.after)};
    for (const auto& [name, module] : examination.commands) {
        outcome.commands[narrow(name)] = narrow(module);
    }
    return outcome;
}

/// A start in a real host, by the manager's own state and what the host noted.
class RealStart
{
public:
    explicit RealStart(const standalone::HostSettings& settings)
        : host(settings, [](const std::string& /*printed*/) {}), manager(*KestBundleManager::getInstance())
    {
        std::destroy_at(&manager);
        std::construct_at(&manager);
    }
    RealStart(const RealStart&) = delete;
    RealStart& operator=(const RealStart&) = delete;
    ~RealStart()
    {
        for (const KestBundle* bundle : manager.bundles) {
            delete bundle;
        }
        manager.bundles.clear();
    }

    Outcome outcome()
    {
        Outcome seen;
        excuteCuix();
        std::set<const KestBundle*> menusOnly;
        for (const KestBundle* bundle : manager.bundles) {
            if (bundle->isLoad) {
                menusOnly.insert(bundle);
            }
        }
        excute();
        log = cli::parseErrorLog(contentOf(standalone::userConfigurationFolder() + "/BundleErrorLog.txt"));
        for (const cli::ErrorLogRecord& record : log.records) {
            seen.log.append(record.path).append(": ").append(record.message).append("\n");
        }
        for (const auto& read : host.journal().only<standalone::ManifestRead>()) {
            isOpened[read.path] = read.opened;
        }
        auto kept = manager.bundles.begin();
        for (std::size_t index = 0; index < manager.bundlePaths.size(); ++index) {
            const std::wstring& manifest = manager.manifestPaths[index];
            const bool isKept = kept != manager.bundles.end() && (*kept)->xmlPath == manifest;
            const KestBundle* bundle = isKept ? *kept++ : nullptr;
            seen.states.push_back(std::string(nameOf(stateOf(manifest, bundle, menusOnly.contains(bundle)))) + " " +
                                  narrow(manager.bundlePaths[index]));
        }
        standalone::Configuration& store = host.configuration();
        seen.menus = {orNone(store.text(TarvixConfig::kMenus, L"CUIX/LoadedCuix")),
                      orNone(store.text(TarvixConfig::kMenus, L"CUIX/LoadedBundleCuix"))};
        for (const auto& [name, module] : manager.commandMap) {
            seen.commands[narrow(name)] = narrow(module);
            if (!name.empty()) {
                seen.onDemand[narrow(name)] = isLoadedBy(name);
            }
        }
        return seen;
    }

private:
    bool isLogged(const std::wstring& path, const std::string& message) const
    {
        return std::find(log.records.begin(), log.records.end(),
                         cli::ErrorLogRecord{cli::pathInErrorLog(path), message}) != log.records.end();
    }

    BundleState stateOf(const std::wstring& manifest, const KestBundle* bundle, bool hasMenusOnly)
    {
        if (bundle == nullptr) {
            return isLogged(manifest, "File format error") ? BundleState::kMalformed : BundleState::kRequirementNotMet;
        }
        if (!isOpened[manifest]) {
            return BundleState::kUnreadable;
        }
        if (hasMenusOnly) {
            return BundleState::kMenusOnly;
        }
        if (bundle->isLoad) {
            const auto& all = bundle->components;
            const bool hasFailed = std::any_of(all.begin(), all.end(), [&](const KestComponentEntry& entry) {
                return entry.loadsAtStartup() && isLogged(entry.moduleName, "loading failed");
            });
            return hasFailed ? BundleState::kLoadedWithFailures : BundleState::kLoaded;
        }
        const auto& needed = bundle->dependentBundles;
        const auto& loaded = manager.loadedStatus;
        return std::all_of(needed.begin(), needed.end(),
                           [&](const KestDependentBundle& one) {
                               return std::any_of(loaded.begin(), loaded.end(), [&](const KestBundleStatus& status) {
                                   return status.upgradeCode == one.upgradeCode;
                               });
                           })
                   ? BundleState::kKept
                   : BundleState::kWaiting;
    }

    bool isLoadedBy(const std::wstring& name)
    {
        const std::size_t begin = host.journal().size();
        loadIfCmdNeeded(name.c_str());
        const auto entries = host.journal().since(begin);
        return std::any_of(entries.begin(), entries.end(), [](const auto& entry) {
            const auto* module = std::get_if<standalone::ModuleLoad>(&entry);
            const auto* script = std::get_if<standalone::ScriptLoad>(&entry);
            const auto* queued = std::get_if<standalone::ExpressionQueued>(&entry);
            return (module != nullptr && module->loaded) || (script != nullptr && script->loaded) ||
                   (queued != nullptr && queued->accepted);
        });
    }

    standalone::Host host;
    KestBundleManager& manager;
    cli::ErrorLogText log;
    std::map<std::wstring, bool> isOpened;
};

using ComparisonTest = RehearsalFolder;

TEST_F(ComparisonTest, WhatIsForetoldIsWhatComesAbout)
{
    const char* const asked = std::getenv("KEST_REHEARSAL_TREES");
    const std::uint64_t trees = asked != nullptr ? std::strtoull(asked, nullptr, 10) : 300;
    std::map<std::string, std::size_t> seen;
    for (std::uint64_t seed = 1; seed <= trees && !HasFailure(); ++seed) {
        // The dynamic linker would know a module of an earlier tree by its path.
        const fs::path home = root / std::to_string(seed) / "home";
        const fs::path program = root / std::to_string(seed) / "program";
        RandomTree tree(seed, home, program, KEST_SOUND_MODULE);
        tree.write();
        const standalone::HostSettings settings = settingsFor(home, program);
        const auto before = treeIn(root);
        const Outcome foretold = rehearse(settings);
        EXPECT_EQ(treeIn(root), before) << "the rehearsal of seed " << seed << " changed something";
        fs::current_path(root);
        const Outcome real = RealStart(settings).outcome();
        EXPECT_EQ(foretold, real) << "seed " << seed;
        for (const std::string& state : real.states) {
            ++seen[state.substr(0, state.find(" /"))];
        }
        fs::current_path("/");
        if (!HasFailure()) {
            fs::remove_all(root / std::to_string(seed));
        }
    }
    for (const char* state : {"unreadable", "malformed", "requirement not met", "waiting for a dependency", "kept",
                              "loaded with failures", "loaded", "menus only"}) {
        EXPECT_GT(seen[state], 0U) << state << " came about in none of " << trees << " trees";
    }
}

} // namespace

} // namespace rehearsal
