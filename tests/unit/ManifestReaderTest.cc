// What the walk over a manifest does with its tokens. Which element counts where: ManifestNestingTest.
// What ends the walk early: ManifestRequirementsTest.
#include "tests/AutoloaderTest.h"
#include "tests/RecordText.h"

namespace {

using hostdouble::Document;
using hostdouble::Element;
using hostdouble::Token;
using Lines = std::vector<std::string>;

const std::wstring kFolder = L"/p/X.bundle";
const std::wstring kManifest = kFolder + L"/PackageContents.xml";

const std::string kFormatProblem = kSplit + "/p/X.bundle/PackageContents.xml  File format error\n";

class ManifestReaderTest : public AutoloaderTest
{
protected:
    void parse(const Document& document)
    {
        host.documents[kManifest] = document;
        bundle.parseXml();
    }

    /// A document of `tokens` at whose end the parser gives up.
    static Document malformed(std::vector<Token> tokens)
    {
        Document document;
        document.tokens = std::move(tokens);
        document.isMalformed = true;
        return document;
    }

    KestBundle bundle{kFolder, kManifest};
};

TEST_F(ManifestReaderTest, AManifestForWhichThereIsNoReaderLeavesTheBundleSoundAndEmpty)
{
    bundle.parseXml();

    EXPECT_EQ(host.calls, Lines{"kestCreateXmlFilerReader(/p/X.bundle/PackageContents.xml) -> null"});
    EXPECT_EQ(recordtext::of(bundle), Lines());
    EXPECT_TRUE(bundle.getIsRuntime());
    EXPECT_FALSE(bundle.getIsReadError());
    EXPECT_EQ(problems(), "");
}

TEST_F(ManifestReaderTest, EveryTokenIsVisitedOnceInOrder)
{
    parse(Element{L"ApplicationPackage",
                  {{L"Name", L"N"}},
                  {{L"Components", {}, {{L"ComponentEntry", {{L"ModuleName", L"./a.krx"}}}}}}});

    EXPECT_EQ(host.calls, (Lines{"kestCreateXmlFilerReader(/p/X.bundle/PackageContents.xml) -> reader",
                                 "readNext()", // ApplicationPackage
                                 "attribute(UpgradeCode)",
                                 "attribute(SchemaVersion)",
                                 "attribute(AppVersion)",
                                 "attribute(Author)",
                                 "attribute(Name)",
                                 "attribute(Description)",
                                 "attribute(Icon)",
                                 "attribute(HelpFile)",
                                 "attribute(ProductCode)",
                                 "readNext()", // blanks
                                 "readNext()", // Components
                                 "readNext()", // blanks
                                 "readNext()", // ComponentEntry
                                 "attribute(ModuleName)",
                                 "attribute(AppName)",
                                 "attribute(LoadCtrlFlag)",
                                 "attribute(PythonVersion)",
                                 "attribute(LoadOnTARVIXStartup)",
                                 "attribute(LoadOnCommandInvocation)",
                                 "readNext()", // blanks
                                 "readNext()", // its end
                                 "readNext()", // the end of Components
                                 "readNext()", // the end of ApplicationPackage
                                 "readNext()"}));
    EXPECT_EQ(recordtext::of(bundle), (Lines{"package name=[N]", "entry module=[/p/X.bundle/a.krx] ctrl=1 flags=2"}));
}

TEST_F(ManifestReaderTest, TheTopLoopAsksForMoreTokensThenForAStartTagAndAtTheEndWhetherAllWasWell)
{
    host.recordsReaderChecks = true;
    Document document;
    document.tokens = {{Token::kStart, L"Unknown"}, {Token::kEnd, L"Unknown"}};

    parse(document);

    EXPECT_EQ(host.calls,
              (Lines{"kestCreateXmlFilerReader(/p/X.bundle/PackageContents.xml) -> reader", "readNext()", "tokenName()",
                     "moreTokens()", "checkStartElement()", "readNext()", "tokenName()", "moreTokens()",
                     "checkStartElement()", "readNext()", "tokenName()", "moreTokens()", "readOk()"}));
}

TEST_F(ManifestReaderTest, ASubtreeAsksForMoreTokensThenForItsEndTagThenForAStartTag)
{
    host.recordsReaderChecks = true;
    for (const wchar_t* list : {L"Components", L"DependentBundles"}) {
        Document document;
        document.tokens = {{Token::kStart, list}, {Token::kStart, L"Unknown"}, {Token::kEnd, list}};
        bundle.xmlReader.reset();
        host.calls.clear();

        parse(document);

        EXPECT_EQ(
            host.calls,
            (Lines{"kestCreateXmlFilerReader(/p/X.bundle/PackageContents.xml) -> reader", "readNext()", "tokenName()",
                   "moreTokens()", "checkStartElement()", // the top loop
                   "readNext()", "tokenName()",           // into it
                   "moreTokens()", "checkEndElement()", "checkStartElement()", "readNext()", "tokenName()", // Unknown
                   "moreTokens()", "checkEndElement()", "readNext()", "tokenName()", "moreTokens()", "readOk()"}));
    }
}

TEST_F(ManifestReaderTest, AnEntryAndAGroupStartOnTheirOwnStartTag)
{
    host.recordsReaderChecks = true;
    Document document;
    document.tokens = {{Token::kStart, L"ComponentEntry"}, {Token::kStart, L"Commands"}};
    host.documents[kManifest] = document;
    bundle.xmlReader.reset(kestCreateXmlFilerReader(kManifest.c_str()));
    bundle.xmlReader->readNext();
    host.calls.clear();

    bundle.readXmlNodeEntry();

    EXPECT_EQ(host.calls, (Lines{"tokenName()",         "moreTokens()",          "checkEndElement()",
                                 "checkStartElement()", "attribute(ModuleName)", "readNext()",
                                 "tokenName()",         "moreTokens()",          "checkEndElement()",
                                 "checkStartElement()", // Commands
                                 "tokenName()",         "moreTokens()",          "checkEndElement()",
                                 "checkStartElement()", "attribute(GroupName)",  "readNext()",
                                 "tokenName()",         "moreTokens()", // the group ends with the document
                                 "readNext()",          "tokenName()",           "moreTokens()"})); // so does the entry
    EXPECT_EQ(recordtext::of(bundle), (Lines{"entry ctrl=0 flags=0", "  group"}));
}

TEST_F(ManifestReaderTest, WithoutAReaderEveryOperationReturnsAtOnce)
{
    KestComponentEntry entry;
    KestCommands group;

    bundle.readXmlNodeName();
    bundle.readXmlAttributePackage();
    bundle.readXmlAttributeCompany();
    bundle.readXmlAttributeRuntime();
    bundle.readXmlNodeDepBundles();
    bundle.readXmlAttributeDep();
    bundle.readXmlNodeComponents();
    bundle.readXmlNodeEntry();
    bundle.readXmlAttributeEntry(entry);
    bundle.readXmlNodeCommands(entry);
    bundle.readXmlAttributeCommand(group);

    EXPECT_EQ(host.calls, Lines());
    EXPECT_EQ(recordtext::of(bundle), Lines());
    EXPECT_TRUE(entry.commands.empty());
    EXPECT_TRUE(group.commands.empty());
    EXPECT_FALSE(bundle.getIsReadError());
    EXPECT_EQ(problems(), "");
}

TEST_F(ManifestReaderTest, TheReaderIsKeptAfterTheManifestWasRead)
{
    parse(Element{L"ApplicationPackage"});

    EXPECT_NE(bundle.xmlReader, nullptr);
    EXPECT_EQ(host.openReaders, 1U);
}

TEST_F(ManifestReaderTest, ASecondReadingReleasesTheFirstReaderBeforeItAsksForAnother)
{
    host.documents[kManifest] = Document();
    bundle.parseXml();
    host.calls.clear();

    bundle.parseXml();

    EXPECT_EQ(host.calls, (Lines{"~XmlFilerReader()",
                                 "kestCreateXmlFilerReader(/p/X.bundle/PackageContents.xml) -> reader", "readNext()"}));
    EXPECT_EQ(host.openReaders, 1U);
}

TEST_F(ManifestReaderTest, ASecondReadingThatGetsNoReaderLeavesTheBundleWithoutOne)
{
    parse(Element{L"ApplicationPackage", {{L"Name", L"N"}}});
    host.documents.clear();

    bundle.parseXml();

    EXPECT_EQ(bundle.xmlReader, nullptr);
    EXPECT_EQ(host.openReaders, 0U);
    EXPECT_EQ(recordtext::of(bundle), Lines{"package name=[N]"});
}

TEST_F(ManifestReaderTest, AMalformedManifestIsMarkedAndLoggedOnceWithItsPath)
{
    parse(malformed({{Token::kStart, L"Unknown"}}));

    EXPECT_TRUE(bundle.getIsReadError());
    EXPECT_TRUE(bundle.getIsRuntime());
    EXPECT_EQ(problems(), kFormatProblem);
}

TEST_F(ManifestReaderTest, ADocumentThatIsMalformedFromItsFirstByteIsMarkedToo)
{
    parse(malformed({}));

    EXPECT_TRUE(bundle.getIsReadError());
    EXPECT_EQ(problems(), kFormatProblem);
}

TEST_F(ManifestReaderTest, WhatWasReadBeforeTheErrorStays)
{
    parse(malformed({{Token::kStart, L"ApplicationPackage", {{L"Name", L"N"}}},
                     {Token::kStart, L"Components"},
                     {Token::kStart, L"ComponentEntry", {{L"ModuleName", L"./a.krx"}}},
                     {Token::kStart, L"Commands", {{L"GroupName", L"G"}}},
                     {Token::kStart, L"Command", {{L"Local", L"L"}}}}));

    EXPECT_EQ(recordtext::of(bundle), (Lines{"package name=[N]", "entry module=[/p/X.bundle/a.krx] ctrl=1 flags=2",
                                             "  group name=[G]", "    command local=[L]"}));
    EXPECT_EQ(problems(), kFormatProblem);
}

TEST_F(ManifestReaderTest, AnErrorInsideTheDependenciesKeepsThoseReadBefore)
{
    parse(malformed(
        {{Token::kStart, L"DependentBundles"}, {Token::kStart, L"DependentBundle", {{L"UpgradeCode", L"A"}}}}));

    EXPECT_EQ(recordtext::of(bundle), Lines{"dependency upgrade=[A]"});
    EXPECT_EQ(problems(), kFormatProblem);
}

TEST_F(ManifestReaderTest, ASecondReadingClearsNeitherTheReadErrorNorTheRecords)
{
    parse(malformed(
        {{Token::kStart, L"DependentBundles"}, {Token::kStart, L"DependentBundle", {{L"UpgradeCode", L"A"}}}}));

    parse(Element{L"DependentBundles", {}, {{L"DependentBundle", {{L"UpgradeCode", L"B"}}}}});

    EXPECT_TRUE(bundle.getIsReadError());
    EXPECT_EQ(recordtext::of(bundle), (Lines{"dependency upgrade=[A]", "dependency upgrade=[B]"}));
    EXPECT_EQ(problems(), kFormatProblem);
}

TEST_F(ManifestReaderTest, AWellFormedManifestOfOtherElementsGivesASoundEmptyBundle)
{
    parse(Element{L"Catalogue", {{L"Name", L"N"}}, {{L"Page", {{L"UpgradeCode", L"U"}}}}});

    EXPECT_EQ(recordtext::of(bundle), Lines());
    EXPECT_TRUE(bundle.getIsRuntime());
    EXPECT_FALSE(bundle.getIsReadError());
    EXPECT_EQ(problems(), "");
}

} // namespace
