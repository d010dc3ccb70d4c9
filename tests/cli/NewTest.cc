// `kestbundle new`: what it makes loads, once it was built as it says. What it refuses: NewRefusalTest.
#include "tests/cli/ToolTest.h"

#include <dlfcn.h>
#include <filesystem>
#include <regex>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class NewTest : public ToolTest
{
protected:
    /// The tool has beside it what an installation has: the header for modules and the assembly for assemblies.
    NewTest()
    {
        installEngines();
        // The compiler of the machine that the tool is for, also for who calls it by its usual name.
        fs::create_directories(path("compiler"));
        fs::create_symlink(KEST_CXX, path("compiler/c++"));
        fs::create_directories(path("tool/include"));
        fs::create_directory_symlink(KEST_BUILD_FOLDER "/include/kestbundle", path("tool/include/kestbundle"));
        fs::create_directory_symlink(KEST_ENGINE_FOLDER "/kest", path("tool/lib/kest"));
    }

    /// Runs `kestbundle new` with these arguments and "--json", and returns what it says.
    json make(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), {"new", "--json"});
        const ToolRun done = runTool(arguments);
        EXPECT_EQ(done.status, 0) << done;
        EXPECT_EQ(done.errors, "");
        return json::parse(done.output, nullptr, false);
    }

    /// Does the steps of this kind as a person would.
    void doSteps(const json& made, const std::string& kind) const
    {
        for (const json& step : made["next"]) {
            if (step["kind"] == kind) {
                const std::string command = "cd '" + root + "' && export CXX='" KEST_CXX "' PATH='" + path("compiler") +
                                            "':\"$PATH\" && exec > '" + path("log") + "' 2>&1 && " +
                                            step["command"].get<std::string>();
                EXPECT_EQ(std::system(command.c_str()), 0) << command << "\n" << contentOf(path("log"));
            }
        }
    }

    /// Runs all commands of the bundle, and expects each to greet in the name of `name`.
    void expectGreetings(const json& made, const std::string& name)
    {
        std::vector<std::string> arguments;
        json expected = json::array();
        for (const json& command : made["commands"]) {
            arguments.insert(arguments.end(), {"--command", command["name"]});
            expected.push_back({{"name", command["name"]},
                                {"outcome", "done"},
                                {"loadRequested", true},
                                {"problem", nullptr},
                                {"output", "Hello from " + name + ", on host 26.0_1_Linux_test\n"}});
        }
        const json report = runJson(arguments);
        EXPECT_EQ(report["commandRuns"], expected);
        EXPECT_EQ(report["exitStatus"], 0) << report;
        EXPECT_EQ(report["log"]["records"], json::array());
    }

    /// Makes a bundle of one kind among the user's own, builds it and uses its command.
    void expectThatOneOf(const std::string& kind)
    {
        const json made = make({"Hello", "--install", "--kind", kind});
        EXPECT_EQ(made["commands"], json({{{"name", "HELLO"}, {"kind", kind}}}));
        doSteps(made, "build");
        expectGreetings(made, "Hello");
    }
};

bool isPythonThere()
{
    void* library = ::dlopen("libpython3.11.so", RTLD_LAZY);
    return library != nullptr && ::dlclose(library) == 0;
}

TEST_F(NewTest, ANativeModuleLoadsWhenItIsBuilt)
{
    expectThatOneOf("native");
}

TEST_F(NewTest, ALispFileLoads)
{
    if (!KEST_HAS_LISP) {
        GTEST_SKIP() << "built without the LISP evaluator";
    }
    expectThatOneOf("lisp");
}

TEST_F(NewTest, APythonScriptLoadsWithThePythonThatIsInstalled)
{
    if (!isPythonThere()) {
        GTEST_SKIP() << "libpython3.11.so is not installed";
    }
    expectThatOneOf("python");
}

TEST_F(NewTest, AnAssemblyLoadsWhenItIsCompiled)
{
    if (!KEST_HAS_MANAGED) {
        GTEST_SKIP() << "built without the engine for managed assemblies";
    }
    expectThatOneOf("managed");
}

TEST_F(NewTest, AMenuIsRegistered)
{
    make({"Hello", "--install", "--kind", "menus"});
    const json report = runJson();
    EXPECT_EQ(report["menus"]["added"],
              json({"", "/T/home/.config/ORRELIN/ApplicationPlugins/Hello.bundle/Contents/menu.cuix"}));
    EXPECT_EQ(report["exitStatus"], 0);
}

TEST_F(NewTest, ABundleOfEveryKindLoadsAsAWholeWhereverItWasMade)
{
    if (KEST_HAS_LISP + KEST_HAS_MANAGED < 2 || !isPythonThere()) {
        GTEST_SKIP() << "not every engine is there";
    }
    // What could be taken for something else in XML, C++, LISP, Python, C#, CMake, make, a shell or a template.
    const std::string name = "R&D <5> 图纸 'x' $HOME `id` 100% #1 (a=b) @COMMAND@: [1] {2} ~a";
    const json made = make({name, "--kind", "menus,managed,python", "--kind", "lisp", "--kind", "native"});
    EXPECT_EQ(made["folder"], root + "/" + name + ".bundle");
    const std::string command = "RD5图纸XHOMEID1001ABCOMMAND12A";
    EXPECT_EQ(made["commands"], json({{{"name", command + "-NATIVE"}, {"kind", "native"}},
                                      {{"name", command + "-LISP"}, {"kind", "lisp"}},
                                      {{"name", command + "-PYTHON"}, {"kind", "python"}},
                                      {{"name", command + "-MANAGED"}, {"kind", "managed"}}}));
    doSteps(made, "build");
    doSteps(made, "install");
    expectGreetings(made, name);
}

