#include "cli/UntoldFailures.h"

#include "cli/MissingEngine.h"
#include "cli/Shown.h"
#include "host/LocaleText.h"
#include "standalone/LispQueue.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace cli {

namespace {

constexpr wchar_t kManagedEngine[] = L"VxManagedCommand.dll";

/// A component in a bundle of the report.
struct Culprit
{
    std::size_t bundle = 0;
    const ManifestComponent* component = nullptr; ///< null: there is none
};

/// The first component of a bundle, in the order found, of which `isWanted` holds.
template <typename IsWanted>
Culprit culpritWhere(const RunReport& report, IsWanted isWanted)
{
    for (std::size_t bundle = 0; bundle < report.bundles.size(); ++bundle) {
        for (const ManifestComponent& component : report.bundles[bundle].components) {
            if (isWanted(component)) {
                return {bundle, &component};
            }
        }
    }
    return {};
}

/// The component that the autoloader loads when the command `name` is first used.
Culprit culpritOfCommand(const RunReport& report, std::wstring name)
{
    localetext::upperByGlobalLocale(name);
    const bool isAnnounced = std::any_of(report.announced.begin(), report.announced.end(),
                                         [&](const auto& announced) { return announced.entry.name == name; });
    return !isAnnounced ? Culprit() : culpritWhere(report, [&](const ManifestComponent& component) {
        const auto& commands = component.commands;
        return component.isOnDemand && std::find(commands.begin(), commands.end(), name) != commands.end();
    });
}

bool isTold(const RunReport& report, const std::wstring& path, std::optional<std::size_t> command)
{
    return std::any_of(report.scripts.begin(), report.scripts.end(),
                       [&](const auto& script) { return script.command == command && script.entry.path == path; });
}

/// What the host was told when the autoloader asked for the engine of managed assemblies last.
std::string managedProblem(const RunReport& report)
{
    const auto asked = std::find_if(report.engines.rbegin(), report.engines.rend(),
                                    [](const auto& engine) { return engine.entry.name == kManagedEngine; });
    return asked != report.engines.rend() && !asked->entry.opened ? asked->entry.problem
                                                                  : "the engine for managed assemblies gave no reason";
}

void add(RunReport& report, const Culprit& culprit, std::optional<std::size_t> command)
{
    const ManifestComponent& component = *culprit.component;
    ScriptFacts facts{component.path, false, "", {}};
    facts.problem =
        isPythonScript(component.path) ? pythonProblem(plainUtf8(component.pythonVersion)) : managedProblem(report);
    report.scripts.push_back({std::move(facts), culprit.bundle, command, std::numeric_limits<std::size_t>::max()});
}

bool needsEngine(const ManifestComponent& component)
{
    return (isPythonScript(component.path) && !component.isPassedOver()) || isManagedAssembly(component.path);
}

/// Something that failed to load; which one of several began first tells its order.
struct Failure
{
    std::size_t order = std::numeric_limits<std::size_t>::max();
    std::wstring path; ///< empty: nothing failed
    std::string problem;

    void offer(std::size_t itsOrder, const std::wstring& itsPath, const std::string& itsProblem)
    {
        if (path.empty() || itsOrder < order) {
            *this = {itsOrder, itsPath, itsProblem};
        }
    }
};

} // namespace

void addUntoldFailures(RunReport& report)
{
    for (const std::string& path : report.failedComponents()) {
        const Culprit culprit = culpritWhere(report, [&](const ManifestComponent& component) {
            return needsEngine(component) && pathInErrorLog(component.path) == path;
        });
        if (culprit.component != nullptr && !isTold(report, culprit.component->path, {})) {
            add(report, culprit, {});
        }
    }
}

void addUntoldFailure(RunReport& report, const std::wstring& name, std::size_t command)
{
    const Culprit culprit = culpritOfCommand(report, name);
    if (culprit.component != nullptr && needsEngine(*culprit.component) &&
        !isTold(report, culprit.component->path, command)) {
        add(report, culprit, command);
        ++report.bundles[culprit.bundle].activity.componentsFailed;
    }
}

std::string loadingProblemOf(const RunReport& report, const std::wstring& name, std::size_t command)
{
    Failure first;
    const auto offerFailed = [&](const auto& all) {
        for (const auto& one : all) {
            if (one.command == command && !one.entry.loaded) {
                first.offer(one.order, one.entry.path, one.entry.problem);
            }
        }
    };
    offerFailed(report.modules);
    offerFailed(report.scripts);
    for (const auto& one : report.expressions) {
        const ExpressionFacts& facts = one.entry;
        if (one.command == command && !facts.succeeded && (facts.evaluated || !facts.queued.accepted)) {
            const std::wstring path = standalone::pathLoadedBy(facts.queued.expression);
            first.offer(one.order, path.empty() ? facts.queued.expression : path,
                        facts.queued.accepted ? facts.problem : facts.queued.problem);
        }
    }
    if (!first.path.empty()) {
        return "loading " + standalone::displayable(std::wstring_view(first.path)) + " failed" +
               (first.problem.empty() ? "" : ": " + first.problem);
    }
    const Culprit culprit = culpritOfCommand(report, name);
    return culprit.component != nullptr && culprit.component->isPassedOver()
               ? "its Python script " + standalone::displayable(std::wstring_view(culprit.component->path)) +
                     " names no PythonVersion, so it is skipped"
               : "";
}

} // namespace cli
