// What a script leaves running or takes away does not reach the host, nor the scripts after it.
#include "tests/engines/LispTest.h"
#include "tests/engines/ProcessState.h"
#include "tests/engines/PythonTest.h"

#include <csignal>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class PolitePythonTest : public enginetest::PythonTest
{
};

class PoliteLispTest : public enginetest::LispTest
{
};

TEST_F(PolitePythonTest, APipeThatNobodyReadsIsAnErrorOfTheScript)
{
    const auto before = enginetest::processState();
    EXPECT_EQ(printedBy("import os, kest\n"
                        "def spill():\n"
                        "    r, w = os.pipe()\n"
                        "    os.close(r)\n"
                        "    try: os.write(w, b'x')\n"
                        "    except BrokenPipeError as error: print(error)\n"
                        "spill()\n"
                        "kest.register_command('Spill', spill)\n"),
              "[Errno 32] Broken pipe\n");
    EXPECT_EQ(enginetest::processState(), before);
    EXPECT_TRUE(run(L"SPILL").ran);
    EXPECT_EQ(console, "[Errno 32] Broken pipe\n");
    EXPECT_EQ(enginetest::processState(), before);
}

TEST_F(PolitePythonTest, AHostThatHandlesBrokenPipesItselfGoesOnDoingSo)
{
    std::signal(SIGPIPE, [](int) { static_cast<void>(::write(STDERR_FILENO, "", 0)); });
    const auto before = enginetest::processState();
    EXPECT_EQ(printedBy("import signal\nprint(signal.getsignal(signal.SIGPIPE))\n"), "None\n"); // not Python's own
    EXPECT_EQ(enginetest::processState(), before);
}

TEST_F(PolitePythonTest, ATimerThatAScriptLeavesRunningIsStopped)
{
    printedBy("import signal\n"
              "signal.signal(signal.SIGALRM, lambda *_: None)\n"
              "signal.setitimer(signal.ITIMER_REAL, 100)\n"
              "signal.setitimer(signal.ITIMER_PROF, 100, 5)\n");
    EXPECT_EQ(status, 0);
    for (const auto kind : {ITIMER_REAL, ITIMER_PROF}) {
        itimerval timer{};
        ::getitimer(kind, &timer);
        EXPECT_EQ(timer.it_value.tv_sec, 0);
        EXPECT_EQ(timer.it_value.tv_usec, 0);
    }
}

TEST_F(PolitePythonTest, ATimerOfTheHostsGoesOn)
{
    const itimerval asked{{0, 0}, {1000, 0}};
    ::setitimer(ITIMER_VIRTUAL, &asked, nullptr);
    printedBy("pass\n");
    itimerval timer{};
    ::getitimer(ITIMER_VIRTUAL, &timer);
    EXPECT_GT(timer.it_value.tv_sec, 900);
    const itimerval none{};
    ::setitimer(ITIMER_VIRTUAL, &none, nullptr);
}

TEST_F(PolitePythonTest, AProcessThatAScriptStartsHasNothingToRead)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    ASSERT_EQ(::write(ends[1], "for the host\n", 13), 13);
    ASSERT_EQ(::dup2(ends[0], STDIN_FILENO), STDIN_FILENO);
    EXPECT_EQ(printedBy("import subprocess, os\n"
                        "print(subprocess.run(['cat'], capture_output=True).stdout, os.read(0, 100))\n"),
              "b'' b''\n");
    std::array<char, 20> text{};
    EXPECT_EQ(::read(STDIN_FILENO, text.data(), text.size()), 13);
}

TEST_F(PolitePythonTest, AStandardStreamThatWasClosedStaysClosed)
{
    for (const int closed : {STDIN_FILENO, STDOUT_FILENO}) {
        ::close(closed);
    }
    EXPECT_EQ(printedBy("print('heard')\n"), "heard\n");
    EXPECT_EQ(status, 0) << problem();
    EXPECT_EQ(::fcntl(STDIN_FILENO, F_GETFD), -1);
    EXPECT_EQ(::fcntl(STDOUT_FILENO, F_GETFD), -1);
}

