// Bundles made to upset "check", the terminal or whoever reads its report.
#include "tests/cli/ToolTest.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

class CheckHostileTest : public ToolTest
{
protected:
    CheckHostileTest() { installEvaluator(); }

    void bundle(const std::string& name, const std::string& content) const
    {
        write(path("bundles/" + name + "/PackageContents.xml"),
              "<ApplicationPackage Name=\"Tools\" AppVersion=\"1\" UpgradeCode=\"{T}\">" + content +
                  "</ApplicationPackage>\n");
    }

    ToolRun check(const std::string& format = "text") { return runTool({"check", "--format", format, "bundles"}); }
};

bool isControl(char one)
{
    const auto byte = static_cast<unsigned char>(one);
    return (byte < ' ' && one != '\n') || byte == 0x7F;
}

std::string repeated(const std::string& text, int count)
{
    std::string all;
    for (int index = 0; index < count; ++index) {
        all += text;
    }
    return all;
}

TEST_F(CheckHostileTest, NamesWithEscapesReachNoTerminalAndNoReader)
{
    bundle("A\x1B[31mB\nC\xFF.bundle", "<X\xC2\x9B/><Components><ComponentEntry ModuleName=\"./&#x9;&#xA;\xC2\x9B"
                                       "31m.krx\"/></Components>");
    const ToolRun text = check();
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.errors, "");
    EXPECT_EQ(std::count_if(text.output.begin(), text.output.end(), isControl), 0) << text;
    EXPECT_EQ(text.output.find("\xC2\x9B"), std::string::npos) << text;
    for (const char* format : {"json", "sarif"}) {
        EXPECT_TRUE(nlohmann::json::accept(check(format).output)) << format;
    }
}

TEST_F(CheckHostileTest, AHundredThousandComponentsAreSummedUp)
{
    bundle("Many.bundle",
           "<Components>" + repeated("<ComponentEntry ModuleName=\"./a.lsp\"/>\n", 100'000) + "</Components>");
    const ToolRun run = check();
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.output.find("PackageContents.xml:101:1"), std::string::npos);
    EXPECT_NE(run.output.find("error: 99900 more findings of this kind are not shown. [KB801 file-missing]\n"),
              std::string::npos);
    EXPECT_EQ(run.output.substr(run.output.rfind('\n', run.output.size() - 2) + 1),
              "1 bundle checked: 101 errors in it.\n");
}

TEST_F(CheckHostileTest, LinksInCirclesAreFaultsAndNoRoads)
{
    fs::create_directories(path("bundles/Manifest.bundle"));
    fs::create_symlink("PackageContents.xml", path("bundles/Manifest.bundle/PackageContents.xml"));
    fs::create_symlink("Self.bundle", path("bundles/Self.bundle"));
    bundle("Tree.bundle", "<Components><ComponentEntry ModuleName=\"./again/again/a.lsp\"/></Components>");
    fs::create_symlink(".", path("bundles/Tree.bundle/again"));
    write(path("bundles/Tree.bundle/a.lsp"), "(princ)\n");
    const ToolRun run = check();
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.output.find("bundles/Manifest.bundle/PackageContents.xml: error: "), std::string::npos) << run;
    EXPECT_NE(run.output.find("bundles/Self.bundle: error: "), std::string::npos) << run;
    EXPECT_EQ(run.output.find("bundles/Tree.bundle"), std::string::npos) << run;
}

TEST_F(CheckHostileTest, NestingWithoutEndIsAMalformedManifest)
{
    bundle("Deep.bundle", repeated("<A>", 100'000));
    const ToolRun run = check();
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.output.find("The elements are nested deeper than 256 levels"), std::string::npos) << run;
}

TEST_F(CheckHostileTest, TextsWithoutMeasureAreCutInSentences)
{
    bundle("Long.bundle",
           "<Components><ComponentEntry ModuleName=\"./" + std::string(1'000'000, 'x') + ".krx\"/></Components>");
    const ToolRun run = check();
    EXPECT_EQ(run.status, 1);
    EXPECT_LT(run.output.size(), 5000U);
}

TEST_F(CheckHostileTest, APipeInPlaceOfAFileIsNotWaitedFor)
{
    bundle("Pipe.bundle", "<Components><ComponentEntry ModuleName=\"./a.krx\"/></Components>");
    ASSERT_EQ(::mkfifo(path("bundles/Pipe.bundle/a.krx").c_str(), 0600), 0);
    EXPECT_EQ(check().output, "bundles/Pipe.bundle/PackageContents.xml:1:95: error: The file \"./a.krx\" cannot be "
                              "read: it is not a regular file. [KB803 file-not-readable]\n"
                              "    Put a regular file there that everybody may read.\n"
                              "1 bundle checked: 1 error in it.\n");
}

} // namespace
