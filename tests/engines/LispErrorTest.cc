// Whatever goes wrong in a script comes back as a text, and the next one is evaluated.
#include "tests/engines/LispTest.h"

#include <sys/resource.h>
#include <utility>

namespace {

class LispErrorTest : public enginetest::LispTest
{
protected:
    /// Each expression fails with its text; after it LISP is as able as before.
    void expectProblems(const std::vector<std::pair<std::string, std::string>>& cases)
    {
        for (const auto& [expression, problem] : cases) {
            EXPECT_EQ(evaluate(expression), problem) << expression;
            EXPECT_EQ(printedBy("(princ (+ 1 2))"), "3") << "after " << expression;
        }
    }
};

/// What LISP says of a stack of the size that this process has.
std::string stackOverflow()
{
    rlimit stack{};
    ::getrlimit(RLIMIT_STACK, &stack);
    return "C-STACK overflow at size " + std::to_string(stack.rlim_cur) +
           ". Stack can probably be resized. Proceed with caution.";
}

constexpr char kStackFull[] = "The stack is full: the recursion is too deep.";
constexpr char kDeep[] = "(defvar *deep* (let ((l nil)) (dotimes (i 1000000 l) (setq l (list l)))))";

TEST_F(LispErrorTest, ErrorsComeBackWithTheirText)
{
    expectProblems(
        {{"unheard", "The variable UNHEARD is unbound."},
         {"(unheard)", "The function UNHEARD is undefined."},
         {"(error \"boo ~A\" 1)", "boo 1"},
         {"(car 1)", "In function CAR, the value of the only argument is 1 which is not of the expected type "
                     "CONS"},
         {"(error 'type-error :datum 1 :expected-type 'string)", "1 is not of type STRING."},
         {"(cerror \"go on\" \"stop\")", "stop"},
         {"(throw 'nothing 1)", "THROW: The catch NOTHING is undefined."},
         {"(handler-case (error \"inner\") (error (c) (error \"outer ~A\" c)))", "outer inner"},
         {"(unwind-protect (error \"first\") (error \"second\"))", "second"}});
}

TEST_F(LispErrorTest, AnErrorIsPrintedOnceByTheHostAlone)
{
    evaluate("(error \"boo\")");
    EXPECT_EQ(console, "(error \"boo\"): could not be evaluated: boo\n");
}

TEST_F(LispErrorTest, ArithmeticErrorsComeBack)
{
    expectProblems({{"(/ 1 0)", "DIVISION-BY-ZERO"},
                    {"(/ 1.0 0.0)", "DIVISION-BY-ZERO"},
                    {"(* 1d300 1d300)", "FLOATING-POINT-OVERFLOW"}});
}

TEST_F(LispErrorTest, TextsThatCannotBeReadComeBack)
{
    expectProblems({{"(a", "Unexpected end of file on the text."},
                    {")", "Reader error in file the text, position 1: Unmatched right parenthesis, #\\)"},
                    {"nowhere:x", "There is no package with the name NOWHERE."}});
}

TEST_F(LispErrorTest, TheDebuggerIsNeverEntered)
{
    expectProblems({{"(break \"here ~D\" 1)", "here 1"},
                    {"(break)", "Break"},
                    {"(invoke-debugger (make-condition 'simple-error :format-control \"x\"))", "x"},
                    {"(let ((*debugger-hook* nil) (ext:*invoke-debugger-hook* nil)) (error \"hookless\"))", "hookless"},
                    {"(abort)", "The script was aborted."}});
}

TEST_F(LispErrorTest, AScriptCannotEndTheHost)
{
    expectProblems({{"(ext:exit)", "A script cannot end the host."},
                    {"(ext:quit 3)", "A script cannot end the host."},
                    {"(si:quit)", "A script cannot end the host."},
                    {"(si::exit-process 1)", "A script cannot end the host."}});
}

TEST_F(LispErrorTest, AConditionWithoutAReportOrWithAFailingOneGivesItsType)
{
    EXPECT_EQ(evaluate("(define-condition bare (error) ())"), "");
    EXPECT_EQ(evaluate("(define-condition broken (error) () (:report (lambda (c s) (error \"~A ~A\" c s))))"), "");
    expectProblems({{"(error 'bare)", "BARE"}, {"(error 'broken)", "BROKEN, and the report of this condition failed"}});
}

TEST_F(LispErrorTest, ASignalThatNobodyHandlesIsNoFailure)
{
    EXPECT_EQ(printedBy("(princ (signal 'simple-error :format-control \"x\"))"), "NIL");
}

TEST_F(LispErrorTest, AWarningGoesToTheConsoleAndTheLoadSucceeds)
{
    EXPECT_EQ(load(write("a.lsp", "(warn \"careful ~A\" 1)\n(princ 2)")), "");
    EXPECT_EQ(console, ";;; Warning: careful 1\n2");
}

TEST_F(LispErrorTest, EndlessRecursionOfAScriptFails)
{
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(evaluate("(labels ((f (x) (+ 1 (f x)))) (f 1))"), stackOverflow());
    }
    EXPECT_EQ(printedBy("(princ (+ 1 2))"), "3");
}

TEST_F(LispErrorTest, AFullStackMayBeHandledByTheScript)
{
    EXPECT_EQ(printedBy("(princ (handler-case (labels ((f (x) (+ 1 (f x)))) (f 1)) (storage-condition () :full)))"),
              "FULL");
}

TEST_F(LispErrorTest, TooDeepRecursionOfCompiledFunctionsFails)
{
    EXPECT_EQ(evaluate(kDeep), "");
    EXPECT_EQ(evaluate("(defvar *circle* (list 1))(setf (car *circle*) *circle*)"), "");
    EXPECT_EQ(evaluate("(defvar *circle2* (list 1))(setf (car *circle2*) *circle2*)"), "");
    for (int round = 0; round < 5; ++round) {
        expectProblems({{"(copy-tree *deep*)", kStackFull},
                        {"(copy-tree *circle*)", kStackFull},
                        {"(equal *circle* *circle2*)", kStackFull}});
    }
}

TEST_F(LispErrorTest, AFullStackInALoadNamesThePlaceAndCleansUp)
{
    const std::string path = write("a.lsp", std::string(kDeep) + "\n(unwind-protect\n (copy-tree *deep*)\n"
                                                                 " (princ \"cleaned\"))");
    EXPECT_EQ(load(path), std::string(kStackFull) + " (/T/a.lsp, line 2)");
    EXPECT_TRUE(console.starts_with("cleaned")) << console;
}

TEST_F(LispErrorTest, DeeplyNestedPrintingAndReadingLeaveTheHostAlive)
{
    EXPECT_EQ(evaluate(kDeep), "");
    evaluate("(prin1-to-string *deep*)"); // it may or may not fit the stack
    evaluate("(read-from-string (make-string 1000000 :initial-element #\\())");
    EXPECT_EQ(printedBy("(princ (+ 1 2))"), "3");
}

TEST_F(LispErrorTest, AScriptThatFillsTheMemoryFails)
{
    const std::string problem = "Memory limit reached. Please jump to an outer pointer, quit program and enlarge the "
                                "memory limits before executing the program again.";
    expectProblems({{"(make-array 400000000)", problem}});
}

} // namespace
