// Scripts and commands that fail: the host learns why, and lives on.
#include "tests/engines/ProcessState.h"
#include "tests/engines/PythonTest.h"

#include <sys/resource.h>

namespace {

class PythonFailureTest : public enginetest::PythonTest
{
protected:
    /// The next script still runs.
    void expectLife() { EXPECT_EQ(printedBy("print('alive')\n", "next.py"), "alive\n"); }
};

/// A script, and what the host is told of its failure.
struct Failure
{
    const char* name;
    const char* script;
    const char* problem;
};

std::ostream& operator<<(std::ostream& stream, const Failure& failure)
{
    return stream << failure.name;
}

class PythonFailureTableTest : public PythonFailureTest, public testing::WithParamInterface<Failure>
{
};

TEST_P(PythonFailureTableTest, TheScriptFailsWithItsReasonAndTheNextOneRuns)
{
    const std::string printed = printedBy(GetParam().script);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(problem(), GetParam().problem);
    EXPECT_EQ(printed.substr(0, printed.find('\n')),
              "/T/script.py: could not be loaded: " + std::string(GetParam().problem));
    ASSERT_EQ(loads().size(), 1U);
    EXPECT_FALSE(loads()[0].loaded);
    expectLife();
}

INSTANTIATE_TEST_SUITE_P(
    All, PythonFailureTableTest,
    testing::Values(
        Failure{"SyntaxError", "x = 1\nif x\n", "SyntaxError: expected ':' (script.py, line 2)"},
        Failure{"Unbound", "def f():\n    return missing\n\nf()\n",
                "NameError: name 'missing' is not defined (script.py, line 2)"},
        Failure{"MissingModule", "import no_such_module\n",
                "ModuleNotFoundError: No module named 'no_such_module' (script.py, line 1)"},
        Failure{"MissingLibrary", "import ctypes\nctypes.CDLL('libnosuch.so')\n",
                "OSError: libnosuch.so: cannot open shared object file: No such file or directory (script.py, line 2)"},
        Failure{"Recursion", "def f():\n    f()\nf()\n",
                "RecursionError: maximum recursion depth exceeded (script.py, line 2)"},
        Failure{"ExitStatus", "import sys\nsys.exit(3)\n", "it ended with exit status 3"},
        Failure{"ExitText", "import sys\nsys.exit('no  licence\\n')\n", "it ended: no licence"},
        Failure{"Raised", "raise ValueError('first line\\nsecond line')\n",
                "ValueError: first line second line (script.py, line 1)"},
        Failure{"Interrupt", "raise KeyboardInterrupt\n", "KeyboardInterrupt (script.py, line 1)"},
        Failure{"ErrorWithoutText",
                "class Bad(Exception):\n    def __str__(self):\n        raise TypeError\nraise Bad()\n",
                "Bad: <exception str() failed> (script.py, line 4)"},
        Failure{"BadBytes", "x = '\xFF'\n",
                "SyntaxError: (unicode error) 'utf-8' codec can't decode byte 0xff in position 0: invalid start byte "
                "(script.py, line 1)"},
        Failure{"CommandNameOfTheWrongType", "import kest\nkest.register_command(7, print)\n",
                "TypeError: kest.register_command: a name of type str is expected, not int (script.py, line 2)"},
        Failure{"CommandThatIsNoFunction", "import kest\nkest.register_command('X', 'print')\n",
                "TypeError: kest.register_command: a function is expected, not str (script.py, line 2)"},
        Failure{"TextOfTheWrongType", "import kest\nkest.print(b'x')\n",
                "TypeError: kest.print: a str is expected, not bytes (script.py, line 2)"}),
    [](const auto& one) { return std::string(one.param.name); });

TEST_F(PythonFailureTest, TheTracebackStandsOnTheConsoleFromTheScriptOn)
{
    EXPECT_EQ(printedBy("def f():\n    raise KeyError('a')\n\nf()\n"),
              "/T/script.py: could not be loaded: KeyError: 'a' (script.py, line 2)\n"
              "Traceback (most recent call last):\n"
              "  File \"/T/script.py\", line 4, in <module>\n"
              "    f()\n"
              "  File \"/T/script.py\", line 2, in f\n"
              "    raise KeyError('a')\n"
              "KeyError: 'a'\n");
}

TEST_F(PythonFailureTest, AScriptThatIsNotThereAndAFolderFail)
{
    EXPECT_EQ(load(folder / "none.py"), 1);
    EXPECT_EQ(problem(), "FileNotFoundError: [Errno 2] No such file or directory: '/T/none.py'");
    std::filesystem::create_directory(folder / "folder.py");
    EXPECT_EQ(load(folder / "folder.py"), 1);
    EXPECT_EQ(problem(), "IsADirectoryError: [Errno 21] Is a directory: '/T/folder.py'");
    expectLife();
}

TEST_F(PythonFailureTest, ARecursionThatTakesTheStackIsAnErrorWhateverLimitAScriptSets)
{
    for (const char* endless : {"def f(k): return sorted([1], key=f)\nf(1)\n",
                                "class A:\n    def __getattr__(self, n): return getattr(self, n)\nA().x\n",
                                "class B:\n    def __repr__(self): return repr(self)\nrepr(B())\n"}) {
        printedBy(std::string("import sys\nsys.setrecursionlimit(10**8)\n") + endless);
        EXPECT_EQ(status, 1);
        EXPECT_EQ(problem().substr(0, problem().find(':')), "RecursionError") << endless;
    }
    expectLife();
}

TEST_F(PythonFailureTest, CommandsOfAFailedScriptAreForgotten)
{
    const std::string printed = printedBy("import kest\n"
                                          "class Kept:\n"
                                          "    def __del__(self): print('let go')\n"
                                          "    def __call__(self): pass\n"
                                          "kest.register_command('GONE', Kept())\n"
                                          "raise ValueError('no')\n");
    EXPECT_EQ(status, 1);
    EXPECT_NE(printed.find("\nValueError: no\nlet go\n"), std::string::npos) << printed;
    EXPECT_FALSE(running->commands().has(L"GONE"));
}

TEST_F(PythonFailureTest, ACommandThatFailsSaysWhyAndRunsAgain)
{
    printedBy("import kest\n"
              "runs = []\n"
              "def run():\n"
              "    runs.append(1)\n"
              "    print('run', len(runs))\n"
              "    1 / 0\n"
              "kest.register_command('FAIL', run)\n");
    const standalone::RunResult result = run(L"FAIL");
    EXPECT_FALSE(result.ran);
    EXPECT_EQ(result.problem, "ZeroDivisionError: division by zero (script.py, line 6)");
    EXPECT_EQ(normalised(console).substr(0, normalised(console).find("    1 / 0")),
              "run 1\n"
              "the command failed: ZeroDivisionError: division by zero (script.py, line 6)\n"
              "Traceback (most recent call last):\n"
              "  File \"/T/script.py\", line 6, in run\n");
    run(L"FAIL");
    EXPECT_EQ(console.substr(0, 6), "run 2\n");
}

TEST_F(PythonFailureTest, ACommandMayExit)
{
    printedBy("import sys, kest\n"
              "kest.register_command('WELL', lambda: sys.exit())\n"
              "kest.register_command('ILL', lambda: sys.exit(2))\n");
    EXPECT_TRUE(run(L"WELL").ran);
    EXPECT_EQ(run(L"ILL").problem, "it ended with exit status 2");
}

TEST_F(PythonFailureTest, TheProcessIsWhatItWasWhateverAScriptDoesToIt)
{
    const std::vector<std::string> before = enginetest::processState();
    printedBy("import ctypes, locale, os, signal, sys\n"
              "for n in (signal.SIGINT, signal.SIGSEGV, signal.SIGPIPE, signal.SIGCHLD):\n"
              "    signal.signal(n, signal.SIG_IGN)\n"
              "signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGUSR1])\n"
              "locale.setlocale(locale.LC_ALL, 'C')\n"
              "ctypes.CDLL('libm.so.6').feenableexcept(1 | 4)\n"
              "os.chdir('/')\n"
              "for n in (0, 1, 2):\n"
              "    os.close(n)\n"
              "os.open('/dev/null', os.O_RDWR)\n");
    EXPECT_EQ(status, 0) << console;
    EXPECT_EQ(enginetest::processState(), before);
    printedBy("raise ValueError\n");
    EXPECT_EQ(enginetest::processState(), before);
}

TEST_F(PythonFailureTest, WhatTheEngineHasSetUpComesBackAtItsNextVisit)
{
    printedBy("import signal\nsignal.signal(signal.SIGUSR1, lambda *_: print('signalled'))\n");
    EXPECT_EQ(printedBy("import os, signal\nos.kill(os.getpid(), signal.SIGUSR1)\nprint('next')\n"),
              "signalled\nnext\n");
}

TEST_F(PythonFailureTest, ALibraryThatIsNoPythonIsNamed)
{
    setPythonVersion("libm.so.6");
    printedBy("pass");
    EXPECT_EQ(problem().substr(0, 37), "libm.so.6 is no Python 3.8 or later: ");
    setPythonVersion("libnosuch9.so");
    printedBy("pass");
    EXPECT_EQ(problem(),
              "libnosuch9.so cannot be opened: libnosuch9.so: cannot open shared object file: No such file or "
              "directory");
    setPythonVersion(pythonLibrary);
    expectLife();
}

} // namespace
