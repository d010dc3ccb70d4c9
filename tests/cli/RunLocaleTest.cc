// The report for people in the locales that people have, and names that would act on a terminal.
#include "tests/cli/ToolTest.h"

namespace {

class RunLocaleTest : public ToolTest
{
};

TEST_F(RunLocaleTest, NamesWithTerminalEscapesAreShownEscaped)
{
    install("\x1B[31mRed\n\xFF.bundle", manifestOf("<RuntimeRequirements OS=\"Plan9\" Architecture=\"test\"/>"));
    EXPECT_EQ(run(), (ToolRun{1, kHead + R"(
Bundles: 1 found, 0 kept, 1 dropped
  dropped    /T/home/.config/ORRELIN/ApplicationPlugins/\x1B[31mRed\x0A\xFF.bundle
             The OS of the RuntimeRequirements element is incorrect

Menus: none

Components: none

LISP expressions: none

Commands: none

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, 1 problem
  /T/home/.config/ORRELIN/ApplicationPlugins/\x1B[31mRed\x0A\xFF.bundle/PackageContents.xml
    The OS of the RuntimeRequirements element is incorrect

Result: 1 bundle dropped
)",
                              ""}));
}

TEST_F(RunLocaleTest, TheLocalesOwnEncodingIsHonoured)
{
    useLatin1();
    install("R\xF6hre.bundle", manifestOf(startupEntry("./\xE9\xBD\xBF.krx")));
    const ToolRun done = run();
    const auto expectLine = [&](const std::string& line) {
        EXPECT_NE(done.output.find("\n" + line + "\n"), std::string::npos) << line << "\n" << done;
    };
    expectLine("  kept       /T/home/.config/ORRELIN/ApplicationPlugins/R\xF6hre.bundle");
    expectLine("  failed     /T/home/.config/ORRELIN/ApplicationPlugins/R\xF6hre.bundle/\\u{9F7F}.krx, N ms");
}

TEST_F(RunLocaleTest, OtherLanguagesAreShownInAnyLocale)
{
    install("\xE9\xBD\xBF\xE8\xBD\xAE.bundle", manifestOf(""));
    for (const char* locale : {"LC_ALL=C.UTF-8", "LC_ALL=C", "LC_ALL=POSIX", "LC_ALL=xx_YY", "LC_CTYPE=C"}) {
        environment[1] = locale;
        EXPECT_EQ(run(), (ToolRun{0, kHead + R"(
Bundles: 1 found, 1 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/齿轮.bundle
             nothing of it has loaded: its dependencies may be missing or in a cycle, its UpgradeCode may be another bundle's too, or it has no start-up components

Menus: none

Components: none

LISP expressions: none

Commands: none

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: all went well
)",
                                  ""}))
            << locale;
    }
}

} // namespace
