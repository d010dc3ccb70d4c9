#include "host/MenuDatabase.h"

#include "HostFixture.h"

#include "host/LocaleText.h"

#include <regex>
#include <sys/stat.h>

using standalone::MenuConversion;
using standalonetest::fileContent;
using standalonetest::namesIn;
using standalonetest::writeFile;

namespace {

std::string document(const std::string& menus)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<MenuFile version=\"1\">\n" + menus + "</MenuFile>\n";
}

class MenuDatabaseTest : public standalonetest::HostFixture
{
protected:
    /// Converts the file at `path`, and returns the path of what was made of it, or "" on failure.
    std::string convert(const std::string& path)
    {
        if (!running) {
            startHost();
        }
        CStdStr<wchar_t> converted;
        const CStdStr<wchar_t> source = localetext::widen(path);
        const bool succeeded = Database::convertMenuToCuix(source, converted);
        const auto noted = running->journal().only<MenuConversion>();
        EXPECT_FALSE(noted.empty());
        EXPECT_EQ(noted.back().source, source);
        EXPECT_EQ(noted.back().converted, converted);
        EXPECT_EQ(succeeded, !converted.empty());
        EXPECT_EQ(succeeded, noted.back().problem.empty());
        return localetext::narrow(converted);
    }

    /// What became of a file named `name` with `content`.
    std::string cuixOf(const std::string& name, const std::string& content)
    {
        writeFile(folder / name, content);
        const std::string converted = convert(folder / name);
        EXPECT_NE(converted, "") << problem();
        return fileContent(converted);
    }

    /// What is wrong with a file named `name` with `content`.
    std::string problemOf(const std::string& name, const std::string& content)
    {
        writeFile(folder / name, content);
        EXPECT_EQ(convert(folder / name), "");
        EXPECT_FALSE(std::filesystem::exists(convertedFolder())) << "something was written for " << content;
        return problem();
    }

    std::string problem() const { return running->journal().only<MenuConversion>().back().problem; }
    std::string convertedFolder() const { return folder / "configuration/ConvertedMenus"; }
};

TEST_F(MenuDatabaseTest, ASourceMenuIsConverted)
{
    EXPECT_EQ(cuixOf("tools.mnu", "# Drawing aids\n"
                                  "[Draw]\n"
                                  "Line          = LINE\n"
                                  "---\n"
                                  "> Curves\n"
                                  "\tArc = ARC\n"
                                  "  Spline \\= curve = SPLINE\n"
                                  "<\n"
                                  "\n"
                                  "[ Help \\] \\& more ]\n"
                                  "\\# Manual <1> = HELP \"a=b\" ^C^C \\x\n"),
              document("  <Menu title=\"Draw\">\n"
                       "    <Item label=\"Line\" command=\"LINE\"/>\n"
                       "    <Separator/>\n"
                       "    <Submenu label=\"Curves\">\n"
                       "      <Item label=\"Arc\" command=\"ARC\"/>\n"
                       "      <Item label=\"Spline = curve\" command=\"SPLINE\"/>\n"
                       "    </Submenu>\n"
                       "  </Menu>\n"
                       "  <Menu title=\"Help ] &amp; more\">\n"
                       "    <Item label=\"# Manual &lt;1&gt;\" command=\"HELP &quot;a=b&quot; ^C^C \\x\"/>\n"
                       "  </Menu>\n"));
}

TEST_F(MenuDatabaseTest, ACompactMenuIsConverted)
{
    EXPECT_EQ(cuixOf("tools.menuc", "menuc\t1\nM\tDraw\nI\t Line\\ \tLINE\nS\n\n>\tCurves\nI\tArc\tARC\n<\n"),
              document("  <Menu title=\"Draw\">\n"
                       "    <Item label=\" Line\\ \" command=\"LINE\"/>\n"
                       "    <Separator/>\n"
                       "    <Submenu label=\"Curves\">\n"
                       "      <Item label=\"Arc\" command=\"ARC\"/>\n"
                       "    </Submenu>\n"
                       "  </Menu>\n"));
}

