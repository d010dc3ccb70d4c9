// Commands that LISP registers.
#include "tests/engines/LispTest.h"

namespace {

using LispCommandTest = enginetest::LispTest;

/// How many functions LISP keeps for the host.
constexpr char kCount[] = "(princ (hash-table-count kest-host::*functions*))";

TEST_F(LispCommandTest, ACommandRunsItsFunction)
{
    EXPECT_EQ(printedBy("(princ (kest-register-command \"stairs\" (lambda () (princ \"up\"))))"), "T");
    const standalone::RunResult result = run(L"STAIRS");
    EXPECT_TRUE(result.ran);
    EXPECT_EQ(result.problem, "");
    EXPECT_EQ(console, "up");
}

TEST_F(LispCommandTest, ASymbolNamesTheFunctionThatItHasWhenTheCommandRuns)
{
    EXPECT_EQ(evaluate("(kest-register-command \"late\" 'late)"), "");
    EXPECT_EQ(run(L"LATE").problem, "The function LATE is undefined.");
    EXPECT_EQ(evaluate("(defun late () (princ 1))"), "");
    EXPECT_TRUE(run(L"LATE").ran);
    EXPECT_EQ(console, "1");
}

TEST_F(LispCommandTest, ANameMayHaveAllCharacters)
{
    EXPECT_EQ(evaluate("(kest-register-command \"gr\u00F6\u20AC\" (lambda () (princ 1)))"), "");
    EXPECT_TRUE(run(L"GR\u00D6\u20AC").ran);
}

TEST_F(LispCommandTest, AFailureReturnsItsTextInOneLineAndPrintsNothing)
{
    EXPECT_EQ(evaluate("(kest-register-command \"bad\" (lambda () (error \"one~%  two\")))"), "");
    const standalone::RunResult result = run(L"BAD");
    EXPECT_FALSE(result.ran);
    EXPECT_EQ(result.problem, "one two");
    EXPECT_EQ(console, "");
}

TEST_F(LispCommandTest, ArgumentsOfWrongTypesAreErrors)
{
    EXPECT_EQ(evaluate("(kest-register-command 1 (lambda () 1))"), "1 is not of type STRING.");
    EXPECT_EQ(evaluate("(kest-register-command \"a\" nil)"),
              "NIL is not of type (OR FUNCTION (AND SYMBOL (NOT NULL))).");
    EXPECT_EQ(evaluate("(kest-print 1)"), "1 is not of type STRING.");
    EXPECT_EQ(printedBy(kCount), "0");
}

TEST_F(LispCommandTest, ARefusedCommandIsNilAndKeepsNothing)
{
    EXPECT_EQ(evaluate("(kest-register-command \"mine\" (lambda () (princ 1)))"), "");
    EXPECT_EQ(printedBy("(princ (kest-register-command \"MINE\" (lambda () (princ 2))))"), "NIL");
    EXPECT_EQ(printedBy("(princ (kest-register-command \"\" (lambda () (princ 2))))"), "NIL");
    EXPECT_EQ(printedBy(kCount), "1");
    EXPECT_TRUE(run(L"MINE").ran);
    EXPECT_EQ(console, "1");
}

TEST_F(LispCommandTest, AFileThatIsLoadedAgainReplacesItsCommandsAndTheirFunctions)
{
    const std::string path = write("a.lsp", "(kest-register-command \"a\" (lambda () (princ 1)))");
    EXPECT_EQ(load(path), "");
    write("a.lsp", "(kest-register-command \"A\" (lambda () (princ 2)))");
    EXPECT_EQ(load(path), "");
    EXPECT_TRUE(run(L"A").ran);
    EXPECT_EQ(console, "2");
    EXPECT_EQ(printedBy(kCount), "1");
}

TEST_F(LispCommandTest, AFailedLoadLeavesNoCommandAndNoFunction)
{
    EXPECT_EQ(evaluate("(kest-register-command \"kept\" (lambda () 1))"), "");
    EXPECT_EQ(load(write("a.lsp", "(kest-register-command \"a\" (lambda () 1))\n(error \"late\")")),
              "late (/T/a.lsp, line 2)");
    EXPECT_FALSE(running->commands().has(L"A"));
    EXPECT_TRUE(running->commands().has(L"KEPT"));
    EXPECT_EQ(printedBy(kCount), "1");
}

TEST_F(LispCommandTest, ACommandMayRegisterAnotherAndFailWithoutTakingItBack)
{
    EXPECT_EQ(evaluate("(kest-register-command \"outer\" (lambda ()"
                       " (kest-register-command \"inner\" (lambda () (princ 1))) (error \"after\")))"),
              "");
    EXPECT_EQ(run(L"OUTER").problem, "after");
    EXPECT_TRUE(run(L"INNER").ran);
    EXPECT_EQ(console, "1");
}

TEST_F(LispCommandTest, AJumpIntoAFrameThatIsGoneFails)
{
    EXPECT_EQ(evaluate("(kest-register-command \"gone\" (block b (lambda () (return-from b 1))))"), "");
    EXPECT_TRUE(run(L"GONE").problem.starts_with("RETURN-FROM: The block B with id "));
    EXPECT_EQ(evaluate("(kest-register-command \"away\" (let (f) (tagbody (setq f (lambda () (go x))) x) f))"), "");
    EXPECT_TRUE(run(L"AWAY").problem.starts_with("GO: The tagbody "));
    EXPECT_EQ(evaluate("(+ 1 2)"), "");
}

} // namespace
