#include "cli/RunSession.h"

#include "cli/UntoldFailures.h"

#include "host/Configuration.h"
#include "standalone/CaughtError.h"
#include "standalone/CommandTable.h"
#include "standalone/Configuration.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace cli {

namespace {

constexpr wchar_t kMenuListKey[] = L"CUIX/LoadedCuix";

/// Calls `entryPoint` and returns what ended it, a sentence in UTF-8, or empty text.
template <typename EntryPoint>
std::string guarded(const char* name, EntryPoint entryPoint)
{
    try {
        entryPoint();
        return "";
    } catch (...) {
        return std::string(name) + " ended with " + standalone::describeCaughtError();
    }
}

} // namespace

RunSession::RunSession(standalone::HostSettings settings, Library& opened, ConsoleEcho& echo)
    : library(opened),
      console(echo),
      host(std::move(settings), [&echo](const std::string& text) { echo.take(text); }),
      collector(facts, host)
{
    const standalone::HostSettings& completed = host.settings();
    const char* home = std::getenv("HOME");
    facts.programFolder = completed.programFolder;
    facts.home = home != nullptr ? home : "";
    facts.configurationFile = completed.configurationFile;
    facts.vernum = completed.vernum;
    facts.productName = completed.productName;
}

void RunSession::start()
{
    console.begin("\nPrinted while starting\n");
    if (bringMenusInStep()) {
        facts.failure = guarded("The loading of start-up components", library.excute);
    }
    evaluations = host.lispQueue().evaluateQueued();
    facts.startOutput = console.end();
    collector.collect({}, evaluations);
    facts.log = readErrorLog(standalone::userConfigurationFolder() + "/BundleErrorLog.txt");
    collector.judgeBundles();
    addUntoldFailures(facts);
}

bool RunSession::bringMenusInStep()
{
    {
        standalone::Configuration& store = host.configuration();
        const standalone::Configuration::Turn turn(store);
        facts.menus.before = store.text(TarvixConfig::kMenus, kMenuListKey);
        facts.failure = guarded("The registration of menus", library.excuteCuix);
        facts.menus.after = store.text(TarvixConfig::kMenus, kMenuListKey);
    }
    // The end of the turn can still take the writes back.
    for (const auto& write : host.journal().only<standalone::ConfigurationWrite>()) {
        if (write.key == kMenuListKey && !write.stored) {
            facts.menus.after = facts.menus.before;
        }
    }
    return facts.failure.empty();
}

void RunSession::runCommand(const std::wstring& name)
{
    const std::size_t index = facts.commandRuns.size();
    CommandRun run;
    run.name = name;
    console.begin("");
    evaluations.clear();
    if (!host.commands().has(name)) {
        request(name, run);
    }
    if (host.commands().has(name)) {
        const standalone::RunResult result = host.commands().run(name);
        run.outcome = result.ran ? CommandRun::Outcome::kDone : CommandRun::Outcome::kFailed;
        run.problem = result.problem;
        std::vector<standalone::LispQueue::Evaluation> more = host.lispQueue().evaluateQueued();
        evaluations.insert(evaluations.end(), more.begin(), more.end());
    }
    run.output = console.end();
    collector.collect(index, evaluations);
    if (run.outcome == CommandRun::Outcome::kUnknown && run.problem.empty()) {
        run.problem = reasonForUnknown(index, run);
    }
    facts.commandRuns.push_back(std::move(run));
}

void RunSession::request(const std::wstring& name, CommandRun& run)
{
    if (name.find(L'\0') != std::wstring::npos) {
        return; // as a text that ends with a zero it would be another name
    }
    run.wasRequested = true;
    run.problem = guarded("The loading of the command", [&] { library.loadIfCmdNeeded(name.c_str()); });
    evaluations = host.lispQueue().evaluateQueued();
}

std::string RunSession::reasonForUnknown(std::size_t index, const CommandRun& run)
{
    if (run.wasRequested) {
        addUntoldFailure(facts, run.name, index);
        if (std::string problem = loadingProblemOf(facts, run.name, index); !problem.empty()) {
            return problem;
        }
    }
    const auto happened = [&](const auto& all) {
        return std::any_of(all.begin(), all.end(), [&](const auto& one) { return one.command == index; });
    };
    if (happened(facts.modules) || happened(facts.scripts) || happened(facts.expressions) || happened(facts.engines)) {
        return "what was loaded for it has not registered a command of this name";
    }
    if (host.commands().announcedKind(run.name)) {
        return "a bundle announced it, but loading its component has not registered it";
    }
    return "no module has registered a command of this name, and no bundle announces it";
}

std::vector<std::wstring> RunSession::knownCommands() const
{
    std::set<std::wstring> names;
    for (const auto& announced : facts.announced) {
        names.insert(announced.entry.name);
    }
    for (const auto& registered : facts.registered) {
        names.insert(registered.entry.name);
    }
    return {names.begin(), names.end()};
}

} // namespace cli
