// That the rules find what they are there to find.
#include "tests/structure/IncludeRules.h"

#include <gtest/gtest.h>

namespace {

using structure::Sources;
using Problems = std::vector<std::string>;

/// Headers that are there to be included.
Sources house()
{
    Sources sources;
    for (const char* path :
         {"host/Any.h", "manifest/Bundle.h", "manifest/BundleStrConst.h", "loading/ModuleKind.h", "menus/VariantText.h",
          "bundle/BundleManager.h", "bundle/HomeFolder.h", "standalone/Host.h", "engines/Lisp.h", "cli/Command.h",
          "samples/Sample.h", "tests/HostDouble.h"}) {
        sources[path] = "";
    }
    return sources;
}

Problems problemsOf(const std::string& path, const std::string& text)
{
    Sources sources = house();
    sources[path] = text;
    return structure::wrongIncludes(sources);
}

/// The folders, in the order of the letters of the cases below, and a header of each.
const std::pair<char, const char*> kHeaders[] = {
    {'h', "host/Any.h"},           {'B', "manifest/Bundle.h"},   {'m', "manifest/BundleStrConst.h"},
    {'l', "loading/ModuleKind.h"}, {'n', "menus/VariantText.h"}, {'M', "bundle/BundleManager.h"},
    {'b', "bundle/HomeFolder.h"},  {'s', "standalone/Host.h"},   {'e', "engines/Lisp.h"},
    {'c', "cli/Command.h"},        {'x', "samples/Sample.h"},    {'t', "tests/HostDouble.h"}};

struct ArrowCase
{
    std::string folder;
    std::string allowed; ///< the letters of the headers that it may include
};

class ArrowTest : public ::testing::TestWithParam<ArrowCase>
{
};

TEST_P(ArrowTest, TheFolderMayIncludeTheseHeadersAndNoOthers)
{
    for (const auto& [letter, header] : kHeaders) {
        const std::string path = GetParam().folder + "/New.cc";
        const std::string line = "\"" + std::string(header) + "\"";
        const bool isAllowed = GetParam().allowed.find(letter) != std::string::npos;

        EXPECT_EQ(problemsOf(path, "#include " + line + "\n"),
                  isAllowed ? Problems() : Problems{path + ":1: " + line + " is not for " + GetParam().folder + "/"});
    }
}

INSTANTIATE_TEST_SUITE_P(Folders, ArrowTest,
                         ::testing::Values(ArrowCase{"host", "h"}, ArrowCase{"manifest", "hBmM"},
                                           ArrowCase{"loading", "hBMl"}, ArrowCase{"menus", "hBMn"},
                                           ArrowCase{"bundle", "hBmMb"}, ArrowCase{"standalone", "hs"},
                                           ArrowCase{"engines", "he"}, ArrowCase{"cli", "hBmlnMbsec"},
                                           ArrowCase{"samples", "hBmlnMbsecxt"}, ArrowCase{"tests", "hBmlnMbsecxt"}),
                         [](const auto& one) { return one.param.folder; });

TEST(IncludeRulesTest, OnlyTheOuterFoldersIncludeOtherLibraries)
{
    for (const char* folder : {"host", "manifest", "loading", "menus", "bundle"}) {
        const std::string path = std::string(folder) + "/New.cc";
        for (const char* header : {"<libxml/xmlreader.h>", "<sqlite3.h>", "<gtest/gtest.h>", "<unistd.h>"}) {
            EXPECT_EQ(problemsOf(path, "#include " + std::string(header) + "\n"),
                      Problems{path + ":1: " + header + " is of a library that is not for " + folder + "/"});
        }
        EXPECT_EQ(problemsOf(path, "#include <vector>\n#include <dlfcn.h>\n"), Problems());
    }
    for (const char* folder : {"standalone", "engines", "cli", "tests"}) {
        EXPECT_EQ(problemsOf(std::string(folder) + "/New.cc", "#include <sqlite3.h>\n"), Problems());
    }
}

TEST(IncludeRulesTest, AForbiddenHeaderIsFoundInBracketsAndWithBlanksToo)
{
    EXPECT_EQ(problemsOf("menus/New.cc", "\n  #  include <loading/ModuleKind.h>  // no\n"),
              Problems{"menus/New.cc:2: <loading/ModuleKind.h>  // no is not for menus/"});
    EXPECT_EQ(problemsOf("menus/New.cc", "#include_next \"loading/ModuleKind.h\"\n").size(), 1U);
}

TEST(IncludeRulesTest, AHeaderIsNamedByItsPathFromTheTop)
{
    EXPECT_EQ(problemsOf("menus/New.cc", "#include \"../loading/ModuleKind.h\"\n"),
              Problems{"menus/New.cc:1: \"../loading/ModuleKind.h\" is no path of ours from the top of the checkout"});
    EXPECT_EQ(problemsOf("menus/New.cc", "#include \"VariantText.h\"\n"),
              Problems{"menus/New.cc:1: \"VariantText.h\" is no path of ours from the top of the checkout"});
    EXPECT_EQ(problemsOf("menus/New.cc", "#include \"menus/../loading/ModuleKind.h\"\n").size(), 1U);
    EXPECT_EQ(problemsOf("menus/New.cc", "#include <menus/Missing.h>\n").size(), 1U);
}

TEST(IncludeRulesTest, OnlyAroundTheProductMayAHeaderBesideBeNamedAlone)
{
    EXPECT_EQ(problemsOf("tests/New.cc", "#include \"HostDouble.h\"\n"), Problems());
    EXPECT_EQ(problemsOf("tests/New.cc", "#include \"Elsewhere.h\"\n").size(), 1U);
    EXPECT_EQ(problemsOf("cli/New.cc", "#include \"Command.h\"\n").size(), 1U);
}

TEST(IncludeRulesTest, AHeaderThatAMacroNamesIsRefused)
{
    EXPECT_EQ(problemsOf("menus/New.cc", "#include LOADER\n"),
              Problems{"menus/New.cc:1: LOADER names its header in a way that cannot be followed"});
}

TEST(IncludeRulesTest, WhatIsNeverForAFolderIsNotReachedThroughAnAllowedHeaderEither)
{
    Sources sources = house();
    sources["bundle/BundleManager.h"] = "#include \"bundle/Between.h\"\n";
    sources["bundle/Between.h"] = "#include \"loading/ModuleKind.h\"\n";
    sources["menus/New.cc"] = "#include \"bundle/BundleManager.h\"\n";

    EXPECT_EQ(structure::wrongIncludes(sources),
              (Problems{"bundle/Between.h:1: \"loading/ModuleKind.h\" is not for bundle/",
                        "menus/New.cc > bundle/BundleManager.h > bundle/Between.h > loading/ModuleKind.h: is never for "
                        "menus/"}));
}

TEST(IncludeRulesTest, HeadersThatIncludeEachOtherAreFollowedOnce)
{
    Sources sources = house();
    sources["menus/A.h"] = "#include \"menus/B.h\"\n";
    sources["menus/B.h"] = "#include \"menus/A.h\"\n";

    EXPECT_EQ(structure::wrongIncludes(sources), Problems());
}

TEST(IncludeRulesTest, AFileIsLongFromTheFirstLineAboveTheLimit)
{
    EXPECT_EQ(structure::longFiles({{"a", "1\n2\n3\n"}, {"b", "1\n2\n"}}, 2), Problems{"a: 3 lines"});
}

} // namespace
