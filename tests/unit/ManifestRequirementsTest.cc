// When the requirements of a manifest are judged while it is read, and what a mismatch ends.
#include "tests/AutoloaderTest.h"
#include "tests/RecordText.h"
#include "tests/unit/Requirements.h"

namespace {

using hostdouble::Document;
using hostdouble::Element;
using Lines = std::vector<std::string>;

const std::string kUnfittingProblem =
    kSplit + "/X/PackageContents.xml: The OS of the RuntimeRequirements element is incorrect\n";

class ManifestRequirementsTest : public AutoloaderTest
{
protected:
    void parse(const Document& document)
    {
        host.documents[bundle.xmlPath] = document;
        bundle.parseXml();
    }

    KestBundle bundle{L"/X", L"/X/PackageContents.xml"};
};

TEST_F(ManifestRequirementsTest, AMismatchEndsTheReadingAtOnceAndTheFormatIsNotLookedAt)
{
    Document document = Element{L"ApplicationPackage", {{L"Name", L"N"}}, {kUnfitting, {L"CompanyDetails"}}};
    document.isMalformed = true;
    host.recordsReaderChecks = true;

    parse(document);

    EXPECT_FALSE(bundle.getIsRuntime());
    EXPECT_FALSE(bundle.getIsReadError());
    EXPECT_EQ(problems(), kUnfittingProblem);
    EXPECT_EQ(hostdouble::callsTo({"attribute"}).back(), "attribute(SeriesMax)");
    EXPECT_EQ(host.calls.back(), "productName()") << "the runtime check's last question to the host";
}

TEST_F(ManifestRequirementsTest, OfTwoRequirementsBothAreJudgedInOrderAndTheSecondReplacesTheFirst)
{
    parse(Element{L"ApplicationPackage", {}, {kFitting, kUnfitting}});

    EXPECT_EQ(hostdouble::callsTo({"ksedGetVar"}).size(), 2U);
    EXPECT_FALSE(bundle.getIsRuntime());
    EXPECT_EQ(recordtext::of(bundle), Lines{"runtime architecture=[x86_64] os=[Plan9]"});
    EXPECT_EQ(problems(), kUnfittingProblem);
}

TEST_F(ManifestRequirementsTest, OfTwoRequirementsTheSecondIsNotReadWhenTheFirstFails)
{
    parse(Element{L"ApplicationPackage", {}, {kUnfitting, kFitting}});

    EXPECT_EQ(hostdouble::callsTo({"ksedGetVar"}).size(), 1U);
    EXPECT_FALSE(bundle.getIsRuntime());
    EXPECT_EQ(recordtext::of(bundle), Lines{"runtime architecture=[x86_64] os=[Plan9]"});
    EXPECT_EQ(problems(), kUnfittingProblem);
}

TEST_F(ManifestRequirementsTest, RequirementsBehindTheComponentsAreJudgedAfterAllOfThemWereRead)
{
    parse(Element{L"ApplicationPackage",
                  {},
                  {{L"Components", {}, {{L"ComponentEntry"}, {L"ComponentEntry"}}}, kUnfitting, {L"Components"}}});

    EXPECT_EQ(hostdouble::callsTo({"attribute", "ksedGetVar"}),
              (Lines{"attribute(UpgradeCode)", "attribute(SchemaVersion)", "attribute(AppVersion)", "attribute(Author)",
                     "attribute(Name)", "attribute(Description)", "attribute(Icon)", "attribute(HelpFile)",
                     "attribute(ProductCode)", "attribute(ModuleName)", "attribute(ModuleName)",
                     "attribute(Architecture)", "attribute(OS)", "attribute(Platform)", "attribute(SeriesMin)",
                     "attribute(SeriesMax)", "ksedGetVar(VERNUM) -> 5100"}));
    EXPECT_EQ(recordtext::of(bundle),
              (Lines{"runtime architecture=[x86_64] os=[Plan9]", "entry ctrl=0 flags=0", "entry ctrl=0 flags=0"}));
    EXPECT_FALSE(bundle.getIsRuntime());
}

} // namespace
