// Bundles and what they depend on, drawn in every form and compared whole.
#include "tests/cli/GoldenFile.h"
#include "tests/cli/ToolTest.h"

#include <cstdlib>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// A manifest of a bundle that has a name, and depends on the bundles with the UpgradeCodes `needs`.
std::string manifestNamed(const std::string& name, const std::string& code, const std::vector<std::string>& needs,
                          const std::string& components)
{
    std::string list;
    for (const std::string& need : needs) {
        list += "<DependentBundle UpgradeCode=\"" + need + "\"/>";
    }
    return "<ApplicationPackage Name=\"" + name + "\" AppVersion=\"1.0\" UpgradeCode=\"" + code +
           "\"><DependentBundles>" + list + "</DependentBundles>" + components + "</ApplicationPackage>\n";
}

class GraphTest : public ToolTest
{
protected:
    /// A bundle of a module that loads.
    void installSound(const std::string& name, const std::string& code, const std::vector<std::string>& needs) const
    {
        const std::string folder =
            install(name + ".bundle", manifestNamed(name + " tools", code, needs, startupEntry("./m.krx")));
        installModule("greeter", folder, "m.krx");
    }

    /// One of everything: a chain, a diamond, a cycle, a bundle that needs itself, missing and dropped ones, namesakes.
    void installEverything() const
    {
        installSound("Base", "BASE", {});
        installSound("Left", "LEFT", {"BASE"});
        installSound("Right", "RIGHT", {"BASE", "BASE"});
        installSound("Top", "TOP", {"RIGHT", "LEFT", "BASE"});
        installSound("CycleA", "CA", {"CB", "BASE"});
        installSound("CycleB", "CB", {"CC"});
        installSound("CycleC", "CC", {"CA"});
        installSound("Waiter", "W", {"CA"});
        installSound("Self", "SELF", {"SELF"});
        installSound("Lost", "LOST", {"NOWHERE", "OLD"});
        installSound("Twin", "BASE", {"LEFT"});
        install("Old.bundle", manifestNamed("Old", "OLD", {}, "<RuntimeRequirements OS=\"Plan9\"/>"));
        installModule("late",
                      install("Commands.bundle",
                              manifestNamed("Commands", "CMD", {},
                                            onDemandEntry("./late.krx", {"late", "Later"}) + startupEntry("./a.cuix"))),
                      "late.krx");
        installModule("late",
                      install("More.bundle", manifestNamed("More", "MORE", {}, onDemandEntry("./x.krx", {"LATE"}))),
                      "x.krx");
    }

    ToolRun graph(std::vector<std::string> arguments = {})
    {
        arguments.insert(arguments.begin(),
                         {"graph", "--program-dir", path("program"), "--vernum", "26.0_1_Linux_test"});
        ToolRun done = runTool(arguments);
        done.output = normalised(done.output);
        return done;
    }
};

TEST_F(GraphTest, WithoutBundlesEveryFormIsAnEmptyPicture)
{
    EXPECT_EQ(graph(), (ToolRun{0, "0 bundles, 0 dependencies\n", ""}));
    EXPECT_EQ(
        graph({"--format", "dot"}),
        (ToolRun{0, "digraph bundles {\n    rankdir=LR;\n    node [fontname=\"sans-serif\", fontsize=11];\n}\n", ""}));
    const json document = json::parse(graph({"--json"}).output);
    EXPECT_EQ(document["nodes"], json::array());
    EXPECT_EQ(graph({"--format", "svg"}).status, 0);
}

TEST_F(GraphTest, EveryFormShowsEverything)
{
    installEverything();
    const std::vector<std::pair<std::string, std::string>> forms = {
        {"tree", "graph.txt"}, {"dot", "graph.dot"}, {"mermaid", "graph.mmd"}, {"svg", "graph.svg"}};
    for (const auto& [form, golden] : forms) {
        const ToolRun done = graph({"--format", form, "--commands", "--menus"});
        EXPECT_EQ(done.status, 1);
        EXPECT_EQ(done.errors, "");
        expectGolden(golden, done.output);
    }
    expectGolden("graph.json", graph({"--json"}).output);
}

