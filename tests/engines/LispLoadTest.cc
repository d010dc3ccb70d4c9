// LOAD as scripts of the host use it.
#include "tests/engines/LispTest.h"

namespace {

using LispLoadTest = enginetest::LispTest;

TEST_F(LispLoadTest, AnErrorNamesFileAndLineOfTheTopLevelForm)
{
    EXPECT_EQ(load(write("stairs.lsp", "; first\n#| (second\n#| |#\n|#\n\n  (progn\n    x)\n")),
              "The variable X is unbound. (/T/stairs.lsp, line 6)");
}

TEST_F(LispLoadTest, AFormThatDoesNotEndIsNamedByItsBeginning)
{
    EXPECT_EQ(load(write("a.lsp", "(princ 1)\n\n(defun f ()\n (princ 2)\n\n")),
              "Unexpected end of file on the text. (/T/a.lsp, line 3)");
    EXPECT_TRUE(console.starts_with("1(LOAD")) << console;
}

TEST_F(LispLoadTest, AParenthesisTooManyIsNamedWithItsLine)
{
    EXPECT_EQ(load(write("a.lsp", "(princ 1))\n")),
              "Reader error in file the text, position 10: Unmatched right parenthesis, #\\) (/T/a.lsp, line 1)");
}

TEST_F(LispLoadTest, AMissingFileAndAFolderAreNamed)
{
    EXPECT_EQ(load(folder / "none.lsp"), "The file /T/none.lsp cannot be loaded: No such file or directory.");
    EXPECT_EQ(load(folder.path), "The file /T cannot be loaded: Is a directory.");
}

TEST_F(LispLoadTest, EveryExtensionIsSourceText)
{
    for (const std::string name : {"a.lsp", "a.LSP", "a.kelx", "a.VLS", "a.fas", "a.o", "a", "a.b.c"}) {
        EXPECT_EQ(load(write(name, "(princ \"" + name + "\")")), "") << name;
        EXPECT_EQ(console, name);
    }
}

TEST_F(LispLoadTest, AByteOrderMarkIsSkippedAndTheTextIsUtf8)
{
    EXPECT_EQ(load(write("a.lsp", "\xEF\xBB\xBF(princ \"gr\u00F6\u00DFe \u20AC\")")), "");
    EXPECT_EQ(console, "gr\u00F6\u00DFe \u20AC");
}

TEST_F(LispLoadTest, AByteOrderMarkDoesNotCountInPositions)
{
    EXPECT_EQ(load(write("a.lsp", "\xEF\xBB\xBF(princ 1))\n")),
              "Reader error in file the text, position 10: Unmatched right parenthesis, #\\) (/T/a.lsp, line 1)");
}

TEST_F(LispLoadTest, APathMayHaveAllCharacters)
{
    for (const std::string name :
         {"gr\u00F6\u00DFe.lsp", "\u6A13\u68AF \U0001F600/\u20AC.lsp", "a*b?[c].lsp", "la\xF6.lsp"}) {
        const std::string path = write(name, "(defvar *loads* 0)\n(when (oddp (incf *loads*)) (load *load-truename*))\n"
                                             "(princ (pathname-type *load-truename*))");
        EXPECT_EQ(load(path), "") << name;
        EXPECT_EQ(console, "lsplsp") << name;
    }
}

TEST_F(LispLoadTest, AnErrorInAFileWithSuchAPathNamesIt)
{
    EXPECT_EQ(load(write("gr\u00F6\u00DFe \u20AC.lsp", "x")),
              "The variable X is unbound. (/T/gr\u00F6\u00DFe \u20AC.lsp, line 1)");
}

TEST_F(LispLoadTest, AFileLoadsItsNeighbourByItsOwnPlace)
{
    write("d\u00E9 \u20AC/n\u00E4chste \u20AC.lsp", "(princ \"neighbour\")");
    const std::string path = write(
        "d\u00E9 \u20AC/a.lsp", "(load (merge-pathnames \"n\u00E4chste \u20AC.lsp\" *load-truename*))\n(princ \"!\")");
    EXPECT_EQ(load(path), "");
    EXPECT_EQ(console, "neighbour!");
}

TEST_F(LispLoadTest, AnErrorInANestedLoadNamesTheInnerFile)
{
    const std::string inner = write("inner.lsp", "\n\n(error \"deep\")");
    EXPECT_EQ(load(write("outer.lsp", "\n(load \"" + inner + "\")")), "deep (/T/inner.lsp, line 3)");
    EXPECT_EQ(load(write("outer.lsp", "\n(ignore-errors (load \"" + inner + "\"))\n\n(error \"outer\")")),
              "outer (/T/outer.lsp, line 4)");
    EXPECT_EQ(load(write("outer.lsp", "\n(load \"/none.lsp\")")),
              "The file /none.lsp cannot be loaded: No such file or directory. (/T/outer.lsp, line 2)");
}

TEST_F(LispLoadTest, ARelativePathFollowsTheWorkingDirectoryAndTheDefaults)
{
    write("one/a.lsp", "(princ 1)");
    write("two/a.lsp", "(princ 2)");
    const std::filesystem::path before = std::filesystem::current_path();
    evaluate("(+ 1 2)");
    std::filesystem::current_path(folder / "one");
    EXPECT_EQ(load("a.lsp"), "");
    EXPECT_EQ(console, "1");
    std::filesystem::current_path(folder / "two");
    EXPECT_EQ(load("a.lsp"), "");
    EXPECT_EQ(console, "2");
    EXPECT_EQ(printedBy("(let ((*default-pathname-defaults* #P\"../one/\")) (load \"a.lsp\"))"), "1");
    std::filesystem::current_path(before);
}

TEST_F(LispLoadTest, TheVariablesOfALoadAreBoundAndPutBack)
{
    const std::string path = write("a.lsp", "(princ (list (file-namestring *load-pathname*) *load-truename*))\n"
                                            "(in-package \"KEYWORD\")");
    EXPECT_EQ(printedBy("(progn (load \"" + path +
                        "\") (princ (list *load-pathname* *load-truename*"
                        " (package-name *package*))))"),
              "(a.lsp " + folder.path + "/a.lsp)(NIL NIL COMMON-LISP-USER)");
}

TEST_F(LispLoadTest, LoadReturnsTrueOrNilForAMissingFileThatMayBeMissing)
{
    const std::string path = write("a.lsp", "1");
    EXPECT_EQ(printedBy("(princ (list (load \"" + path + "\") (load \"/none.lsp\" :if-does-not-exist nil)))"),
              "(T NIL)");
    EXPECT_EQ(printedBy("(princ (handler-case (load \"/none.lsp\") (file-error (c) (file-error-pathname c))))"),
              "/none.lsp");
}

TEST_F(LispLoadTest, AStreamIsLoadedToo)
{
    EXPECT_EQ(printedBy("(with-input-from-string (s \"(princ 1) (princ 2)\") (princ (load s)))"), "12T");
}

} // namespace