TEST_F(PolitePythonTest, WhenDescriptorsRunOutTheStreamsOfTheHostStayOpen)
{
    const auto before = enginetest::processState();
    printedBy("import os\n"
              "kept = []\n"
              "try:\n"
              "    while True: kept.append(os.open('/dev/null', os.O_RDONLY))\n"
              "except OSError: pass\n");
    EXPECT_EQ(printedBy("print('heard')\n", "next.py").find("heard"), std::string::npos); // it cannot be opened
    EXPECT_EQ(enginetest::processState(), before);
    for (int number = 3; number < 5000; ++number) {
        ::close(number);
    }
}

TEST_F(PolitePythonTest, AForkedChildEndsWhereTheScriptEnds)
{
    const std::string fork = "import os, sys\n"
                             "def childEndingBy(action):\n"
                             "    child = os.fork()\n"
                             "    if child == 0: action()\n"
                             "    return child\n";
    EXPECT_EQ(printedBy(fork + "child = childEndingBy(lambda: sys.exit(3))\n"
                               "if child: print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))\n"),
              "3\n");
    EXPECT_EQ(printedBy(fork + "child = childEndingBy(lambda: None)\n"
                               "if child: print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))\n"),
              "0\n");
    EXPECT_EQ(printedBy(fork + "child = childEndingBy(lambda: 1/0)\n"
                               "if child: print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))\n"),
              "1\n");
}

TEST_F(PolitePythonTest, WhatAScriptTakesFromAllIsThereForTheNext)
{
    for (const std::string damage :
         {"import sys\nsys.path[:] = ['/nowhere']\n", "import sys\nsys.path = None\n",
          "import sys\nsys.modules.clear()\n", "import sys\ndel sys.modules['kest'], sys.modules['os']\n",
          "import sys\nsys.stdout.detach()\n", "import builtins\nbuiltins.open = None\n"}) {
        printedBy(damage, "damage.py");
        EXPECT_EQ(status, 0) << damage << problem();
        EXPECT_EQ(printedBy("import kest, os, wave\nprint(wave.__name__)\n", "next.py"), "wave\n") << damage;
    }
}

TEST_F(PolitePythonTest, TheEnginesOwnFunctionsCannotBeTakenAway)
{
    printedBy("import sys, gc\n"
              "engine = sys.modules['kest_engine']\n"
              "engine.load = engine.run_command = engine.end = None\n"
              "gc.collect()\n");
    EXPECT_EQ(printedBy("print('alive')\n", "next.py"), "alive\n");
}

TEST_F(PolitePythonTest, VariablesThatPythonDislikesDoNotEndTheProcess)
{
    for (const char* name : {"PYTHONHASHSEED", "PYTHONMALLOC", "PYTHONIOENCODING", "PYTHONPLATLIBDIR",
                             "PYTHONTRACEMALLOC", "PYTHONINTMAXSTRDIGITS"}) {
        ::setenv(name, "nonsense", 1);
    }
    EXPECT_EQ(printedBy("import os\nprint(os.environ['PYTHONHASHSEED'])\n"), "nonsense\n"); // children get them
    EXPECT_STREQ(std::getenv("PYTHONMALLOC"), "nonsense");
}

TEST_F(PolitePythonTest, WhatTheUserHasInstalledCannotKeepPythonFromStarting)
{
    write(".local/lib/python3.11/site-packages/own_module.py", "text = 'own'\n");
    write(".local/lib/python3.11/site-packages/usercustomize.py", "import sys\nsys.exit(3)\n");
    write(".local/lib/python3.11/site-packages/bad.pth", "import sys; sys.exit(4)\n");
    ::setenv("HOME", folder.path.c_str(), 1);
    if (pythonLibrary != "libpython3.11.so") {
        GTEST_SKIP() << "the folder is for Python 3.11";
    }
    EXPECT_EQ(printedBy("import own_module\nprint(own_module.text)\n"), "own\n");
}