TEST_F(MenuDatabaseTest, AllSpellingsOfAFileGiveTheSameMenu)
{
    const std::string expected = document("  <Menu title=\"\xC3\x84\">\n    <Item label=\"a&#9;b\" command=\"C\"/>\n"
                                          "  </Menu>\n");
    EXPECT_EQ(cuixOf("a.mnu", "[\xC3\x84]\na\tb=C\n"), expected);
    EXPECT_EQ(cuixOf("b.MNS", "\xEF\xBB\xBF[\xC3\x84]\r\na\tb=C\r\n"), expected);
    EXPECT_EQ(cuixOf("c.Mns", "\xEF\xBB\xBF\n\n[\xC3\x84]\na\tb=C"), expected);
    EXPECT_EQ(cuixOf("d.MenuC", "\xEF\xBB\xBFmenuc\t1\r\nM\tDraw\r\n"),
              document("  <Menu title=\"Draw\">\n  </Menu>\n"));
}

TEST_F(MenuDatabaseTest, AProblemOfASourceMenuComesWithItsLine)
{
    const std::vector<std::pair<std::string, std::string>> faults{
        {"", "line 1: the file holds no menu"},
        {"# nothing\n\n", "line 2: the file holds no menu"},
        {"Line = LINE\n", "line 1: it stands before the first menu"},
        {"---\n[Draw]\n", "line 1: it stands before the first menu"},
        {"[Draw]\n\nLine\n", "line 3: the item has no \"=\" between its label and its command"},
        {"[Draw]\n = LINE\n", "line 2: the item has no label"},
        {"[Draw]\nLine =\n", "line 2: the item has no command"},
        {"[]\n", "line 1: the menu has no title"},
        {"[Draw\n", "line 1: the menu's title does not end with \"]\" at the end of the line"},
        {"[Draw] more\n", "line 1: the menu's title does not end with \"]\" at the end of the line"},
        {"[Draw]\n>\n", "line 2: the submenu has no label"},
        {"[Draw]\n<\n", "line 2: no submenu is open"},
        {"[Draw]\n> A\n> B\n<\nx=y\n", "line 5: the submenu opened in line 2 is not closed"},
        {"[Draw]\n> A\n[Help]\n", "line 3: the submenu opened in line 2 is not closed"},
        {"[Draw]\na\\b = C\n",
         "line 2: a backslash in a label stands before no punctuation; write \"\\\\\" for a backslash"},
        {"[Draw]\nLine = LI\001NE\n", "line 2: the character U+0001 cannot stand in a menu"},
        {std::string("[Draw]\nLine = LI\0NE\n", 18), "line 2: the character U+0000 cannot stand in a menu"},
        {"[Draw]\na = b\rc = d\n", "line 2: the character U+000D cannot stand in a menu"},
        {"[Draw]\na = \xEF\xBF\xBF\n", "line 2: the character U+FFFF cannot stand in a menu"},
        {"[Draw]\na = caf\xE9\n", "line 2: the text is not UTF-8"},
        {"# caf\xE9\n[Draw]\n", "line 1: the text is not UTF-8"},
    };
    for (const auto& [content, expected] : faults) {
        EXPECT_EQ(problemOf("tools.mnu", content), expected);
    }
}

TEST_F(MenuDatabaseTest, AProblemOfACompactMenuComesWithItsLine)
{
    const std::string bad = "line 1: the first line is not \"menuc\", a tab and \"1\"";
    const std::vector<std::pair<std::string, std::string>> faults{
        {"", bad},
        {"menuc\t2\n", bad},
        {"M\tDraw\n", bad},
        {"menuc\t1\n", "line 1: the file holds no menu"},
        {"menuc\t1\nM\tDraw\nX\n", "line 3: the record kind is none of M, I, S, > and <"},
        {"menuc\t1\nMI\tDraw\n", "line 2: the record kind is none of M, I, S, > and <"},
        {"menuc\t1\nM\tDraw\nI\tLine\n", "line 3: the number of fields is 2, and a record of kind I takes 3"},
        {"menuc\t1\nM\tDraw\nS\t\n", "line 3: the number of fields is 2, and a record of kind S takes 1"},
        {"menuc\t1\nM\tDraw\nI\t\tLINE\n", "line 3: the item has no label"},
        {"menuc\t1\nS\n", "line 2: it stands before the first menu"},
        {"menuc\t1\nM\tDraw\n>\tA\n", "line 3: the submenu opened in line 3 is not closed"},
    };
    for (const auto& [content, expected] : faults) {
        EXPECT_EQ(problemOf("tools.menuc", content), expected);
    }
}

