// When `kestbundle new` makes nothing, and what it says then.
#include "tests/cli/Lines.h"
#include "tests/cli/ToolTest.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

class NewRefusalTest : public ToolTest
{
protected:
    /// Everything in the tree but what the fixture itself puts there.
    Lines made() const
    {
        Lines paths;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
            const std::string name = entry.path().lexically_relative(root).string();
            if (!name.starts_with("tool") && name != "home" && name != "program" && name != "input" &&
                name != "output" && name != "errors") {
                paths.push_back(name);
            }
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    ToolRun makeNew(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "new");
        ToolRun done = runTool(arguments);
        done.errors = normalised(done.errors);
        return done;
    }

    void expectNameRefused(const std::string& name, const std::string& shown, const std::string& reason)
    {
        EXPECT_EQ(makeNew({"--", name}),
                  (ToolRun{2, "", "kestbundle: The name \"" + shown + "\" cannot be used: " + reason + "\n"}));
        EXPECT_EQ(made(), Lines());
    }
};

TEST_F(NewRefusalTest, NamesThatWouldDoHarmAreRefusedWithTheReason)
{
    const std::string unseen = "it holds a character that is not seen, such as a control character";
    const std::string breaks = "it holds a quotation mark or a backslash, which break the expression that loads a LISP "
                               "file";
    const std::string hides = "it begins with a point, so that most programs would not show the folder";
    const std::string blank = "it begins or ends with a blank, which nobody sees";
    expectNameRefused("", "", "it is empty");
    expectNameRefused(".bundle", ".bundle", "it is empty");
    expectNameRefused("a/b", "a/b", "it holds a \"/\"; --folder says where the bundle is made");
    expectNameRefused("..", "..", hides);
    expectNameRefused(".Hello", ".Hello", hides);
    expectNameRefused(" Hello", " Hello", blank);
    expectNameRefused("Hello .bundle", "Hello .bundle", blank);
    expectNameRefused("\x1B[31mred", "\\x1B[31mred", unseen);
    expectNameRefused("two\nlines", "two\\x0Alines", unseen);
    expectNameRefused("zero\x7F", "zero\\x7F", unseen);
    expectNameRefused("\xC2\x85", "\\xC2\\x85", unseen);
    expectNameRefused("a\xE2\x80\xAE"
                      "b",
                      "a\\xE2\\x80\\xAEb", unseen);
    expectNameRefused("a\xEF\xBF\xBF", "a\xEF\xBF\xBF", unseen);
    expectNameRefused("T\xFCr", "T\\xFCr", "it is no text in the encoding of the locale");
    expectNameRefused("a;b", "a;b", "it holds a \";\", which separates the paths in the host's list of menus");
    expectNameRefused("say \"hi\"", "say \"hi\"", breaks);
    expectNameRefused("a\\b", "a\\b", breaks);
}

TEST_F(NewRefusalTest, ANameThatTheFileSystemDoesNotTakeIsRefusedByIt)
{
    const std::string name(300, 'x');
    EXPECT_EQ(makeNew({name}),
              (ToolRun{1, "", "kestbundle: The bundle was not made: /T/" + name + ".bundle: File name too long\n"}));
    EXPECT_EQ(made(), Lines());
}

TEST_F(NewRefusalTest, WhatIsThereIsNotTouched)
{
    const std::string refusal = "kestbundle: There is a \"/T/Hello.bundle\" already; nothing was changed\n";
    write(path("Hello.bundle/PackageContents.xml"), "mine");
    EXPECT_EQ(makeNew({"Hello"}), (ToolRun{2, "", refusal}));
    EXPECT_EQ(made(), (Lines{"Hello.bundle", "Hello.bundle/PackageContents.xml"}));
    EXPECT_EQ(contentOf(path("Hello.bundle/PackageContents.xml")), "mine");
    fs::remove_all(path("Hello.bundle"));

    write(path("Hello.bundle"), "a file");
    EXPECT_EQ(makeNew({"Hello"}), (ToolRun{2, "", refusal}));
    EXPECT_EQ(contentOf(path("Hello.bundle")), "a file");
    fs::remove_all(path("Hello.bundle"));

    fs::create_directory_symlink(path("nowhere"), path("Hello.bundle"));
    EXPECT_EQ(makeNew({"Hello"}), (ToolRun{2, "", refusal}));
    EXPECT_EQ(made(), Lines{"Hello.bundle"});
}

