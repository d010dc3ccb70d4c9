// The report for people, compared whole.
#include "tests/cli/ToolTest.h"

#include <filesystem>

namespace {

class RunTextTest : public ToolTest
{
};

TEST_F(RunTextTest, AnEmptyHomeIsReportedInFull)
{
    EXPECT_EQ(run(), (ToolRun{0, kHead + R"(
Bundles: none found

Menus: none

Components: none

LISP expressions: none

Commands: none

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: all went well
)",
                              ""}));
}

TEST_F(RunTextTest, BundlesAreReportedWithWhatBecameOfThem)
{
    installModule("greeter", install("Greeter.bundle", manifestOf(startupEntry("./g.krx"), "G")), "g.krx");
    installModule("late", install("Late.bundle", manifestOf(onDemandEntry("./late.krx", {"late", "later"}))),
                  "late.krx");
    installModule("thrower", install("Thrower.bundle", manifestOf(startupEntry("./t.krx"))), "t.krx");
    install("Idle.bundle",
            manifestOf("<DependentBundles><DependentBundle UpgradeCode=\"missing\"/></DependentBundles>" +
                       startupEntry("./x.krx")));
    install("Script.bundle", manifestOf("<Components><ComponentEntry ModuleName=\"./s.py\"/></Components>"));
    install("Wrong.bundle", manifestOf("<RuntimeRequirements OS=\"Plan9\" Architecture=\"test\" SeriesMin=\"99\"/>"));
    install("Broken.bundle", "<ApplicationPackage>\n  <Components>\n</ApplicationPackage>\n");
    std::filesystem::create_symlink("nowhere", plugins() + "Greeter.bundle/../Dangling.bundle");
    std::filesystem::create_directory(plugins() + "Unread.bundle");
    std::filesystem::create_symlink("nowhere", plugins() + "Unread.bundle/PackageContents.xml");
    EXPECT_EQ(run({"--command", "Hello", "--command", "late", "--command", "later", "--command", "nonsense"}),
              (ToolRun{1, kHead + R"(
Printed while starting
  | greeter is here
  | /T/home/.config/ORRELIN/ApplicationPlugins/Thrower.bundle/t.krx: could not be loaded: its entry ended with an exception: no licence

Bundles: 8 found, 6 kept, 2 dropped
  dropped    /T/home/.config/ORRELIN/ApplicationPlugins/Broken.bundle
             File format error
             line 3, column 22: Opening and ending tag mismatch: Components line 2 and ApplicationPackage
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle
             1 module loaded, 3 commands registered
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Idle.bundle
             nothing of it has loaded: its dependencies may be missing or in a cycle, its UpgradeCode may be another bundle's too, or it has no start-up components
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Late.bundle
             2 commands announced
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Script.bundle
             its Python script /T/home/.config/ORRELIN/ApplicationPlugins/Script.bundle/s.py names no PythonVersion, so it is skipped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Thrower.bundle
             1 component failed
  unreadable /T/home/.config/ORRELIN/ApplicationPlugins/Unread.bundle
             its manifest could not be opened: No such file or directory
             it counts as a sound bundle without components
  dropped    /T/home/.config/ORRELIN/ApplicationPlugins/Wrong.bundle
             The product version number of the RuntimeRequirements element is incorrect
             The OS of the RuntimeRequirements element is incorrect

Menus: none

Components
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle/g.krx, N ms
  failed     /T/home/.config/ORRELIN/ApplicationPlugins/Thrower.bundle/t.krx, N ms
             its entry ended with an exception: no licence

LISP expressions: none

Commands
  registered HELLO
             by /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle/g.krx
  registered COLOUR
             by /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle/g.krx
  registered MISHAP
             by /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle/g.krx
  announced  LATE
             for /T/home/.config/ORRELIN/ApplicationPlugins/Late.bundle; its component loads at first use
  announced  LATER
             for /T/home/.config/ORRELIN/ApplicationPlugins/Late.bundle; its component loads at first use

Command "Hello"
  | hello
  | 	and welcome
  done

Command "late"
  | late, but here
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Late.bundle/late.krx, N ms
  done

Command "later"
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Late.bundle/late.krx, N ms
  unknown: what was loaded for it has not registered a command of this name

Command "nonsense"
  unknown: no module has registered a command of this name, and no bundle announces it

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, 4 problems
  /T/home/.config/ORRELIN/ApplicationPlugins/Broken.bundle/PackageContents.xml
    File format error
  /T/home/.config/ORRELIN/ApplicationPlugins/Wrong.bundle/PackageContents.xml
    The product version number of the RuntimeRequirements element is incorrect
  /T/home/.config/ORRELIN/ApplicationPlugins/Wrong.bundle/PackageContents.xml
    The OS of the RuntimeRequirements element is incorrect
  /T/home/.config/ORRELIN/ApplicationPlugins/Thrower.bundle/t.krx
    loading failed

Result: 2 bundles dropped, 1 manifest not readable, 1 component failed, 2 commands unknown or failed
)",
                       ""}));
}

