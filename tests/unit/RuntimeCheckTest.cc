// The runtime check: each comparison, what it asks the host, and what it writes.
#include "tests/AutoloaderTest.h"
#include "tests/TestLocale.h"
#include "tests/unit/Requirements.h"

namespace {

using hostdouble::Element;
using Lines = std::vector<std::string>;

/// A host "26.0_1_Linux_x86_64" by the name of "TARVIX" and a bundle that fits it.
class RuntimeCheckTest : public AutoloaderTest
{
protected:
    KestBundle& bundle = addBundle(L"a");
    KestRuntimeRequirements& runtime = bundle.runtime;

    RuntimeCheckTest() { runtime.architecture = L"x86"; }

    /// What the check writes; it must agree with the flag.
    std::string judge()
    {
        const std::size_t before = problems().size();
        bundle.isRuntime = true;
        bundle.judgeRuntime();
        const std::string written = problems().substr(before);
        EXPECT_EQ(bundle.getIsRuntime(), written.empty());
        return written;
    }

    std::string judgeSeries(const wchar_t* min, const wchar_t* max)
    {
        runtime.seriesMin = min;
        runtime.seriesMax = max;
        return judge();
    }

    std::string judgeArchitecture(const std::wstring& vernum, const std::wstring& architecture)
    {
        host.vernum = vernum;
        runtime.architecture = architecture;
        return judge();
    }
};

TEST_F(RuntimeCheckTest, AFittingHostIsAskedOnceForEachValueAndNothingIsWritten)
{
    runtime.os = L"Linux";
    runtime.platform = L"TARVIX";
    runtime.seriesMin = L"26.0";
    EXPECT_EQ(judge(), "");
    EXPECT_EQ(host.calls, (Lines{"ksedGetVar(VERNUM) -> 5100", "kestConfig()", "productName()"}));
}

TEST_F(RuntimeCheckTest, TheHostIsAskedTheSameWhenNothingIsRequired)
{
    runtime.architecture = L"";
    host.vernum = L"1_2_3_";
    EXPECT_EQ(judge(), "");
    EXPECT_EQ(host.calls, (Lines{"ksedGetVar(VERNUM) -> 5100", "kestConfig()", "productName()"}));
}

TEST_F(RuntimeCheckTest, TheCheckSetsTheFlagOnlyToFalse)
{
    bundle.isRuntime = false;
    bundle.judgeRuntime();
    EXPECT_FALSE(bundle.getIsRuntime());
    EXPECT_EQ(problems(), "");
}

// The product version.

TEST_F(RuntimeCheckTest, BothBoundsAreInclusive)
{
    EXPECT_EQ(judgeSeries(L"26.0", L"26.0"), "");
    EXPECT_EQ(judgeSeries(L"26", L"26"), "");
    EXPECT_EQ(judgeSeries(L"25.9", L"26.1"), "");
}

TEST_F(RuntimeCheckTest, ASeriesMinAboveTheVersionFails)
{
    EXPECT_EQ(judgeSeries(L"26.1", L""), kVersion);
    EXPECT_EQ(judgeSeries(L"26.000001", L""), kVersion);
    EXPECT_EQ(judgeSeries(L"27", L"28"), kVersion);
}

TEST_F(RuntimeCheckTest, ASeriesMaxBelowTheVersionFails)
{
    EXPECT_EQ(judgeSeries(L"", L"25.9"), kVersion);
    EXPECT_EQ(judgeSeries(L"24", L"25.999999"), kVersion);
    EXPECT_EQ(judgeSeries(L"", L"-1"), kVersion);
}

TEST_F(RuntimeCheckTest, ARangeTheWrongWayRoundFailsOnce)
{
    EXPECT_EQ(judgeSeries(L"27", L"25"), kVersion);
}

TEST_F(RuntimeCheckTest, ABoundThatIsEmptyZeroOrNoNumberIsNone)
{
    EXPECT_EQ(judgeSeries(L"", L""), "");
    EXPECT_EQ(judgeSeries(L"0", L"0"), "");
    EXPECT_EQ(judgeSeries(L"0.0", L"0.000"), "");
    EXPECT_EQ(judgeSeries(L"abc", L"abc"), "");
    EXPECT_EQ(judgeSeries(L"K27", L"V1"), "");
}

TEST_F(RuntimeCheckTest, OnlyTheNumberThatABoundBeginsWithCounts)
{
    EXPECT_EQ(judgeSeries(L"26.0.1", L"26.0b"), "");
    EXPECT_EQ(judgeSeries(L"27beta", L""), kVersion);
    EXPECT_EQ(judgeSeries(L"", L" 25.5 "), kVersion);
}

TEST_F(RuntimeCheckTest, BoundsAreReadWithAPointInEveryLocale)
{
    const TestLocale german("de_DE.UTF-8");
    EXPECT_EQ(judgeSeries(L"26.1", L""), kVersion);
    EXPECT_EQ(judgeSeries(L"", L"25.9"), kVersion);
    EXPECT_EQ(judgeSeries(L"26.0", L"26.0"), "");
}

// The operating system.

TEST_F(RuntimeCheckTest, TheOSMustEqualTheThirdField)
{
    runtime.os = L"Linux";
    EXPECT_EQ(judge(), "");
    for (const wchar_t* os : {L"linux", L"LINUX", L"Linu", L"Linuxx", L" Linux", L"26.0", L"1", L"x86"}) {
        runtime.os = os;
        EXPECT_EQ(judge(), kOS) << os;
    }
}

TEST_F(RuntimeCheckTest, AnEmptyOSIsNotCompared)
{
    runtime.os = L"";
    EXPECT_EQ(judge(), "");
}

TEST_F(RuntimeCheckTest, AnOSIsComparedWithAnEmptyFieldToo)
{
    host.vernum = L"26.0_1__x86";
    runtime.os = L"Linux";
    EXPECT_EQ(judge(), kOS);
}

TEST_F(RuntimeCheckTest, AnOSOfTwoPartsNeverFits)
{
    host.vernum = L"26.0_1_Linux_x86";
    runtime.os = L"Linux_x86";
    EXPECT_EQ(judge(), kOS);
}

// The architecture.

TEST_F(RuntimeCheckTest, TheArchitectureMustEqualTheFourthField)
{
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_aarch64", L"aarch64"), "");
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_aarch64", L"AARCH64"), kArchitecture);
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_aarch64", L"aarch6"), kArchitecture);
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_aarch64", L"Linux"), kArchitecture);
}

TEST_F(RuntimeCheckTest, OnlyTheFirstPartOfTheArchitectureIsCompared)
{
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_x86_64", L"x86_64"), "");
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_x86_64", L"x86_anything_else"), "");
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_x86_64", L"_x86"), kArchitecture);
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_64", L"x86_64"), kArchitecture);
}

TEST_F(RuntimeCheckTest, AMissingArchitectureIsComparedToo)
{
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_x86_64", L""), kArchitecture);
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux__64", L""), "");
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_", L""), "");
    EXPECT_EQ(judgeArchitecture(L"26.0_1_Linux_", L"x86"), kArchitecture);
}

// The host's variable.

TEST_F(RuntimeCheckTest, WithThreeFieldsOrFewerNeitherOSNorArchitectureIsCompared)
{
    runtime.os = L"Other";
    for (const wchar_t* vernum : {L"", L"26.0", L"26.0_1", L"26.0_1_Linux", L"__"}) {
        EXPECT_EQ(judgeArchitecture(vernum, L"other"), "") << vernum;
    }
}

TEST_F(RuntimeCheckTest, WithFourEmptyFieldsBothAreCompared)
{
    runtime.os = L"Other";
    EXPECT_EQ(judgeArchitecture(L"___", L"other"), kOS + kArchitecture);
}

TEST_F(RuntimeCheckTest, AVariableThatCannotBeReadSkipsBothComparisons)
{
    host.vernum.reset();
    runtime.os = L"Other";
    runtime.architecture = L"other";
    EXPECT_EQ(judge(), "");
    EXPECT_EQ(host.calls, (Lines{"ksedGetVar(VERNUM) -> -5001", "kestConfig()", "productName()"}));
}

TEST_F(RuntimeCheckTest, AValueGivenWithAFailureIsNotUsed)
{
    host.failingCall = 1; // the string is there, the status says no
    runtime.os = L"Other";
    EXPECT_EQ(judge(), "");
    EXPECT_EQ(host.calls.at(0), "ksedGetVar(VERNUM) -> -5001");
}

TEST_F(RuntimeCheckTest, ANullStringIsTakenAsEmpty)
{
    host.isVernumNull = true;
    runtime.os = L"Other";
    EXPECT_EQ(judge(), "");
    EXPECT_EQ(host.calls.at(0), "ksedGetVar(VERNUM) -> 5100");
}

// The platform.

TEST_F(RuntimeCheckTest, ThePlatformMustEqualTheProductName)
{
    runtime.platform = L"TARVIX";
    EXPECT_EQ(judge(), "");
    for (const wchar_t* platform : {L"tarvix", L"TARVI", L"TARVIX ", L"*", L"TARVIX;OTHER", L"Other"}) {
        runtime.platform = platform;
        EXPECT_EQ(judge(), kPlatform) << platform;
    }
}

TEST_F(RuntimeCheckTest, AnEmptyPlatformPassesWhateverTheProductName)
{
    for (const wchar_t* name : {L"TARVIX", L"", L"Other"}) {
        host.productName = name;
        EXPECT_EQ(judge(), "");
    }
    host.productName.reset();
    EXPECT_EQ(judge(), "");
}

TEST_F(RuntimeCheckTest, ANullProductNameIsTakenAsEmpty)
{
    host.productName.reset();
    runtime.platform = L"TARVIX";
    EXPECT_EQ(judge(), kPlatform);
}

TEST_F(RuntimeCheckTest, WithoutAConfigurationThePlatformIsNotCompared)
{
    host.hasConfiguration = false;
    runtime.platform = L"Other";
    EXPECT_EQ(judge(), "");
    EXPECT_EQ(host.calls, (Lines{"ksedGetVar(VERNUM) -> 5100", "kestConfig()"}));
}

// Several at once.

TEST_F(RuntimeCheckTest, AllFourFailuresAreWrittenInTheirOrder)
{
    runtime.seriesMin = L"27";
    runtime.os = L"Other";
    runtime.architecture = L"other";
    runtime.platform = L"Other";
    EXPECT_EQ(judge(), kVersion + kOS + kArchitecture + kPlatform);
}

TEST_F(RuntimeCheckTest, AWrongVersionIsWrittenBeforeAWrongOS)
{
    runtime.seriesMin = L"27";
    runtime.os = L"Other";
    EXPECT_EQ(judge(), kVersion + kOS);
}

TEST_F(RuntimeCheckTest, AWrongOSIsWrittenBeforeAWrongPlatform)
{
    runtime.os = L"Other";
    runtime.platform = L"Other";
    EXPECT_EQ(judge(), kOS + kPlatform);
}

TEST_F(RuntimeCheckTest, AMessageIsAFormatLikeEveryLogText)
{
    bundle.xmlPath = L"/50%%/%s/PackageContents.xml";
    runtime.seriesMin = L"27";
    EXPECT_EQ(judge(), "\n---------------------------------------\n/50%//PackageContents.xml: The product version "
                       "number of the RuntimeRequirements element is incorrect\n");
}

} // namespace
