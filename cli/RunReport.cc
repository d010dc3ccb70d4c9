#include "cli/RunReport.h"

#include <algorithm>
#include <functional>
#include <set>

namespace cli {

std::vector<std::string> RunReport::failedComponents() const
{
    std::vector<std::string> paths;
    for (const ErrorLogRecord& record : log.text.records) {
        if (record.message == loadingFailedMessage()) {
            paths.push_back(record.path);
        }
    }
    return paths;
}

bool BundleFacts::hasPassedOverScripts() const
{
    return std::any_of(components.begin(), components.end(), std::mem_fn(&ManifestComponent::isPassedOver));
}

bool Problems::any() const
{
    return droppedBundles + unreadableManifests + failedComponents + failedExpressions + failedMenus + unstoredValues +
                   failedCommands + notices !=
               0 ||
           isLogUnreliable || isBroken;
}

Problems RunReport::problems() const
{
    const auto count = [](const auto& facts, auto isProblem) {
        return static_cast<std::size_t>(std::count_if(facts.begin(), facts.end(), isProblem));
    };
    const auto hasState = [](BundleFacts::State state) {
        return [state](const BundleFacts& bundle) { return bundle.state == state; };
    };
    Problems found;
    found.droppedBundles = count(bundles, hasState(BundleFacts::State::kDropped));
    found.unreadableManifests = count(bundles, hasState(BundleFacts::State::kUnreadable));

    // What fails while starting may stand in the journal and, percent signs apart, in the log.
    const std::vector<std::string> logged = failedComponents();
    std::set<std::string> components(logged.begin(), logged.end());
    const auto addFailed = [&components](const auto& all) {
        for (const auto& one : all) {
            if (!one.entry.loaded) {
                components.insert(pathInErrorLog(one.entry.path));
            }
        }
    };
    addFailed(modules);
    addFailed(scripts);
    found.failedComponents = components.size();
    found.failedExpressions = count(expressions, [](const Traced<ExpressionFacts>& one) {
        // One that was refused while starting is a failed component.
        return one.entry.queued.accepted ? one.entry.evaluated && !one.entry.succeeded : one.command.has_value();
    });
    found.failedMenus = count(menuConversions, [](const auto& one) { return one.entry.converted.empty(); });
    found.unstoredValues = count(configurationWrites, [](const auto& write) { return !write.stored; });
    found.failedCommands =
        count(commandRuns, [](const CommandRun& run) { return run.outcome != CommandRun::Outcome::kDone; });
    found.notices = notices.size();
    found.isLogUnreliable = !log.problem.empty();
    found.isBroken = !failure.empty();
    return found;
}

const char* nameOf(BundleFacts::State state)
{
    switch (state) {
    case BundleFacts::State::kKept:
        return "kept";
    case BundleFacts::State::kUnreadable:
        return "unreadable";
    case BundleFacts::State::kDropped:
        return "dropped";
    case BundleFacts::State::kUnknown:
        break;
    }
    return "unknown";
}

} // namespace cli
