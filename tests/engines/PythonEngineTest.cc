// Scripts that run as main programs do.
#include "tests/engines/PythonTest.h"

#include <regex>

using standalone::CommandRegistered;
using standalone::EngineStart;

namespace {

class PythonEngineTest : public enginetest::PythonTest
{
};

TEST_F(PythonEngineTest, AScriptRegistersACommandAndPrints)
{
    EXPECT_EQ(printedBy("import kest\n"
                        "def stairs():\n"
                        "    kest.print('17 risers\\n')\n"
                        "accepted = kest.register_command('Stairs', stairs)\n"
                        "kest.print(f'ready: {accepted}, host {kest.host_version()}\\n')\n"),
              "ready: True, host " + running->versionText() + "\n");
    EXPECT_EQ(status, 0);
    ASSERT_EQ(loads().size(), 1U);
    EXPECT_EQ(loads()[0].path, localetext::widen(folder / "script.py"));
    EXPECT_TRUE(loads()[0].loaded);
    EXPECT_EQ(loads()[0].problem, "");
    EXPECT_EQ(running->commands().moduleOf(L"STAIRS"), folder / "script.py");
    const standalone::RunResult result = run(L"stairs");
    EXPECT_TRUE(result.ran);
    EXPECT_EQ(result.problem, "");
    EXPECT_EQ(console, "17 risers\n");
}

TEST_F(PythonEngineTest, TheInterpreterStartsWithTheFirstScriptAndOnce)
{
    EXPECT_TRUE(running->journal().only<EngineStart>().empty());
    printedBy("pass");
    printedBy("pass");
    const auto starts = running->journal().only<EngineStart>();
    ASSERT_EQ(starts.size(), 1U);
    EXPECT_TRUE(std::regex_match(starts[0].description, std::regex(R"(Python 3\.\d+\.\d+)"))) << starts[0].description;
    EXPECT_GT(starts[0].milliseconds, 0);
}

TEST_F(PythonEngineTest, AScriptIsTheMainProgram)
{
    EXPECT_EQ(printedBy("import sys\n"
                        "print(__name__, __file__, __package__, __spec__)\n"
                        "print(sys.modules['__main__'].__file__, sys.argv, sys.path[0])\n"
                        "print(__doc__, sorted(n for n in dir() if not n.startswith('__')))\n",
                        "Contents/script.py"),
              "__main__ /T/Contents/script.py None None\n"
              "/T/Contents/script.py ['/T/Contents/script.py'] /T/Contents\n"
              "None ['sys']\n");
}

TEST_F(PythonEngineTest, AfterAScriptTheMainProgramIsAnother)
{
    printedBy("import sys\nsys.setrecursionlimit(500)\n", "a/script.py");
    EXPECT_EQ(printedBy("import sys\n"
                        "print([p for p in sys.path if p.startswith('/tmp')], sys.getrecursionlimit())\n"
                        "print('leftover' in globals())\n",
                        "b/script.py"),
              "['/T/b'] 1000\nFalse\n");
}

TEST_F(PythonEngineTest, CodingLinesAreHonoured)
{
    EXPECT_EQ(printedBy("# -*- coding: latin-1 -*-\nprint('Ma\xDF')\n"), "Ma\xC3\x9F\n");
    EXPECT_EQ(printedBy("\xEF\xBB\xBFprint('Ma\xC3\x9F')\n"), "Ma\xC3\x9F\n"); // a byte-order mark
}

TEST_F(PythonEngineTest, PathsCommandsAndTextsMayBeOfAnyScript)
{
    EXPECT_EQ(printedBy("import kest\nkest.register_command('图框', lambda: print('边框 ✓'))\n", "图纸/图框.py"), "");
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(run(L"图框").ran);
    EXPECT_EQ(console, "边框 ✓\n");
}

TEST_F(PythonEngineTest, InThePlainLocaleToo)
{
    std::setlocale(LC_ALL, "C");
    ::setenv("LC_ALL", "C", 1);
    EXPECT_EQ(printedBy("import os, kest\n"
                        "print(os.path.basename(__file__))\n"
                        "os.chdir(os.path.dirname(__file__))\n"
                        "print(open('图.txt', 'w').write('边框'), open('图.txt').read())\n"
                        "kest.register_command('图框', lambda: None)\n",
                        "图框.py"),
              "图框.py\n2 边框\n");
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(running->commands().has(L"图框"));
}

TEST_F(PythonEngineTest, ANameInNoEncodingIsOpenedAllTheSame)
{
    EXPECT_EQ(printedBy("import os\nprint(os.fsencode(os.path.basename(__file__)))\n", "a\xFFz.py"), "b'a\\xffz.py'\n");
    EXPECT_EQ(status, 0);
}

TEST_F(PythonEngineTest, ExitStatusZeroIsSuccess)
{
    EXPECT_EQ(printedBy("import sys\nprint('before')\nsys.exit(0)\nprint('after')\n"), "before\n");
    EXPECT_EQ(status, 0);
    printedBy("raise SystemExit\n");
    EXPECT_EQ(status, 0);
    printedBy("exit()\n");
    EXPECT_EQ(status, 0);
}

TEST_F(PythonEngineTest, WhatIsPrintedReachesTheConsoleInOrder)
{
    EXPECT_EQ(printedBy("import sys, kest, os\n"
                        "print('one', end=' ')\n"
                        "kest.print('two ')\n"
                        "sys.stderr.write('three ')\n"
                        "sys.stdout.buffer.write(b'four ')\n"
                        "print('five \\udcff')\n"),
              "one two three four five \\udcff\n");
}

TEST_F(PythonEngineTest, ThereIsNobodyToAsk)
{
    EXPECT_EQ(printedBy("import sys\n"
                        "print(repr(sys.stdin.read()), sys.stdin.isatty(), sys.stdout.isatty())\n"
                        "try: input('name? ')\n"
                        "except EOFError as end: print(end)\n"),
              "'' False False\nname? EOF when reading a line\n");
}

TEST_F(PythonEngineTest, AStreamThatAScriptClosesIsOpenForTheNext)
{
    printedBy("import sys\nsys.stdout.close()\nsys.stderr = None\nsys.stdin.close()\n");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(printedBy("import sys\nprint('here', sys.stdin.read() == '')\nsys.stderr.write('and here\\n')\n"),
              "here True\nand here\n");
}

TEST_F(PythonEngineTest, ModulesBesideAScriptAreItsOwn)
{
    write("a/shapes.py", "name = 'shapes of a'\n");
    write("b/shapes.py", "name = 'shapes of b'\n");
    write("b/parts/__init__.py", "from . import inner\n");
    write("b/parts/inner.py", "name = 'inner of b'\n");
    const std::string script = "import shapes\nprint(shapes.name)\n";
    EXPECT_EQ(printedBy(script, "a/one.py"), "shapes of a\n");
    EXPECT_EQ(printedBy(script + "import parts\nprint(parts.inner.name)\n", "b/one.py"), "shapes of b\ninner of b\n");
    EXPECT_EQ(printedBy(script + "shapes.name = 'shared in a'\n", "a/two.py"), "shapes of a\n");
    EXPECT_EQ(printedBy(script, "a/three.py"), "shared in a\n");
    printedBy("import parts\n", "c/one.py");
    EXPECT_EQ(problem(), "ModuleNotFoundError: No module named 'parts' (one.py, line 1)");
}

TEST_F(PythonEngineTest, ACommandFindsWhatItsScriptFinds)
{
    write("a/late.py", "name = 'late of a'\n");
    write("b/late.py", "name = 'late of b'\n");
    const auto script = [](const std::string& command) {
        return "import sys, kest\n"
               "class Part: pass\n"
               "def run():\n"
               "    import late, pickle\n"
               "    print(late.name, type(pickle.loads(pickle.dumps(Part()))) is Part, sys.argv[0][-8:])\n"
               "kest.register_command('" +
               command + "', run)\n";
    };
    printedBy(script("first"), "a/tool.py");
    printedBy(script("second"), "b/tool.py");
    run(L"FIRST");
    EXPECT_EQ(console, "late of a True /tool.py\n");
    run(L"SECOND");
    EXPECT_EQ(console, "late of b True /tool.py\n");
}

TEST_F(PythonEngineTest, AFolderThatAScriptSharesIsSharedWithTheScriptsAfterIt)
{
    write("a/registry.py", "entries = []\n");
    printedBy("import os, sys\n"
              "sys.path.append(os.path.dirname(__file__))\n"
              "import registry\n"
              "registry.entries.append('from a')\n",
              "a/offer.py");
    EXPECT_EQ(printedBy("import registry\nprint(registry.entries)\n", "b/use.py"), "['from a']\n");
}

TEST_F(PythonEngineTest, ThePythonPathOfTheUserIsSearched)
{
    write("lib/userlib.py", "name = 'of the user'\n");
    ::setenv("PYTHONPATH", (folder / "lib").c_str(), 1);
    EXPECT_EQ(printedBy("import os, userlib\nprint(userlib.name, os.environ['PYTHONPATH'] == os.getenv('PYTHONPATH'))\n"
                        "print([n for n in os.environ if n.startswith('PYTHON')])\n"),
              "of the user True\n['PYTHONPATH']\n");
    EXPECT_EQ(std::getenv("PYTHONHOME"), nullptr);
    EXPECT_EQ(std::getenv("PYTHONUTF8"), nullptr);
    EXPECT_EQ(std::getenv("PYTHONPATH"), folder / "lib");
}

TEST_F(PythonEngineTest, AnotherPythonOnThePathAndInTheEnvironmentMisleadsNobody)
{
    write("bin/python3", "#!/bin/sh\nexit 9\n");
    ::chmod((folder / "bin/python3").c_str(), 0755);
    ::setenv("PATH", (folder / "bin").c_str(), 1);
    ::setenv("PYTHONHOME", folder.path.c_str(), 1);
    EXPECT_EQ(printedBy("import sys, os, json, ctypes\n"
                        "print(sys.executable.startswith('/T'), os.__file__.startswith(sys.prefix))\n"),
              "False True\n");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(std::getenv("PYTHONHOME"), folder.path);
}

TEST_F(PythonEngineTest, AScriptThatIsLoadedAgainReplacesItsCommands)
{
    const auto script = [](const std::string& text) {
        return "import kest\nkest.register_command('SAY', lambda: print('" + text + "'))\n";
    };
    printedBy(script("old"));
    printedBy(script("new"));
    run(L"SAY");
    EXPECT_EQ(console, "new\n");
    EXPECT_EQ(running->journal().only<CommandRegistered>().size(), 1U);
    EXPECT_EQ(printedBy("import kest\nprint(kest.register_command('say', print))\n", "other.py"), "False\n");
    EXPECT_EQ(printedBy("import kest\nprint(kest.register_command('', print))\n", "other.py"), "False\n");
}

TEST_F(PythonEngineTest, ThreadsPrintWhenTheHostComesByNext)
{
    EXPECT_EQ(printedBy("import threading, kest\n"
                        "refused = []\n"
                        "def work():\n"
                        "    kest.print('from a thread\\n')\n"
                        "    refused.append(kest.register_command('LATE', print))\n"
                        "thread = threading.Thread(target=work)\n"
                        "thread.start()\n"
                        "thread.join()\n"
                        "print(refused)\n"),
              "[False]\nfrom a thread\n");
}

TEST_F(PythonEngineTest, NothingIsAskedOfAHostThatIsGone)
{
    const std::string path = write("script.py", "");
    running.reset();
    EXPECT_EQ(load(path), 1);
    EXPECT_EQ(loadPythonFile(nullptr), 1);
}

} // namespace
