#include "cli/GraphCommand.h"

#include "cli/ExitStatus.h"
#include "cli/NearestName.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"
#include "cli/Terminal.h"
#include "cli/graph/Pictures.h"
#include "host/LocaleText.h"

#include <algorithm>
#include <langinfo.h>
#include <memory>
#include <string_view>

namespace cli {

namespace {

constexpr char kGraphExamples[] =
    R"(Without BUNDLE all bundles are drawn, else those and all that they need. A BUNDLE is a folder, its name with or without
".bundle", a name or an UpgradeCode.

Examples:
  kestbundle graph
      Below each bundle what it depends on, then the cycles and the missing bundles.
  kestbundle graph --format svg --commands > bundles.svg
      A picture of it, with the commands of each bundle.
  kestbundle graph --format dot | dot -Tpdf -o bundles.pdf
      The same drawn by Graphviz.
  kestbundle graph GearPairs
      What one bundle needs.

Exit status: 0 each bundle finds loaded what it depends on, 1 one does not, 2 wrong use.)";

/// What is wrong with `format`; empty when nothing is.
std::string problemOfFormat(const std::string& format)
{
    const std::vector<std::string> known = {"tree", "dot", "mermaid", "svg"};
    if (std::find(known.begin(), known.end(), format) != known.end()) {
        return "";
    }
    const std::optional<std::string> nearest = nearestName(format, known);
    return cli::quoted(format) + " is no format; " +
           (nearest ? "did you mean " + cli::quoted(*nearest) + "?" : "there are tree, dot, mermaid and svg");
}

/// The names by which a bundle can be asked for.
std::vector<std::string> namesOf(const GraphNode& node)
{
    const std::string folder = shown(node.bundle->folder.substr(node.bundle->folder.rfind(L'/') + 1));
    std::string stem = folder;
    stem.erase(stem.size() >= 7 ? stem.size() - 7 : 0); // ".bundle", in any letter case
    return {shown(node.bundle->folder), folder, stem, shown(node.bundle->records.package.name),
            shown(node.bundle->records.package.upgradeCode)};
}

std::vector<std::size_t> nodesNamed(const BundleGraph& graph, const std::string& asked)
{
    std::string name = shown(localetext::widen(asked));
    while (name.size() > 1 && name.ends_with('/')) {
        name.pop_back();
    }
    std::vector<std::size_t> found;
    std::vector<std::string> known;
    for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
        if (graph.nodes[node].isMissing()) {
            continue;
        }
        const std::vector<std::string> names = namesOf(graph.nodes[node]);
        if (!name.empty() && std::find(names.begin(), names.end(), name) != names.end()) {
            found.push_back(node);
        }
        known.insert(known.end(), names.begin() + 1, names.end());
    }
    if (found.empty()) {
        const std::optional<std::string> nearest = nearestName(name, known);
        throw WrongUse(
            "No bundle " + cli::quoted(name) + " is installed" +
            (nearest ? "; did you mean " + cli::quoted(*nearest) + "?" : "; \"kestbundle list\" names them all"));
    }
    return found;
}

BundleGraph askedFor(const Examination& examination, const GraphOptions& options)
{
    BundleGraph whole = bundleGraph(examination);
    std::vector<std::size_t> wanted;
    for (const std::string& bundle : options.bundles) {
        const std::vector<std::size_t> nodes = nodesNamed(whole, bundle);
        wanted.insert(wanted.end(), nodes.begin(), nodes.end());
    }
    return options.bundles.empty() ? whole : neededBy(whole, wanted);
}

std::string pictureOf(const BundleGraph& graph, const GraphOptions& options)
{
    if (options.format == "svg") {
        return svgText(graph, options.picture);
    }
    if (options.format == "dot") {
        return dotText(graph, options.picture);
    }
    if (options.format == "mermaid") {
        return mermaidText(graph, options.picture);
    }
    const bool isAscii = std::string_view(::nl_langinfo(CODESET)) != "UTF-8";
    return treeText(graph, options.picture, {hasColours(), isAscii});
}

} // namespace

void addGraphCommand(CLI::App& app, Action& chosen)
{
    Subcommand graph(app, "graph", "Draw the bundles and what they depend on");
    const auto options = std::make_shared<GraphOptions>();
    addHostOptions(graph, options->host);
    CLI::Option* const format =
        graph.text("--format", options->format, "tree|dot|mermaid|svg", "How to draw (default: tree)", problemOfFormat);
    graph.flag("--commands", options->picture.commands, "Draw the commands of each bundle, too");
    graph.flag("--menus", options->picture.menus, "Draw the menus of each bundle, too");
    graph.flag("--json", options->json, "Write the graph as one JSON document", format);
    graph.arguments("bundles", options->bundles, "BUNDLE", "Draw these and what they need (default: all)");
    graph.footer(kGraphExamples);
    graph.does(chosen, [options] { return cli::graph(*options); });
}

int graph(const GraphOptions& options)
{
    const Examination examination = examineInstalled(settingsFrom(options.host));
    const BundleGraph drawn = askedFor(examination, options);
    const bool isAllWell =
        examination.failure.empty() &&
        std::all_of(drawn.edges.begin(), drawn.edges.end(), [](const GraphEdge& edge) { return edge.isSatisfied; });
    const int status = isAllWell ? kAllWell : kSomethingFailed;
    const std::string text = options.json ? graphJson(drawn, examination.failure, status) : pictureOf(drawn, options);
    const bool isForPeople = !options.json && options.format == "tree";
    isForPeople ? print(stdout, text) : printUtf8(stdout, text);
    return status;
}

} // namespace cli