TEST_F(GraphTest, GraphvizReadsWhatIsWrittenForIt)
{
    if (!fs::exists("/usr/bin/dot")) {
        GTEST_SKIP() << "Graphviz is not installed";
    }
    for (const char* name : {"graph.dot", "graph-hostile.dot"}) {
        const std::string command =
            "/usr/bin/dot -Tsvg " + std::string(KEST_GOLDEN_FOLDER) + "/" + name + " > " + path("drawn.svg");
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    const std::string drawn = contentOf(path("drawn.svg"));
    for (const char* label : {">\\N \\\\ \\ 1.0<", ">&quot;];}&#45;&#45;&gt;&lt;script&gt;&amp;amp; 1.0<"}) {
        EXPECT_NE(drawn.find(label), std::string::npos) << label;
    }
}

TEST_F(GraphTest, SomeBundlesAreDrawnWithAllThatTheyNeed)
{
    installEverything();
    const std::string drawn = "Left tools 1.0 (Left.bundle): loaded\n"
                              "└─ Base tools 1.0 (Base.bundle): loaded\n"
                              "\n2 bundles, 1 dependency\n";
    for (const std::string& name : {std::string("Left"), std::string("Left.bundle"), plugins() + "Left.bundle/",
                                    std::string("Left tools"), std::string("LEFT")}) {
        EXPECT_EQ(graph({name}), (ToolRun{0, drawn, ""})) << name;
    }
    EXPECT_EQ(graph({"Waiter"}),
              (ToolRun{1,
                       "Waiter tools 1.0 (Waiter.bundle): waiting for a dependency\n"
                       "└─ CycleA tools 1.0 (CycleA.bundle): waiting for a dependency\n"
                       "   ├─ CycleB tools 1.0 (CycleB.bundle): waiting for a dependency\n"
                       "   │  └─ CycleC tools 1.0 (CycleC.bundle): waiting for a dependency\n"
                       "   │     └─ CycleA tools 1.0 (CycleA.bundle): waiting for a dependency (a cycle)\n"
                       "   └─ Base tools 1.0 (Base.bundle): loaded\n"
                       "\nCycle: CycleA tools 1.0 → CycleB tools 1.0 → CycleC tools 1.0 → CycleA tools 1.0\n"
                       "5 bundles, 5 dependencies, 1 cycle\n",
                       ""}));
}

TEST_F(GraphTest, ABundleThatIsNotThereIsWrongUse)
{
    installSound("Gears", "G", {});
    EXPECT_EQ(graph({"Gaers"}),
              (ToolRun{2, "", "kestbundle: No bundle \"Gaers\" is installed; did you mean \"Gears\"?\n"}));
    EXPECT_EQ(graph({""}), (ToolRun{2, "",
                                    "kestbundle: No bundle \"\" is installed; \"kestbundle list\" names them "
                                    "all\n"}));
    EXPECT_EQ(graph({"--format", "dott"}),
              (ToolRun{2, "",
                       "kestbundle: --format: \"dott\" is no format; did you mean \"dot\"?\n"
                       "Run \"kestbundle graph --help\" for how it is used.\n"}));
    EXPECT_EQ(graph({"--format", "png"}).errors,
              "kestbundle: --format: \"png\" is no format; there are tree, dot, mermaid and svg\n"
              "Run \"kestbundle graph --help\" for how it is used.\n");
    EXPECT_EQ(graph({"--format", "dot", "--json"}).status, 2);
}

TEST_F(GraphTest, ATreeOfPlainLettersIsDrawnWithThem)
{
    useLatin1();
    installSound("Base", "B", {});
    install("Größe.bundle", manifestNamed("Größe", "G", {"B"}, ""));
    EXPECT_EQ(graph().output.find("\u251C"), std::string::npos);
    EXPECT_NE(graph().output.find("\n`- Base tools 1.0 (Base.bundle): loaded\n"), std::string::npos) << graph();
    EXPECT_EQ(json::parse(graph({"--json"}).output)["nodes"].size(), 2U);
}

TEST_F(GraphTest, NamesThatWouldUpsetAReaderAreDrawnHarmlessly)
{
    const std::vector<std::string> names = {"&quot;];}--&gt;&lt;script&gt;&amp;amp;",
                                            "\\N \\\\ \\",
                                            "&#10;newline&#9;tab",
                                            "%%{init: x}%% style:a#quot; `md`",
                                            "图纸标注 e\u0301 \u202E rtl",
                                            std::string(3000, 'W')};
    for (std::size_t at = 0; at < names.size(); ++at) {
        install("B" + std::to_string(at) + "\x1B[2J\"<.bundle", manifestNamed(names[at], names[at], {names[at]}, ""));
    }
    for (const auto& [form, golden] : {std::pair<const char*, const char*>{"tree", "graph-hostile.txt"},
                                       {"dot", "graph-hostile.dot"},
                                       {"mermaid", "graph-hostile.mmd"},
                                       {"svg", "graph-hostile.svg"}}) {
        expectGolden(golden, graph({"--format", form}).output);
    }
}

} // namespace
