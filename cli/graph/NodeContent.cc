#include "cli/graph/NodeContent.h"

#include "cli/ReportLines.h"
#include "host/LocaleText.h"
#include "menus/MenuKind.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <set>

namespace cli {

namespace {

/// `path` without the bundle's folder.
std::string withinBundle(const ExaminedBundle& bundle, const std::wstring& path)
{
    const std::wstring folder = bundle.folder + L"/";
    return shortened(shown(path.starts_with(folder) ? path.substr(folder.size()) : path));
}

/// What becomes of the command `name`, upper case, of `component`.
GraphCommand commandOf(const std::wstring& name, const ExaminedComponent& component, const Examination& examination)
{
    GraphCommand command{shortened(shown(name)), false, ""};
    const auto taken = examination.commands.find(name);
    switch (component.outcome) {
    case ComponentOutcome::kLoaded:
        command.isLive = true;
        break;
    case ComponentOutcome::kOnDemand:
        if (taken != examination.commands.end() && taken->second != component.record.moduleName) {
            command.otherwise = "another component has it";
        } else if (component.onDemand && !component.onDemand->isLoaded) {
            command.otherwise = "its component fails";
        } else if (std::find(component.commands.begin(), component.commands.end(), name) == component.commands.end()) {
            command.otherwise = "not announced";
        } else {
            command.isLive = true;
        }
        break;
    case ComponentOutcome::kFailed:
        command.otherwise = "its component fails";
        break;
    case ComponentOutcome::kNotReached:
    case ComponentOutcome::kPassedOver:
    case ComponentOutcome::kMenu:
    case ComponentOutcome::kMenuFailed:
    case ComponentOutcome::kNeither:
        command.otherwise = "not announced";
    }
    return command;
}

} // namespace

void addContent(GraphNode& node, const Examination& examination)
{
    std::set<std::wstring> names;
    for (const ExaminedComponent& component : node.bundle->components) {
        for (const KestCommands& group : component.record.commands) {
            for (const KestCommand& command : group.commands) {
                std::wstring name = command.localName;
                localetext::upperByGlobalLocale(name);
                if (!name.empty() && names.insert(name).second) {
                    node.commands.push_back(commandOf(name, component, examination));
                }
            }
        }
        if (!component.menu.empty() || menuKindOf(component.record.moduleName) != MenuKind::kOther) {
            node.menus.push_back({withinBundle(*node.bundle, component.record.moduleName),
                                  component.outcome == ComponentOutcome::kMenu});
        }
    }
}

std::string shortened(const std::string& text)
{
    constexpr std::size_t kMost = 100;
    std::size_t end = 0;
    for (std::size_t count = 0; count < kMost && end < text.size(); ++count) {
        if (standalone::nextCodePoint(text, end) == standalone::kNotUtf8) {
            ++end;
        }
    }
    return end < text.size() ? text.substr(0, end) + "…" : text;
}

std::vector<std::string> contentLines(const GraphNode& node, const PictureOptions& options)
{
    std::vector<std::string> lines;
    if (!node.remark.empty()) {
        lines.push_back(node.remark);
    }
    for (const GraphCommand& command : options.commands ? node.commands : std::vector<GraphCommand>()) {
        lines.push_back("command " + command.name + (command.isLive ? "" : " (" + command.otherwise + ")"));
    }
    for (const GraphMenu& menu : options.menus ? node.menus : std::vector<GraphMenu>()) {
        lines.push_back("menu " + menu.file + (menu.isRegistered ? "" : " (not registered)"));
    }
    return lines;
}

} // namespace cli
