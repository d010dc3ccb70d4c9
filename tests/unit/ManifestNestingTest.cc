// Which element of a manifest counts where: what matters is where it is met, not a schema.
#include "tests/AutoloaderTest.h"
#include "tests/RecordText.h"
#include "tests/unit/Requirements.h"

namespace {

using hostdouble::Document;
using hostdouble::Element;
using hostdouble::Token;
using Lines = std::vector<std::string>;

const Element kPackage{L"ApplicationPackage", {{L"Name", L"N"}}};
const Element kCompany{L"CompanyDetails", {{L"Name", L"C"}}};
const Element kLocalCommand{L"Command", {{L"Local", L"L"}}};

Element dependency(const std::wstring& upgradeCode)
{
    return {L"DependentBundle", {{L"UpgradeCode", upgradeCode}}};
}

Element component(const std::wstring& module, const std::vector<Element>& children = {})
{
    return {L"ComponentEntry", {{L"ModuleName", L"./" + module}}, children};
}

Element group(const std::wstring& name, const std::vector<Element>& children = {})
{
    return {L"Commands", {{L"GroupName", name}}, children};
}

class ManifestNestingTest : public AutoloaderTest
{
protected:
    /// The records that are read from `document`.
    Lines read(const Document& document)
    {
        host.documents[L"/X/PackageContents.xml"] = document;
        KestBundle bundle(L"/X", L"/X/PackageContents.xml");
        bundle.parseXml();
        EXPECT_TRUE(bundle.getIsRuntime());
        EXPECT_FALSE(bundle.getIsReadError());
        EXPECT_EQ(problems(), "");
        return recordtext::of(bundle);
    }
};

TEST_F(ManifestNestingTest, ElementsOfTheTopLoopCountAtAnyDepthAndBelowAnyElement)
{
    EXPECT_EQ(
        read(Element{L"Catalogue",
                     {},
                     {{L"Page", {}, {kPackage, {L"ApplicationPackage", {{L"Name", L"O"}}}}},
                      {L"CompanyDetails", {}, {{L"Page", {}, {kCompany, kFitting}}}},
                      {L"Page",
                       {},
                       {{L"Page",
                         {},
                         {{L"DependentBundles", {}, {dependency(L"D")}}, {L"Components", {}, {component(L"m")}}}}}}}}),
        (Lines{"package name=[O]", "company name=[C]", "runtime architecture=[x86_64]", "dependency upgrade=[D]",
               "entry module=[/X/m] ctrl=1 flags=2"}));
}

TEST_F(ManifestNestingTest, InsideComponentsNoElementOfTheTopLoopCounts)
{
    EXPECT_EQ(read(Element{L"Components",
                           {},
                           {kPackage,
                            kCompany,
                            kUnfitting,
                            {L"DependentBundles", {}, {dependency(L"D")}},
                            component(L"m", {kPackage, kCompany, kUnfitting})}}),
              Lines{"entry module=[/X/m] ctrl=1 flags=2"});
}

TEST_F(ManifestNestingTest, InsideDependentBundlesNoElementOfTheTopLoopCounts)
{
    EXPECT_EQ(read(Element{L"DependentBundles",
                           {},
                           {kPackage, kCompany, kUnfitting, dependency(L"D"), {L"Components", {}, {component(L"m")}}}}),
              Lines{"dependency upgrade=[D]"});
}

TEST_F(ManifestNestingTest, ElementsOfASubtreeCountNowhereElse)
{
    EXPECT_EQ(read(Element{L"ApplicationPackage",
                           {},
                           {dependency(L"D"),
                            component(L"m", {group(L"G")}),
                            group(L"G"),
                            kLocalCommand,
                            {L"Components", {}, {group(L"G"), kLocalCommand}}}}),
              Lines());
}

TEST_F(ManifestNestingTest, InsideAnEntryACommandOutsideAGroupIsIgnored)
{
    EXPECT_EQ(read(Element{L"Components", {}, {component(L"m", {kLocalCommand})}}),
              Lines{"entry module=[/X/m] ctrl=1 flags=2"});
}

TEST_F(ManifestNestingTest, ElementsOfASubtreeCountAtAnyDepthInIt)
{
    EXPECT_EQ(
        read(Element{
            L"Root",
            {},
            {{L"DependentBundles", {}, {{L"List", {}, {dependency(L"A"), {L"List", {}, {dependency(L"B")}}}}}},
             {L"Components",
              {},
              {{L"List", {}, {component(L"m", {{L"List", {}, {group(L"G", {{L"List", {}, {kLocalCommand}}})}}})}}}}}}),
        (Lines{"dependency upgrade=[A]", "dependency upgrade=[B]", "entry module=[/X/m] ctrl=1 flags=2",
               "  group name=[G]", "    command local=[L]"}));
}

TEST_F(ManifestNestingTest, RecordsAreKeptInDocumentOrder)
{
    EXPECT_EQ(
        read(Element{L"Root",
                     {},
                     {{L"Components",
                       {},
                       {component(L"b"), component(L"a", {group(L"2", {kLocalCommand, kLocalCommand}), group(L"1")})}},
                      {L"DependentBundles", {}, {dependency(L"B"), dependency(L"A"), dependency(L"B")}}}}),
        (Lines{"dependency upgrade=[B]", "dependency upgrade=[A]", "dependency upgrade=[B]",
               "entry module=[/X/b] ctrl=1 flags=2", "entry module=[/X/a] ctrl=1 flags=2", "  group name=[2]",
               "    command local=[L]", "    command local=[L]", "  group name=[1]"}));
}

TEST_F(ManifestNestingTest, SeveralListsAreReadOneAfterTheOther)
{
    EXPECT_EQ(read(Element{L"Root",
                           {},
                           {{L"Components", {}, {component(L"a")}},
                            {L"DependentBundles", {}, {dependency(L"A")}},
                            {L"Components", {}, {component(L"b")}},
                            {L"DependentBundles", {}, {dependency(L"B")}}}}),
              (Lines{"dependency upgrade=[A]", "dependency upgrade=[B]", "entry module=[/X/a] ctrl=1 flags=2",
                     "entry module=[/X/b] ctrl=1 flags=2"}));
}

TEST_F(ManifestNestingTest, NamesInAnotherCaseOrWithMoreOrLessOfThemAreIgnored)
{
    const auto spoil = {+[](const std::wstring& name) { return std::wstring(1, name[0] + 32) + name.substr(1); },
                        +[](const std::wstring& name) { return name + L"s "; },
                        +[](const std::wstring& name) { return name.substr(1); },
                        +[](const std::wstring& name) { return L"x:" + name; }};
    for (const auto& spoiled : spoil) {
        for (Element element : {kPackage, kCompany, kUnfitting, Element{L"Components", {}, {component(L"m")}},
                                Element{L"DependentBundles", {}, {dependency(L"D")}}}) {
            element.name = spoiled(element.name);
            EXPECT_EQ(read(element), Lines()) << hostdouble::utf8(element.name);
        }
        for (Element element : {dependency(L"D"), component(L"m"), group(L"G"), kLocalCommand}) {
            element.name = spoiled(element.name);
            EXPECT_EQ(
                read(Element{L"Root",
                             {},
                             {{L"DependentBundles", {}, {element}},
                              {L"Components", {}, {element, component(L"e", {element, group(L"H", {element})})}}}}),
                (Lines{"entry module=[/X/e] ctrl=1 flags=2", "  group name=[H]"}))
                << hostdouble::utf8(element.name);
        }
    }
}

TEST_F(ManifestNestingTest, TokensThatAreNoStartTagsStartNothingWhateverTheirName)
{
    Document document;
    for (const wchar_t* name :
         {L"ApplicationPackage", L"CompanyDetails", L"RuntimeRequirements", L"Components", L"DependentBundles"}) {
        document.tokens.push_back({Token::kOther, name});
        document.tokens.push_back({Token::kEnd, name});
    }

    EXPECT_EQ(read(document), Lines());
    EXPECT_EQ(hostdouble::callsTo({"attribute"}), Lines());
}

TEST_F(ManifestNestingTest, InASubtreeTokensThatAreNoTagsNeitherStartNorEndAnything)
{
    Document document;
    document.tokens = {{Token::kStart, L"Components"},
                       {Token::kOther, L"Components"},
                       {Token::kOther, L"ComponentEntry"},
                       {Token::kEnd, L"ComponentEntry"},
                       {Token::kStart, L"ComponentEntry", {{L"ModuleName", L"./m"}}},
                       {Token::kOther, L"ComponentEntry"},
                       {Token::kEnd, L"Components"},
                       {Token::kStart, L"Commands"},
                       {Token::kOther, L"Commands"},
                       {Token::kOther, L"Command"},
                       {Token::kEnd, L"Command"},
                       {Token::kStart, L"Command", {{L"Local", L"L"}}},
                       {Token::kEnd, L"Commands"},
                       {Token::kEnd, L"ComponentEntry"},
                       {Token::kEnd, L"Components"}};

    EXPECT_EQ(read(document), (Lines{"entry module=[/X/m] ctrl=1 flags=2", "  group", "    command local=[L]"}));
}

TEST_F(ManifestNestingTest, AnEntryInsideAnEntryReplacesItsAttributesAndItsEndTagEndsIt)
{
    EXPECT_EQ(
        read(Element{L"Components",
                     {},
                     {component(L"outer", {component(L"inner", {group(L"in")}), group(L"out")}), component(L"next")}}),
        (Lines{"entry module=[/X/inner] ctrl=1 flags=2", "  group name=[in]",
               "entry module=[/X/next] ctrl=1 flags=2"}));
}

TEST_F(ManifestNestingTest, AGroupInsideAGroupReplacesItsNameAndItsEndTagEndsIt)
{
    EXPECT_EQ(read(Element{L"Components",
                           {},
                           {component(L"m", {group(L"outer", {kLocalCommand,
                                                              group(L"inner", {kLocalCommand}),
                                                              {L"Command", {{L"Local", L"late"}}}}),
                                             group(L"next")})}}),
              (Lines{"entry module=[/X/m] ctrl=1 flags=2", "  group name=[inner]", "    command local=[L]",
                     "    command local=[L]", "  group name=[next]"}));
}

TEST_F(ManifestNestingTest, AListInsideAListEndsItWithItsEndTag)
{
    EXPECT_EQ(
        read(Element{L"Root",
                     {},
                     {{L"DependentBundles", {}, {{L"DependentBundles", {}, {dependency(L"A")}}, dependency(L"B")}},
                      {L"Components", {}, {{L"Components", {}, {component(L"a")}}, component(L"b"), kCompany}}}}),
        (Lines{"company name=[C]", "dependency upgrade=[A]", "entry module=[/X/a] ctrl=1 flags=2"}));
}

TEST_F(ManifestNestingTest, EntriesAndGroupsThatHoldNothingAreKept)
{
    EXPECT_EQ(read(Element{L"Components", {}, {{L"ComponentEntry"}, component(L"m", {{L"Commands"}})}}),
              (Lines{"entry ctrl=0 flags=0", "entry module=[/X/m] ctrl=1 flags=2", "  group"}));
}

TEST_F(ManifestNestingTest, ASubtreeThatTheDocumentDoesNotCloseIsKept)
{
    Document document;
    document.tokens = {{Token::kStart, L"Components"}, {Token::kStart, L"ComponentEntry", {{L"ModuleName", L"./m"}}}};

    EXPECT_EQ(read(document), Lines{"entry module=[/X/m] ctrl=1 flags=2"});
}

TEST_F(ManifestNestingTest, AnElementRightBehindASubtreeIsNotSkipped)
{
    Document document;
    document.tokens = {{Token::kStart, L"DependentBundles"},
                       {Token::kEnd, L"DependentBundles"},
                       {Token::kStart, L"Components"},
                       {Token::kEnd, L"Components"},
                       {Token::kStart, L"CompanyDetails", {{L"Name", L"C"}}}};

    EXPECT_EQ(read(document), Lines{"company name=[C]"});
}

} // namespace