TEST_F(MenuDatabaseTest, SubmenusMayBeNestedSixtyFourDeep)
{
    const auto nested = [](int depth) {
        std::string text = "[Draw]\n";
        for (int i = 0; i < depth; ++i) {
            text += "> A\n";
        }
        for (int i = 0; i < depth; ++i) {
            text += "<\n";
        }
        return text;
    };
    EXPECT_EQ(problemOf("deep.mnu", nested(65)), "line 66: submenus are nested deeper than 64");
    writeFile(folder / "deep.mnu", nested(64));
    EXPECT_NE(convert(folder / "deep.mnu"), "");
}

TEST_F(MenuDatabaseTest, SizesAreBounded)
{
    EXPECT_EQ(problemOf("large.mnu", std::string((16UL << 20) + 1, '#')), "the file is larger than 16 MB");
    std::string swelling = "[Draw]\n";
    for (int i = 0; i < 64; ++i) {
        swelling += "> A\n";
    }
    for (int i = 0; i < 600'000; ++i) {
        swelling += "---\n";
    }
    EXPECT_TRUE(std::regex_match(problemOf("swelling.mnu", swelling),
                                 std::regex("line [0-9]+: the converted menu is larger than 64 MB")))
        << problem();
}

TEST_F(MenuDatabaseTest, WhatIsNoMenuFileIsRefused)
{
    ASSERT_EQ(::mkfifo((folder / "pipe.mnu").c_str(), 0600), 0);
    std::filesystem::create_directory(folder / "folder.mns");
    const auto problemAt = [&](const std::string& name) {
        EXPECT_EQ(convert(folder / name), "");
        return problem();
    };
    EXPECT_EQ(problemAt("pipe.mnu"), "it is not a regular file");
    EXPECT_EQ(problemAt("folder.mns"), "it is not a regular file");
    EXPECT_EQ(problemAt("nowhere.menuc"), "the file cannot be opened: No such file or directory");
    EXPECT_EQ(problemAt("tools.cuix"), "the file extension is none of \".mnu\", \".mns\" and \".menuc\"");
    EXPECT_EQ(problemAt("tools"), "the file extension is none of \".mnu\", \".mns\" and \".menuc\"");
}

TEST_F(MenuDatabaseTest, MenusOfOneNameInTwoFoldersAreKeptApart)
{
    std::filesystem::create_directory(folder / "a");
    std::filesystem::create_directory(folder / "b");
    writeFile(folder / "a/tools.mnu", "[A]\n");
    writeFile(folder / "b/tools.mnu", "[B]\n");
    const std::string first = convert(folder / "a/tools.mnu");
    const std::string second = convert(folder / "b/tools.mnu");
    EXPECT_EQ(fileContent(first), document("  <Menu title=\"A\">\n  </Menu>\n"));
    EXPECT_EQ(fileContent(second), document("  <Menu title=\"B\">\n  </Menu>\n"));
    const std::regex name(".*/configuration/ConvertedMenus/tools-[0-9A-F]{16}\\.cuix");
    EXPECT_TRUE(std::regex_match(first, name)) << first;
    EXPECT_TRUE(std::regex_match(second, name)) << second;
    EXPECT_EQ(namesIn(convertedFolder()).size(), 2U);
}

TEST_F(MenuDatabaseTest, AMenuIsWrittenAgainOnlyWhenItChanges)
{
    writeFile(folder / "tools.mnu", "[A]\n");
    const std::string converted = convert(folder / "tools.mnu");
    const auto identity = [&] {
        struct stat found
        {
        };
        EXPECT_EQ(::stat(converted.c_str(), &found), 0);
        return std::tuple(found.st_ino, found.st_mtim.tv_sec, found.st_mtim.tv_nsec);
    };
    const auto before = identity();
    EXPECT_EQ(convert(folder / "tools.mnu"), converted);
    EXPECT_EQ(identity(), before);
    writeFile(folder / "tools.mnu", "[B]\n");
    EXPECT_EQ(convert(folder / "tools.mnu"), converted);
    EXPECT_EQ(fileContent(converted), document("  <Menu title=\"B\">\n  </Menu>\n"));
    EXPECT_NE(identity(), before);
    EXPECT_EQ(namesIn(convertedFolder()).size(), 1U);
}