TEST_F(PolitePythonTest, AnExitWithWhatHasNoTextIsAFailureThatSaysSo)
{
    printedBy("import sys\n"
              "class Mute:\n"
              "    def __str__(self): raise ValueError\n"
              "sys.exit(Mute())\n");
    EXPECT_EQ(problem(), "it ended with an object of type Mute that has no text");
}

TEST_F(PolitePythonTest, APipeInPlaceOfAScriptIsRefused)
{
    ASSERT_EQ(::mkfifo((folder / "pipe.py").c_str(), 0600), 0);
    EXPECT_EQ(load(folder / "pipe.py"), 1);
    EXPECT_EQ(problem(), "OSError: it is no regular file");
}

TEST_F(PolitePythonTest, OpenFilesAreWrittenAtTheEndPastAProxyOfWhatIsGone)
{
    const std::string written = folder / "written.txt";
    const pid_t child = ::fork();
    if (child == 0) {
        printedBy("import weakref\n"
                  "class Gone: pass\n"
                  "proxies = [weakref.proxy(Gone()) for _ in range(100)]\n"
                  "kept = open('" +
                  written +
                  "', 'w')\n"
                  "kept.write('all')\n");
        std::exit(status); // NOLINT(concurrency-mt-unsafe): this process has one thread
    }
    int ended = -1;
    ::waitpid(child, &ended, 0);
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(standalonetest::fileContent(written), "all");
}

TEST_F(PoliteLispTest, APipeThatNobodyReadsIsAnErrorOfTheFile)
{
    const auto before = enginetest::processState();
    const std::string problem = evaluate("(let ((to (ext:run-program \"true\" nil :input :stream :wait t)))"
                                         "  (dotimes (i 100) (write-line \"text\" to) (finish-output to)))");
    EXPECT_NE(problem, "");
    EXPECT_EQ(enginetest::processState(), before);
    EXPECT_EQ(printedBy("(kest-print \"alive\")"), "alive");
}

TEST_F(PoliteLispTest, AChangedReadtableOrPrinterStaysWithItsFile)
{
    for (const std::string change :
         {"(set-macro-character #\\\" (lambda (s c) (declare (ignore s c)) (error \"mine\")))",
          "(set-macro-character #\\( (lambda (s c) (declare (ignore s c)) (error \"mine\")))",
          "(setf (readtable-case *readtable*) :preserve)", "(shadow 'load)", "(unuse-package \"CL\" \"CL-USER\")",
          "(setf *print-base* 2 *print-radix* t *print-length* 1 *read-default-float-format* 'double-float)"}) {
        ASSERT_EQ(load(write("change.lsp", change + "\n")), "") << change;
        EXPECT_EQ(load(write("next.lsp", "(kest-print (format nil \"~S ~S\" '(10 11) 1.5))\n")), "") << change;
        EXPECT_EQ(console, "(10 11) 1.5") << change;
    }
}

TEST_F(PoliteLispTest, AMacroCharacterOfAFileThatAnotherLoadsIsTheOthersToo)
{
    write("macro.lsp", "(set-macro-character #\\! (lambda (s c) (declare (ignore s c)) 42))\n");
    EXPECT_EQ(load(write("user.lsp", "(load \"" + folder.path + "/macro.lsp\")\n(kest-print (princ-to-string !))\n")),
              "");
    EXPECT_EQ(console, "42");
}

TEST_F(PoliteLispTest, ThreadsAreRefused)
{
    const std::string refused = "A script of this host has no threads of its own.";
    EXPECT_EQ(evaluate("(mp:process-run-function \"one\" (lambda () 1))"), refused);
    EXPECT_EQ(evaluate("(mp:process-enable (mp:make-process))"), refused);
}

TEST_F(PoliteLispTest, AnErrorWithoutAReportIsAFailureAllTheSame)
{
    EXPECT_EQ(evaluate("(error \"\")"), "SIMPLE-ERROR");
    EXPECT_EQ(evaluate("(error \" ~%\")"), "SIMPLE-ERROR");
    EXPECT_EQ(load(write("silent.lsp", "(error \"\")\n")), "SIMPLE-ERROR (/T/silent.lsp, line 1)");
}

} // namespace
