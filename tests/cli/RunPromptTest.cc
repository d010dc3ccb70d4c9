// The prompt, with the report around it.
#include "tests/cli/ToolTest.h"

namespace {

class RunPromptTest : public ToolTest
{
};

TEST_F(RunPromptTest, ThePromptRunsCommandsUntilQuit)
{
    installModule("greeter", install("Greeter.bundle", manifestOf(startupEntry("./g.krx"))), "g.krx");
    EXPECT_EQ(run({"--interactive", "--command", "colour"}, "?\n\n  hello \r\nquit\nhello\n"), (ToolRun{0, kHead + R"(
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

Command "colour"
  | \x1B[31mred\x1B[0m \xFF\x0D
  | no line end
  done

> COLOUR
HELLO
MISHAP

> 
> 
Command "hello"
  | hello
  | 	and welcome
  done

> 
Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: all went well
)",
                                                                                                        ""}));
    EXPECT_EQ(run({"--interactive"}, "hello"), (ToolRun{0, kHead + R"(
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

> 
Command "hello"
  | hello
  | 	and welcome
  done

> 

Error log: /T/home/.config/ORRELIN/BundleErrorLog.txt
  begun TIME, no problems

Result: all went well
)",
                                                        ""}))
        << "the end of the input ends it too";
}

} // namespace