TEST_F(NewRefusalTest, AFullDiskLeavesNothingBehind)
{
    largestFile = 300; // room for the message
    const ToolRun done = makeNew({"Hello", "--install", "--kind", "native,menus"});
    EXPECT_EQ(done, (ToolRun{1, "",
                             "kestbundle: The bundle was not made: /T/home/.config/ORRELIN/ApplicationPlugins/"
                             "Hello.bundle/Source/commands.cc: File too large\n"}));
    EXPECT_EQ(made(), Lines());
}

TEST_F(NewRefusalTest, AFolderThatMayNotBeWrittenIsNamed)
{
    fs::create_directory(path("closed"));
    ::chmod(path("closed").c_str(), 0555);
    runUnprivileged();
    EXPECT_EQ(makeNew({"Hello", "--folder", "closed"}),
              (ToolRun{1, "", "kestbundle: The bundle was not made: /T/closed/Hello.bundle: Permission denied\n"}));
    EXPECT_EQ(made(), Lines{"closed"});
}

TEST_F(NewRefusalTest, AFolderThatIsNotThereIsNotMade)
{
    EXPECT_EQ(makeNew({"Hello", "--folder", "gone"}),
              (ToolRun{2, "", "kestbundle: --folder: \"gone\": No such file or directory\n"}));
    EXPECT_EQ(made(), Lines());
}

TEST_F(NewRefusalTest, AFolderInWhichBundlesDoNotLoadIsRefused)
{
    fs::create_directory(path("a;b"));
    EXPECT_EQ(makeNew({"Hello", "--folder", "a;b"}),
              (ToolRun{2, "",
                       "kestbundle: The folder \"/T/a;b\" cannot be used: it holds a \";\", which separates the paths "
                       "in the host's list of menus\n"}));
    EXPECT_EQ(made(), Lines{"a;b"});
}

TEST_F(NewRefusalTest, WithoutAHomeNothingIsMade)
{
    environment.erase(environment.begin());
    EXPECT_EQ(makeNew({"Hello"}), (ToolRun{2, "", "kestbundle: HOME is not set; set it, or say --home DIR\n"}));
    EXPECT_EQ(made(), Lines());
}

TEST_F(NewRefusalTest, WrongArgumentsAreExplained)
{
    const std::string readOn = "\nRun \"kestbundle new --help\" for how it is used.\n";
    EXPECT_EQ(makeNew({"Hello", "--kind", "pyton"}),
              (ToolRun{2, "",
                       "kestbundle: --kind: \"pyton\" is none of native, lisp, python, managed, menus; did you mean "
                       "\"python\"?" +
                           readOn}));
    EXPECT_EQ(
        makeNew({"Hello", "--kind", "\x1B[2J"}),
        (ToolRun{2, "", "kestbundle: --kind: \"\\x1B[2J\" is none of native, lisp, python, managed, menus" + readOn}));
    EXPECT_EQ(makeNew({}), (ToolRun{2, "", "kestbundle: name is required" + readOn}));
    EXPECT_EQ(makeNew({"Hello", "--install", "--folder", "x"}),
              (ToolRun{2, "", "kestbundle: --folder excludes --install" + readOn}));
    EXPECT_EQ(makeNew({"Hello", "--upgrade-code", "a\nb"}),
              (ToolRun{2, "",
                       "kestbundle: The upgrade code \"a\\x0Ab\" cannot be used: it holds a character that is not "
                       "seen, such as a control character\n"}));
    EXPECT_EQ(made(), Lines());
}

} // namespace
