#include "cli/ReportComponents.h"

#include "cli/ReportLines.h"
#include "cli/Shown.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace cli {

namespace {

/// The lines of one thing, and when it began.
struct Item
{
    std::size_t order = 0;
    std::string text;
};

std::string timed(const std::string& text, std::optional<double> milliseconds)
{
    return milliseconds ? text + ", " + timeText(*milliseconds) : text;
}

std::string problemText(const std::string& problem)
{
    return problem.empty() ? "" : below(shownLine(problem));
}

std::string textOf(const standalone::ModuleLoad& load)
{
    return labelled(load.loaded ? "loaded" : "failed", timed(shown(load.path), load.milliseconds)) +
           problemText(load.problem);
}

std::string textOf(const ScriptFacts& script)
{
    return labelled(script.loaded ? "loaded" : "failed", timed(shown(script.path), script.milliseconds)) +
           problemText(script.problem);
}

std::string textOf(const standalone::EngineOpen& engine)
{
    return labelled(engine.opened ? "opened" : "failed", "engine " + shown(engine.name)) + problemText(engine.problem);
}

std::string textOf(const standalone::EngineStart& start)
{
    return labelled("started", timed("engine " + shownLine(start.description), start.milliseconds));
}

std::string textOf(const ExpressionFacts& facts)
{
    const char* state = !facts.queued.accepted ? "refused"
                        : !facts.evaluated     ? "waiting"
                        : facts.succeeded      ? "evaluated"
                                               : "failed";
    const std::string expression = shown(facts.queued.expression);
    return labelled(state, facts.evaluated ? timed(expression, facts.milliseconds) : expression) +
           problemText(facts.queued.accepted ? facts.problem : facts.queued.problem);
}

/// Adds those of `all` that belong to `command`.
template <typename Entry>
void add(std::vector<Item>& items, const std::vector<Traced<Entry>>& all, std::optional<std::size_t> command)
{
    for (const Traced<Entry>& one : all) {
        if (one.command == command) {
            items.push_back({one.order, textOf(one.entry)});
        }
    }
}

std::string joined(std::vector<Item> items)
{
    std::stable_sort(items.begin(), items.end(),
                     [](const Item& one, const Item& other) { return one.order < other.order; });
    std::string text;
    for (const Item& item : items) {
        text += item.text;
    }
    return text;
}

} // namespace

std::string componentsText(const RunReport& report, std::optional<std::size_t> command)
{
    std::vector<Item> items;
    add(items, report.modules, command);
    add(items, report.scripts, command);
    add(items, report.engines, command);
    add(items, report.engineStarts, command);
    return joined(std::move(items));
}

std::string expressionsText(const RunReport& report, std::optional<std::size_t> command)
{
    std::vector<Item> items;
    add(items, report.expressions, command);
    return joined(std::move(items));
}

} // namespace cli
