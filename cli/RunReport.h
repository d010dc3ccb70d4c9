// What happened in one run of the autoloader: the facts, gathered from the host's journal and the error log, in the
// order in which they came about. Nothing here decides anything about a bundle; the autoloader did.
#pragma once

#include "cli/ErrorLog.h"
#include "cli/ManifestComponents.h"
#include "standalone/Journal.h"
#include "standalone/LispQueue.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace standalone {
class Host;
}

namespace cli {

/// A journal entry, the bundle that it belongs to by its path (an index into RunReport::bundles), and the command
/// during which it happened (an index into RunReport::commandRuns; none while starting). `order` grows in the order in
/// which entries of all kinds came about.
template <typename Entry>
struct Traced
{
    Entry entry;
    std::optional<std::size_t> bundle;
    std::optional<std::size_t> command;
    std::size_t order = 0;
};

/// What a bundle has brought, as far as its path tells whose something is.
struct BundleActivity
{
    std::size_t modulesLoaded = 0;
    std::size_t scriptsLoaded = 0; ///< scripts and managed assemblies
    std::size_t componentsFailed = 0;
    std::size_t expressionsQueued = 0;
    std::size_t commandsRegistered = 0;
    std::size_t menus = 0; ///< entries of the host's list

    bool operator==(const BundleActivity&) const = default;
};

/// A bundle folder that the autoloader found.
struct BundleFacts
{
    enum class State
    {
        kKept,
        kUnreadable, ///< kept, but its manifest could not be opened: it counts as sound and empty
        kDropped,
        kUnknown, ///< kept or dropped: only the log would tell, and there is none
    };

    std::wstring folder;
    std::wstring manifest;
    State state = State::kKept;
    std::vector<std::string> reasons;          ///< the log's messages about its manifest, as in ErrorLogRecord
    standalone::ManifestRead read;             ///< what the reader said about the manifest
    std::vector<std::wstring> announced;       ///< commands that its manifest declares and that were announced
    std::vector<ManifestComponent> components; ///< that its manifest names; empty unless it is kept or unknown
    BundleActivity activity;

    bool isActive() const { return activity != BundleActivity() || !announced.empty(); }
    bool hasPassedOverScripts() const; ///< see ManifestComponent::isPassedOver()
};

/// The word for `state` in both reports; stable, since scripts read it.
const char* nameOf(BundleFacts::State state);

/// The host's list of menus; nothing when no value is stored.
struct MenuFacts
{
    std::optional<std::wstring> before;
    std::optional<std::wstring> after;
};

/// A script or managed assembly that was to be loaded.
struct ScriptFacts
{
    std::wstring path;
    bool loaded = false;
    std::string problem;                ///< UTF-8, one line
    std::optional<double> milliseconds; ///< none when no engine told the end of the load
};

/// An expression that was queued, and what became of it.
struct ExpressionFacts
{
    standalone::ExpressionQueued queued;
    bool evaluated = false;
    bool succeeded = false;
    std::string problem;     ///< of the evaluation
    double milliseconds = 0; ///< of the evaluation, the start of its engine apart
};

/// A command that was asked for.
struct CommandRun
{
    enum class Outcome
    {
        kDone,
        kFailed,
        kUnknown,
    };

    std::wstring name;
    Outcome outcome = Outcome::kUnknown;
    std::string problem;       ///< UTF-8; empty when it is done
    std::string output;        ///< what was printed meanwhile
    bool wasRequested = false; ///< the autoloader was asked to load it
};

/// How many things went wrong, by kind.
struct Problems
{
    std::size_t droppedBundles = 0;
    std::size_t unreadableManifests = 0;
    std::size_t failedComponents = 0;
    std::size_t failedExpressions = 0;
    std::size_t failedMenus = 0;
    std::size_t unstoredValues = 0;
    std::size_t failedCommands = 0;
    std::size_t notices = 0;
    bool isLogUnreliable = false;
    bool isBroken = false; ///< an error ended an entry point

    bool any() const;
};

struct RunReport
{
    std::string programFolder; ///< this and the next two: narrow, as the system takes them
    std::string home;
    std::string configurationFile;
    std::wstring vernum;
    std::wstring productName;

    std::vector<BundleFacts> bundles; ///< in the order found
    MenuFacts menus;
    std::vector<Traced<standalone::ModuleLoad>> modules;
    std::vector<Traced<ScriptFacts>> scripts; ///< those that no engine saw come last, of the start and of each command
    std::vector<Traced<standalone::EngineOpen>> engines;
    std::vector<Traced<standalone::EngineStart>> engineStarts;
    std::vector<Traced<standalone::MenuConversion>> menuConversions;
    std::vector<Traced<standalone::CommandRegistered>> registered; ///< only those that were not taken back
    std::vector<Traced<standalone::CommandAnnounced>> announced;
    std::vector<Traced<ExpressionFacts>> expressions;
    std::vector<standalone::ConfigurationWrite> configurationWrites;
    std::vector<standalone::HostNotice> notices;
    std::string startOutput; ///< what was printed while starting
    std::vector<CommandRun> commandRuns;
    ErrorLogFile log;
    std::string failure; ///< UTF-8; the error that ended the start, empty when none did

    Problems problems() const;
    /// Paths of the components that the log says failed, in its order.
    std::vector<std::string> failedComponents() const;
};

/// Fills a report from a host's journal, step by step.
class ReportCollector
{
public:
    ReportCollector(RunReport& target, standalone::Host& source);

    /// Adds what the journal has got since the last call; `during` is the command at work meanwhile.
    void collect(std::optional<std::size_t> during, const std::vector<standalone::LispQueue::Evaluation>& evaluations);

    /// Judges the bundles by the log, once the start is collected and report.log is read.
    void judgeBundles();

private:
    void take(const standalone::ManifestRead& read);
    void take(const standalone::ModuleLoad& load);
    void take(const standalone::ScriptLoad& load);
    void take(const standalone::EngineOpen& engine);
    void take(const standalone::EngineStart& start);
    void take(const standalone::ExpressionQueued& queued);
    void take(const standalone::CommandAnnounced& announced);
    void take(const standalone::CommandRegistered& registered);
    void take(const standalone::MenuConversion& conversion);
    void take(const standalone::ConfigurationWrite& write);
    void take(const standalone::HostNotice& notice);

    /// `entry` with where it belongs.
    template <typename Entry>
    Traced<Entry> traced(Entry entry, std::optional<std::size_t> bundle = {}) const
    {
        return {std::move(entry), bundle, command, position};
    }

    std::optional<std::size_t> bundleOf(std::wstring_view path);
    void count(std::optional<std::size_t> bundle, std::size_t BundleActivity::*what);
    void countFromLog();
    void countMenus();
    void attributeAnnouncements();
    void readComponents(BundleFacts& bundle);

    RunReport& report;
    standalone::Host& host;
    std::size_t position = 0; ///< of the first journal entry not taken yet
    std::optional<std::size_t> command;
    std::unordered_map<std::wstring, std::size_t> bundleByFolder;
};

} // namespace cli
