// The runtime check while a manifest is read.
#include "tests/AutoloaderTest.h"
#include "tests/unit/Requirements.h"

namespace {

using hostdouble::Document;
using hostdouble::Element;
using Lines = std::vector<std::string>;

class RuntimeReadingTest : public AutoloaderTest
{
protected:
    static Element requirements(const wchar_t* os, const wchar_t* platform = L"")
    {
        return {L"RuntimeRequirements", {{L"Architecture", L"x86"}, {L"OS", os}, {L"Platform", platform}}};
    }

    /// Reads a manifest whose root holds `children`, which may end too early.
    KestBundle& read(const std::vector<Element>& children, bool isMalformed = false)
    {
        KestBundle& bundle = addBundle(L"a");
        Document document = Element{L"ApplicationPackage", {}, children};
        document.isMalformed = isMalformed;
        host.documents[bundle.xmlPath] = document;
        bundle.parseXml();
        return bundle;
    }
};

TEST_F(RuntimeReadingTest, AManifestWithoutRequirementsIsNeverJudged)
{
    EXPECT_TRUE(read({}).getIsRuntime());
    EXPECT_EQ(hostdouble::callsTo({"ksedGetVar", "kestConfig", "productName"}), Lines());
}

TEST_F(RuntimeReadingTest, EveryElementIsJudgedInDocumentOrder)
{
    EXPECT_TRUE(read({requirements(L"Linux"), requirements(L"Linux")}).getIsRuntime());
    EXPECT_EQ(hostdouble::callsTo({"ksedGetVar", "productName"}),
              (Lines{"ksedGetVar(VERNUM) -> 5100", "productName()", "ksedGetVar(VERNUM) -> 5100", "productName()"}));
}

TEST_F(RuntimeReadingTest, TheFirstThatFailsEndsTheReading)
{
    const Element company{L"CompanyDetails", {{L"Name", L"Firm"}}};
    const KestBundle& bundle =
        read({requirements(L"Other", L"Other"), requirements(L"Another"), company, requirements(L"Linux")});
    EXPECT_FALSE(bundle.getIsRuntime());
    EXPECT_EQ(problems(), kOS + kPlatform) << "all comparisons of the one element, none of the next";
    EXPECT_EQ(bundle.company.name, L"");
    EXPECT_EQ(bundle.runtime.os, L"Other");
    EXPECT_EQ(hostdouble::callsTo({"ksedGetVar"}).size(), 1U);
}

TEST_F(RuntimeReadingTest, AFittingElementInAMalformedFileIsAReadError)
{
    const KestBundle& bundle = read({requirements(L"Linux")}, true);
    EXPECT_TRUE(bundle.getIsRuntime());
    EXPECT_TRUE(bundle.getIsReadError());
    EXPECT_EQ(problems(), kEntry + "  File format error\n");
}

} // namespace