TEST_F(RunTextTest, MenusAreShownAsADifference)
{
    const std::string first = install("First.bundle", manifestOf(startupEntry("./first.cuix"), "1"));
    install("Second.bundle", manifestOf(startupEntry("./second.cuix"), "2"));
    EXPECT_EQ(run(), (ToolRun{0, kHead + R"(
Bundles: 2 found, 2 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/First.bundle
             1 menu
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Second.bundle
             1 menu

Menus: 0 before, 3 after
  + (an empty entry)
  + /T/home/.config/ORRELIN/ApplicationPlugins/First.bundle/first.cuix
  + /T/home/.config/ORRELIN/ApplicationPlugins/Second.bundle/second.cuix

Components: none

LISP expressions: none

Commands: none

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: all went well
)",
                              ""}));
    std::filesystem::remove_all(first);
    install("Third.bundle", manifestOf(startupEntry("./gone.mnu"), "3"));
    EXPECT_EQ(run(), (ToolRun{1, kHead + R"(
Bundles: 2 found, 2 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Second.bundle
             1 menu
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Third.bundle
             1 component failed

Menus: 3 before, 2 after
  - /T/home/.config/ORRELIN/ApplicationPlugins/First.bundle/first.cuix
    (an empty entry)
    /T/home/.config/ORRELIN/ApplicationPlugins/Second.bundle/second.cuix
  failed     /T/home/.config/ORRELIN/ApplicationPlugins/Third.bundle/gone.mnu
             the file cannot be opened: No such file or directory

Components: none

LISP expressions: none

Commands: none

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: 1 menu not converted
)",
                              ""}));
}

TEST_F(RunTextTest, LispExpressionsAreShownWithTheirResults)
{
    installEvaluator();
    install("Lisp.bundle", manifestOf("<Components><ComponentEntry ModuleName=\"./good.lsp\"/>"
                                      "<ComponentEntry ModuleName=\"./broken.lsp\"/></Components>"));
    EXPECT_EQ(run(), (ToolRun{1, kHead + R"(
Printed while starting
  | evaluating (LOAD "/T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle/good.lsp")
  | evaluating (LOAD "/T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle/broken.lsp")
  | (LOAD "/T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle/broken.lsp"): could not be evaluated: the file is broken

Bundles: 1 found, 1 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle
             2 expressions queued

Menus: none

Components: none

LISP expressions
  evaluated  (LOAD "/T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle/good.lsp"), N ms
  failed     (LOAD "/T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle/broken.lsp"), N ms
             the file is broken

Commands: none

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: 1 expression failed
)",
                              ""}));
}

TEST_F(RunTextTest, WithoutAnEvaluatorExpressionsAreRefused)
{
    install("Lisp.bundle", manifestOf(startupEntry("./good.lsp")));
    EXPECT_EQ(run(), (ToolRun{1, kHead + R"(
Bundles: 1 found, 1 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle
             1 component failed

Menus: none

Components: none

LISP expressions
  refused    (LOAD "/T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle/good.lsp")
             no LISP evaluator is installed beside the tool: libKestLispEvaluator.so: cannot open shared object file: No such file or directory; this installation of kestbundle lacks its engine for LISP files

Commands: none

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, 1 problem
  /T/home/.config/ORRELIN/ApplicationPlugins/Lisp.bundle/good.lsp
    loading failed

Result: 1 component failed
)",
                              ""}));
}

TEST_F(RunTextTest, CommandsThatFailAreToldFromUnknownOnes)
{
    installModule("greeter", install("Greeter.bundle", manifestOf(startupEntry("./g.krx"))), "g.krx");
    EXPECT_EQ(run({"--command", "mishap", "--command", "colour"}), (ToolRun{1, kHead + R"(
Printed while starting
  | greeter is here

Bundles: 1 found, 1 kept, 0 dropped
  kept       /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle
             1 module loaded, 3 commands registered

Menus: none

Components
  loaded     /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle/g.krx, N ms

LISP expressions: none

Commands
  registered HELLO
             by /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle/g.krx
  registered COLOUR
             by /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle/g.krx
  registered MISHAP
             by /T/home/.config/ORRELIN/ApplicationPlugins/Greeter.bundle/g.krx

Command "mishap"
  failed: the command ended with an exception: the \x07 bell

Command "colour"
  | \x1B[31mred\x1B[0m \xFF\x0D
  | no line end
  done

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: 1 command unknown or failed
)",
                                                                            ""}));
}

} // namespace