/// `text` without what is another in each run or on each machine.
std::string withoutChance(std::string text, const json& made)
{
    const std::string code = made["productCode"];
    text.replace(text.find(code), code.size(), "{PRODUCT}");
    return std::regex_replace(text, std::regex("\"python3\\.[0-9]+\""), "\"python3.N\"");
}

TEST_F(NewTest, TheFilesOfABundleOfEveryKindAreThese)
{
    const json made = make({"Tür & Tor", "--upgrade-code", "{<\"U\">}", "--kind", "native,lisp,python,managed,menus"});
    std::string all;
    for (const json& file : made["files"]) {
        const std::string name = file;
        all += "=== " + name + "\n" + contentOf(path("Tür & Tor.bundle/" + name));
    }
    EXPECT_EQ(withoutChance(all, made), contentOf(KEST_GOLDEN_FOLDER "/new-every-kind.txt"));
}

TEST_F(NewTest, WhatWasMadeAndWhatComesNextIsSaid)
{
    const ToolRun done = runTool({"new", "Hello.Bundle", "--kind", "native"});
    EXPECT_EQ(done.status, 0) << done;
    EXPECT_EQ(normalised(done.output),
              "Made /T/Hello.bundle\n"
              "  Source/commands.cc\n"
              "  Source/CMakeLists.txt\n"
              "  PackageContents.xml\n"
              "Next\n"
              "  build      cmake -S /T/Hello.bundle/Source -B /T/Hello.bundle/Source/build "
              "-DCMAKE_PREFIX_PATH=/T/tool && cmake --build /T/Hello.bundle/Source/build\n"
              "  check      kestbundle check /T/Hello.bundle\n"
              "  install    mkdir -p /T/home/.config/ORRELIN/ApplicationPlugins && ln -s /T/Hello.bundle "
              "/T/home/.config/ORRELIN/ApplicationPlugins\n"
              "  run        kestbundle run --command HELLO\n");
    EXPECT_EQ(done.errors, "");
}

TEST_F(NewTest, TheJsonDocumentSaysAllOfIt)
{
    write(path("other/x"), "");
    const json made = make({"Maßstäbe 1:5", "--kind", "managed,lisp", "--home", path("other"), "--install"});
    const std::string folder = "/T/other/.config/ORRELIN/ApplicationPlugins/Maßstäbe 1:5.bundle";
    const json expected = {
        {"format", 1},
        {"version", KEST_VERSION},
        {"exitStatus", 0},
        {"folder", folder},
        {"name", "Maßstäbe 1:5"},
        {"upgradeCode", made["upgradeCode"]},
        {"productCode", made["productCode"]},
        {"files", {"Contents/commands.lsp", "Source/commands.cs", "PackageContents.xml"}},
        {"commands",
         {{{"name", "MAßSTÄBE15-LISP"}, {"kind", "lisp"}}, {{"name", "MAßSTÄBE15-MANAGED"}, {"kind", "managed"}}}},
        {"next",
         {{{"kind", "build"},
           {"command", "mcs -target:library -codepage:utf8 -reference:/T/tool/lib/kest/Kest.dll -out:'" + folder +
                           "/Contents/commands.dll' '" + folder + "/Source/commands.cs'"}},
          {{"kind", "check"}, {"command", "kestbundle check '" + folder + "'"}},
          {{"kind", "run"},
           {"command", "kestbundle run --home /T/other --command 'MAßSTÄBE15-LISP' --command 'MAßSTÄBE15-MANAGED'"}}}}};
    EXPECT_EQ(json::parse(normalised(made.dump())), expected);
}

TEST_F(NewTest, EachBundleHasCodesOfItsOwn)
{
    const json one = make({"One"});
    const json other = make({"Other"});
    for (const char* code : {"upgradeCode", "productCode"}) {
        EXPECT_TRUE(
            std::regex_match(one[code].get<std::string>(),
                             std::regex("\\{[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\\}")))
            << one;
        EXPECT_NE(one[code], other[code]);
    }
    EXPECT_NE(one["upgradeCode"], one["productCode"]);
}

TEST_F(NewTest, WithRequirementsTheBundleFitsTheHostOfThisMachineAndNoOther)
{
    make({"Hello", "--install", "--kind", "menus", "--requirements"});
    const ToolRun here = runTool({"run", "--json", "--program-dir", path("program")});
    EXPECT_EQ(json::parse(here.output)["bundles"][0]["state"], "kept") << here;
    const json elsewhere = runJson();
    EXPECT_EQ(elsewhere["bundles"][0]["reasons"],
              json({"The architecture of the RuntimeRequirements element is incorrect"}));
}

TEST_F(NewTest, InALocaleWithAnotherEncodingTheFolderIsNamedInItAndTheFilesAreUtf8)
{
    useLatin1();
    const json made = make({"T\xFCr"});
    EXPECT_EQ(made["name"], "Tür");
    EXPECT_EQ(made["commands"][0]["name"], "TÜR");
    EXPECT_NE(contentOf(path("T\xFCr.bundle/PackageContents.xml")).find(" Name=\"Tür\""), std::string::npos);
    EXPECT_NE(contentOf(path("T\xFCr.bundle/Contents/commands.lsp")).find("\"TÜR\""), std::string::npos);
}

} // namespace
