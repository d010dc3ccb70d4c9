// Where each attribute goes. Those of a component: ComponentAttributesTest. A missing one: ManifestBufferTest.
#include "tests/AutoloaderTest.h"
#include "tests/RecordText.h"

namespace {

using hostdouble::Element;
using hostdouble::MissingAttribute;
using Lines = std::vector<std::string>;
using Attributes = std::vector<std::pair<std::wstring, std::wstring>>;

class ManifestAttributesTest : public AutoloaderTest
{
protected:
    /// A reader that stands on a start tag with these attributes.
    void standOn(const Attributes& attributes)
    {
        host.documents[bundle.xmlPath] = Element{L"Any", attributes};
        bundle.xmlReader.reset(kestCreateXmlFilerReader(bundle.xmlPath.c_str()));
        bundle.xmlReader->readNext();
        host.calls.clear();
    }

    KestBundle bundle{L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml"};
};

TEST_F(ManifestAttributesTest, ThePackagesAttributesAreReadInOrderEachIntoItsField)
{
    standOn({{L"SchemaVersion", L"1"},
             {L"AppVersion", L"2"},
             {L"Author", L"3"},
             {L"Name", L"4"},
             {L"Description", L"5"},
             {L"Icon", L"6"},
             {L"HelpFile", L"7"},
             {L"ProductCode", L"8"},
             {L"UpgradeCode", L"9"},
             {L"More", L"10"}});

    bundle.readXmlAttributePackage();

    EXPECT_EQ(host.calls, (Lines{"attribute(UpgradeCode)", "attribute(SchemaVersion)", "attribute(AppVersion)",
                                 "attribute(Author)", "attribute(Name)", "attribute(Description)", "attribute(Icon)",
                                 "attribute(HelpFile)", "attribute(ProductCode)"}));
    EXPECT_EQ(recordtext::of(bundle),
              Lines{"package schema=[1] version=[2] author=[3] name=[4] description=[5] icon=[6] help=[7] product=[8] "
                    "upgrade=[9]"});
}

TEST_F(ManifestAttributesTest, TheCompanysAttributesAreReadInOrderEachIntoItsField)
{
    standOn({{L"Email", L"1"}, {L"URL", L"2"}, {L"Phone", L"3"}, {L"Name", L"4"}, {L"Fax", L"5"}});

    bundle.readXmlAttributeCompany();

    EXPECT_EQ(host.calls, (Lines{"attribute(Name)", "attribute(Phone)", "attribute(URL)", "attribute(Email)"}));
    EXPECT_EQ(recordtext::of(bundle), Lines{"company name=[4] phone=[3] url=[2] email=[1]"});
}

TEST_F(ManifestAttributesTest, TheRequirementsAreReadInOrderEachIntoItsFieldAndThenJudged)
{
    standOn({{L"Architecture", L"x86_64"},
             {L"OS", L"Linux"},
             {L"Platform", L"TARVIX"},
             {L"SeriesMin", L"25.0"},
             {L"SeriesMax", L"27.0"}});

    bundle.readXmlAttributeRuntime();

    EXPECT_EQ(host.calls,
              (Lines{"attribute(Architecture)", "attribute(OS)", "attribute(Platform)", "attribute(SeriesMin)",
                     "attribute(SeriesMax)", "ksedGetVar(VERNUM) -> 5100", "kestConfig()", "productName()"}));
    EXPECT_EQ(recordtext::of(bundle),
              Lines{"runtime architecture=[x86_64] os=[Linux] platform=[TARVIX] min=[25.0] max=[27.0]"});
    EXPECT_TRUE(bundle.getIsRuntime());
    EXPECT_EQ(problems(), "");
}

TEST_F(ManifestAttributesTest, ADependencysAttributesAreReadInOrderIntoOneRecord)
{
    standOn({{L"VersionMax", L"3"}, {L"VersionMin", L"2"}, {L"UpgradeCode", L"1"}, {L"Name", L"N"}});

    bundle.readXmlAttributeDep();

    EXPECT_EQ(host.calls, (Lines{"attribute(UpgradeCode)", "attribute(VersionMin)", "attribute(VersionMax)"}));
    EXPECT_EQ(recordtext::of(bundle), Lines{"dependency upgrade=[1] min=[2] max=[3]"});
}

TEST_F(ManifestAttributesTest, ADependencyWithoutAnUpgradeCodeGivesNoRecordAndNothingMoreIsRead)
{
    for (const auto missing : {MissingAttribute::kEmptiesBuffer, MissingAttribute::kLeavesBufferAlone}) {
        host.missingAttribute = missing;
        standOn({{L"VersionMin", L"2"}, {L"VersionMax", L"3"}});
        bundle.readXmlAttributeDep();
        EXPECT_EQ(host.calls, Lines{"attribute(UpgradeCode)"});

        standOn({{L"UpgradeCode", L""}, {L"VersionMin", L"2"}, {L"VersionMax", L"3"}});
        bundle.readXmlAttributeDep();
        EXPECT_EQ(host.calls, Lines{"attribute(UpgradeCode)"});
    }
    EXPECT_TRUE(bundle.dependentBundles.empty());
}

TEST_F(ManifestAttributesTest, ADependencyWithoutVersionsIsKept)
{
    standOn({{L"UpgradeCode", L"U"}});

    bundle.readXmlAttributeDep();

    EXPECT_EQ(recordtext::of(bundle), Lines{"dependency upgrade=[U]"});
}

TEST_F(ManifestAttributesTest, ACommandIsAppendedAlwaysEvenWhenBothNamesAreEmpty)
{
    KestCommands group;
    standOn({{L"HelpTopic", L"1"}, {L"Local", L"2"}, {L"Global", L"3"}, {L"StartupCommand", L"4"}});
    bundle.readXmlAttributeCommand(group);
    EXPECT_EQ(host.calls, (Lines{"attribute(Global)", "attribute(Local)"}));
    standOn({});
    bundle.readXmlAttributeCommand(group);

    ASSERT_EQ(group.commands.size(), 2U);
    EXPECT_EQ(group.commands[0].globalName, L"3");
    EXPECT_EQ(group.commands[0].localName, L"2");
    EXPECT_EQ(group.commands[1].globalName, L"");
    EXPECT_EQ(group.commands[1].localName, L"");
}

} // namespace