TEST_F(MenuDatabaseTest, NoSeparatorOfTheMenuListGetsIntoAPath)
{
    writeFile(folder / "a;b;.mnu", "[A]\n");
    const std::string converted = convert(folder / "a;b;.mnu");
    EXPECT_TRUE(std::regex_match(converted, std::regex(".*/ConvertedMenus/a_b_-[0-9A-F]{16}\\.cuix"))) << converted;

    running.reset();
    settings.configurationFile = folder / "con;fig/kest.db";
    EXPECT_EQ(convert(folder / "a;b;.mnu"), "");
    EXPECT_EQ(problem(), "the folder \"" + folder.path +
                             "/con;fig/ConvertedMenus\" has a \";\" in its path, which separates the paths of a menu "
                             "list");
}

TEST_F(MenuDatabaseTest, ALongNameIsCutBetweenCharacters)
{
    std::string stem = "a";
    for (int i = 0; i < 120; ++i) {
        stem += "\xC3\xA9";
    }
    writeFile(folder / (stem + ".mnu"), "[A]\n");
    const std::string name = std::filesystem::path(convert(folder / (stem + ".mnu"))).filename();
    EXPECT_EQ(name.substr(0, name.rfind('-')), stem.substr(0, 199));
}

TEST_F(MenuDatabaseTest, AFolderThatCannotBeMadeIsTheReason)
{
    startHost();
    writeFile(convertedFolder(), "in the way");
    writeFile(folder / "tools.mnu", "[A]\n");
    EXPECT_EQ(convert(folder / "tools.mnu"), "");
    EXPECT_EQ(problem(), "the folder \"" + convertedFolder() + "\" cannot be made: Not a directory");
    EXPECT_EQ(fileContent(convertedFolder()), "in the way");
}

TEST_F(MenuDatabaseTest, ATargetThatCannotBeReplacedIsTheReasonAndNothingIsLeft)
{
    writeFile(folder / "tools.mnu", "[A]\n");
    const std::string converted = convert(folder / "tools.mnu");
    std::filesystem::remove(converted);
    std::filesystem::create_directories(converted + "/sub");
    EXPECT_EQ(convert(folder / "tools.mnu"), "");
    EXPECT_EQ(problem(), "the file \"" + converted + "\" cannot be written: Is a directory");
    EXPECT_EQ(namesIn(convertedFolder()).size(), 1U);
}

TEST_F(MenuDatabaseTest, WhatADeadRunDidNotPutInPlaceIsTakenAwayWhetherTheMenuHasChangedOrNot)
{
    writeFile(folder / "tools.mnu", "[A]\n");
    const std::string converted = convert(folder / "tools.mnu");
    const std::string whole = fileContent(converted);
    const std::vector<std::string> onlyTheMenu{std::filesystem::path(converted).filename()};
    writeFile(converted + ".new", "of the dead");
    EXPECT_EQ(convert(folder / "tools.mnu"), converted);
    EXPECT_EQ(fileContent(converted), whole);
    EXPECT_EQ(namesIn(convertedFolder()), onlyTheMenu);

    writeFile(converted + ".new", "of the dead");
    EXPECT_EQ(cuixOf("tools.mnu", "[B]\n"), document("  <Menu title=\"B\">\n  </Menu>\n"));
    EXPECT_EQ(namesIn(convertedFolder()), onlyTheMenu);
}

TEST_F(MenuDatabaseTest, WithoutAConfigurationNothingIsConverted)
{
    settings.configurationFile = "";
    writeFile(folder / "tools.mnu", "[A]\n");
    EXPECT_EQ(convert(folder / "tools.mnu"), "");
    EXPECT_EQ(problem(), "no configuration file is set, and converted menus are kept beside it; set HOME");
}

} // namespace
