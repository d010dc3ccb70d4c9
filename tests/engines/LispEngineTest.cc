// The LISP evaluator as a guest: when it starts, what it leaves behind, and what it exports.
#include "tests/engines/LispTest.h"
#include "tests/engines/ProcessState.h"

using standalone::EngineStart;

namespace {

class LispEngineTest : public enginetest::LispTest
{
protected:
    static bool isOpen() { return ::dlopen(KEST_ENGINE_FOLDER "/libKestLispEvaluator.so", RTLD_LAZY | RTLD_NOLOAD); }
};

TEST_F(LispEngineTest, AHostThatQueuesNothingDoesNotOpenIt)
{
    EXPECT_TRUE(running->lispQueue().evaluateQueued().empty());
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(evaluate("(+ 1 2)"), "");
    EXPECT_TRUE(isOpen());
}

TEST_F(LispEngineTest, TheFirstEvaluationTellsTheStartAndLaterOnesDoNot)
{
    EXPECT_EQ(evaluate("(+ 1 2)"), "");
    EXPECT_EQ(evaluate("(+ 1 2)"), "");
    const auto starts = running->journal().only<EngineStart>();
    ASSERT_EQ(starts.size(), 1U);
    EXPECT_EQ(starts[0].description, "LISP (ECL " + printedBy("(princ (lisp-implementation-version))") + ")");
    EXPECT_GT(starts[0].milliseconds, 0);
}

TEST_F(LispEngineTest, TheProcessIsAsItWasAfterTheStart)
{
    const auto before = enginetest::processState();
    EXPECT_EQ(evaluate("(+ 1 2)"), "");
    EXPECT_EQ(enginetest::processState(), before);
}

TEST_F(LispEngineTest, TheProcessIsAsItWasAfterAFileThatChangesIt)
{
    const auto before = enginetest::processState();
    const std::string path = write("rude.lsp", "(ext:chdir \"/\")\n(si:trap-fpe t t)\n(si:trap-fpe t nil)\n"
                                               "(setq *default-pathname-defaults* #P\"/nowhere/\")\n"
                                               "(setq *standard-output* (make-broadcast-stream))\n"
                                               "(setq *package* (find-package \"KEYWORD\"))\n");
    EXPECT_EQ(load(path), "");
    EXPECT_EQ(enginetest::processState(), before);
    EXPECT_EQ(printedBy("(princ (package-name *package*))"), "COMMON-LISP-USER");
}

TEST_F(LispEngineTest, AnExpressionBeginsInTheUsersPackageWhateverTheLastOneChose)
{
    EXPECT_EQ(evaluate("(setq *package* (find-package \"KEYWORD\"))"), "");
    EXPECT_EQ(printedBy("(princ (package-name *package*))"), "COMMON-LISP-USER");
}

TEST_F(LispEngineTest, TheProcessIsAsItWasAfterErrors)
{
    evaluate("(+ 1 2)");
    const auto before = enginetest::processState();
    EXPECT_EQ(evaluate("(/ 1.0 0.0)"), "DIVISION-BY-ZERO");
    EXPECT_EQ(enginetest::processState(), before);
    EXPECT_NE(evaluate("(labels ((f (x) (+ 1 (f x)))) (f 1))"), "");
    EXPECT_EQ(enginetest::processState(), before);
}

TEST_F(LispEngineTest, TheEnvironmentIsAsItWas)
{
    ::unsetenv("GC_MARKERS");
    EXPECT_EQ(evaluate("(+ 1 2)"), "");
    EXPECT_EQ(std::getenv("GC_MARKERS"), nullptr);
}

TEST_F(LispEngineTest, AVariableThatWasSetKeepsItsValue)
{
    ::setenv("GC_MARKERS", "2", 1);
    EXPECT_EQ(evaluate("(+ 1 2)"), "");
    EXPECT_STREQ(std::getenv("GC_MARKERS"), "2");
}

TEST_F(LispEngineTest, TheLimitOfTheStackIsAsItWasAfterAFullOne)
{
    rlimit before{};
    ::getrlimit(RLIMIT_STACK, &before);
    EXPECT_EQ(evaluate("(let ((l nil)) (dotimes (i 1000000) (setq l (list l))) (copy-tree l))"),
              "The stack is full: the recursion is too deep.");
    rlimit after{};
    ::getrlimit(RLIMIT_STACK, &after);
    EXPECT_EQ(after.rlim_cur, before.rlim_cur);
}

TEST_F(LispEngineTest, WithoutAHostItEvaluatesPrintsNothingAndRegistersNothing)
{
    running.reset();
    char problem[200] = "";
    const auto evaluate = evaluator();
    EXPECT_EQ(evaluate("(kest-print \"lost\")(print 1)", problem, sizeof problem), 0);
    EXPECT_EQ(evaluate("(error \"~S\" (kest-register-command \"a\" (lambda () 1)))", problem, sizeof problem), 1);
    EXPECT_STREQ(problem, "NIL");
    EXPECT_EQ(evaluate("(error \"~S\" (kest-host-version))", problem, sizeof problem), 1);
    EXPECT_STREQ(problem, "\"\"");
    EXPECT_EQ(console, "");
}

TEST_F(LispEngineTest, AProblemThatIsTooLongIsCutWhereACharacterBegins)
{
    char problem[5] = "....";
    EXPECT_EQ(evaluator()("(error \"ab\u20AC\")", problem, sizeof problem), 1); // the third character needs three bytes
    EXPECT_STREQ(problem, "ab");
    char exact[6] = ".....";
    EXPECT_EQ(evaluator()("(error \"ab\u20AC\")", exact, sizeof exact), 1);
    EXPECT_STREQ(exact, "ab\u20AC");
    EXPECT_EQ(evaluator()("(error \"ab\")", nullptr, 0), 1);
}

TEST_F(LispEngineTest, AllExpressionsAndFilesShareOneWorld)
{
    EXPECT_EQ(load(write("a.lsp", "(defun stairs (n) (* n 2))")), "");
    EXPECT_EQ(load(write("b.kelx", "(defvar *steps* (stairs 21))")), "");
    EXPECT_EQ(printedBy("(princ *steps*)"), "42");
}

TEST_F(LispEngineTest, OutputOfAllStreamsReachesTheConsoleInOrder)
{
    EXPECT_EQ(printedBy("(progn (write-string \"a\") (kest-print \"b\") (format *error-output* \"c~%\")"
                        " (format *trace-output* \"d\") (format *terminal-io* \"e~&\") (format *query-io* \"f\")"
                        " (format *debug-io* \"g\") (format t \"~&h\"))"),
              "abc\nde\nfg\nh");
}

TEST_F(LispEngineTest, OutputIsTheHostsAlsoWhenTheScriptFails)
{
    EXPECT_EQ(evaluate("(progn (princ \"half\") (error \"sad\"))"), "sad");
    EXPECT_TRUE(console.starts_with("half")) << console;
}

TEST_F(LispEngineTest, AConsoleThatAScriptClosedStaysOpen)
{
    EXPECT_EQ(printedBy("(close *standard-output*)"), "");
    EXPECT_EQ(printedBy("(princ \"still\")"), "still");
}

TEST_F(LispEngineTest, InputEndsAtOnce)
{
    for (const std::string stream : {"*standard-input*", "*query-io*", "*terminal-io*", "*debug-io*"}) {
        EXPECT_EQ(printedBy("(princ (read-line " + stream + " nil :end))"), "END") << stream;
    }
}

TEST_F(LispEngineTest, TextsAreUnicodeBothWays)
{
    EXPECT_EQ(
        printedBy(
            "(kest-print (format nil \"~A ~D\" \"gr\u00F6\u00DFe \u20AC \U0001F600\" (length \"\u20AC\U0001F600\")))"),
        "gr\u00F6\u00DFe \u20AC \U0001F600 2");
}

TEST_F(LispEngineTest, AScriptLearnsTheHostsVersion)
{
    EXPECT_EQ(printedBy("(kest-print (kest-host-version))"), running->versionText());
}

} // namespace
