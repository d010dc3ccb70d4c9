// The error log: what reaches the file, when, and in which bytes.
#include "tests/AutoloaderTest.h"
#include "tests/TestLocale.h"

#include <ctime>
#include <limits>

namespace {

class ErrorLogTest : public AutoloaderTest
{
protected:
    /// Makes the local time that of `zone` and the clock `seconds` after the epoch.
    void setTime(const char* zone, long seconds)
    {
        setenv("TZ", zone, 1);
        tzset();
        host.time = seconds;
    }

    void TearDown() override
    {
        unsetenv("TZ");
        tzset();
    }

    std::wstring currentTime()
    {
        CStdStr<wchar_t> out = L"replaced";
        manager().getCurTime(out);
        return out;
    }
};

TEST_F(ErrorLogTest, TheTimeIsTheLocalTimeInNineteenCharacters)
{
    setTime("XYZ-3:30", 1'709'820'309); // 2024-03-07 14:05:09 UTC
    EXPECT_EQ(currentTime(), L"2024-03-07 17:35:09");
    setTime("UTC0", 0);
    EXPECT_EQ(currentTime(), L"1970-01-01 00:00:00");
    setTime("UTC0", 1'735'689'599);
    EXPECT_EQ(currentTime(), L"2024-12-31 23:59:59");
}

TEST_F(ErrorLogTest, TheTimeIsWrittenTheSameInEveryLocale)
{
    setTime("UTC0", 1'709'820'309);
    for (const char* name : {"tr_TR.UTF-8", "de_DE.ISO-8859-1", "zh_CN.GB18030"}) {
        const TestLocale locale(name);
        EXPECT_EQ(currentTime(), L"2024-03-07 14:05:09") << name;
    }
}

TEST_F(ErrorLogTest, ATimeThatIsNoDateIsEmpty)
{
    host.time = std::numeric_limits<long>::max();
    EXPECT_EQ(currentTime(), L"");
}

TEST_F(ErrorLogTest, ARunWithNoProblemsLeavesAFileHoldingOnlyTheTimeLine)
{
    setTime("UTC0", 0);
    install(kAllUsersRoot, L"Tools.bundle", hostdouble::Element{L"ApplicationPackage"});
    KestBundleManager own;
    own.fetchAllBundlePath();
    EXPECT_TRUE(own.collectBundle());
    own.loadBundleCuix();
    own.loadBundle();
    own.collectLoadCommand();

    EXPECT_EQ(hostdouble::logText(), "1970-01-01 00:00:00\n");
}

TEST_F(ErrorLogTest, APieceOfTextIsWrittenAsItStandsWithoutALineEnd)
{
    manager().writeLogLine(L"/a.krx");
    manager().writeLogLine(L" loading failed\n");
    manager().writeLogLine(L"b");

    EXPECT_EQ(problems(), "/a.krx loading failed\nb");
}

TEST_F(ErrorLogTest, EveryPieceIsInTheFileWhenTheCallReturns)
{
    manager().writeLogLine(L"a");
    EXPECT_EQ(problems(), "a");
    manager().writeLogLine(L"\n");
    EXPECT_EQ(problems(), "a\n");
}

TEST_F(ErrorLogTest, AnEmptyStringOrANullPointerWritesNothingAndFlushesNothing)
{
    std::fputs("pending", manager().logFile.get());

    manager().writeLogLine(L"");
    manager().writeLogLine(nullptr);
    EXPECT_EQ(problems(), "");

    manager().writeLogLine(L".");
    EXPECT_EQ(problems(), "pending.");
}

TEST_F(ErrorLogTest, ALogThatIsNotOpenIsSkipped)
{
    manager().logFile.reset();
    const std::string before = hostdouble::logText();
    host.calls.clear();

    manager().writeLogLine(L"a");

    EXPECT_EQ(hostdouble::logText(), before);
    EXPECT_EQ(host.calls, std::vector<std::string>());
}

TEST_F(ErrorLogTest, TheSplitLineIsAnEmptyLineAndThirtyNineHyphens)
{
    addBundle(L"a").writeLogSplitLine();

    EXPECT_EQ(problems(), "\n" + std::string(39, '-') + "\n");
}

TEST_F(ErrorLogTest, ABundleWritesThroughItsOwnManager)
{
    KestBundle& bundle = addBundle(L"a");
    KestBundleManager own;
    bundle.manager = &own;
    own.logFile.reset();

    bundle.writeLogSplitLine();

    EXPECT_EQ(problems(), "") << "its manager has no log";
    bundle.manager = &manager();
}

TEST_F(ErrorLogTest, TwoPercentSignsInAPathAreWrittenAsOne)
{
    KestBundle& bundle = addBundle(L"a");
    addComponent(bundle, L"/50%%/a.lsp");
    host.queueStatus = 0;

    bundle.load();

    EXPECT_EQ(problems(), kSplit + "/50%/a.lsp loading failed\n");
}

TEST_F(ErrorLogTest, OtherConversionsInAPathWriteNothingAndHarmNothing)
{
    KestBundle& bundle = addBundle(L"a");
    addComponent(bundle, L"/%n%s%*d%1$s%ls/a.lsp");
    addComponent(bundle, L"/b.lsp"); // the next problem is written as ever
    host.queueStatus = 0;

    bundle.load();

    EXPECT_EQ(problems(), kSplit + "//a.lsp loading failed\n" + kSplit + "/b.lsp loading failed\n");
}

TEST_F(ErrorLogTest, ATrailingPercentSignTakesItsConversionFromTheMessage)
{
    host.queueStatus = 0;
    // Behind "%", the message begins with a flag, a length and a conversion.
    manager().writeLogLine(L"/a.lsp% loading failed\n");

    EXPECT_EQ(problems(), "/a.lspading failed\n");
}

TEST_F(ErrorLogTest, TextsReachTheFileInTheEncodingOfTheLocale)
{
    const wchar_t* text = L"\u00e4\u4e2d\U0001F600\n";
    manager().writeLogLine(text);
    EXPECT_EQ(problems(), "\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80\n");
}

TEST_F(ErrorLogTest, InALocaleOfOneByteTheBytesAreThatLocales)
{
    const TestLocale german("de_DE.ISO-8859-1");
    manager().writeLogLine(L"/Stra\u00dfe/\u00e4.lsp\n");
    EXPECT_EQ(problems(), "/Stra\xDF"
                          "e/\xE4.lsp\n");
}

TEST_F(ErrorLogTest, InAChineseLocaleTheBytesAreThatLocales)
{
    const TestLocale chinese("zh_CN.GB18030");
    manager().writeLogLine(L"\u4e2d\u6587\n");
    EXPECT_EQ(problems(), "\xD6\xD0\xCE\xC4\n");
}

TEST_F(ErrorLogTest, ACharacterThatTheLocaleLacksLosesNeitherTheLineNorWhatFollows)
{
    const TestLocale german("de_DE.ISO-8859-1");
    manager().writeLogLine(L"/\u4e2d.lsp loading failed\n");
    manager().writeLogLine(L"next\n");
    EXPECT_EQ(problems(), "/\xE4\xB8\xAD.lsp loading failed\nnext\n");
}

TEST_F(ErrorLogTest, AByteThatWasNoCharacterIsWrittenAsThatByte)
{
    manager().writeLogLine(CStdStr<wchar_t>("/a\xFF\xC3(.lsp\n").c_str());
    EXPECT_EQ(problems(), "/a\xFF\xC3(.lsp\n");
}

TEST_F(ErrorLogTest, AWriteThatFailsIsIgnored)
{
    manager().logFile.reset(std::fopen("/dev/full", "w"));
    ASSERT_TRUE(manager().logFile);

    manager().writeLogLine(L"a");
    manager().writeLogLine(L"b");

    manager().logFile.reset();
}

TEST_F(ErrorLogTest, AVeryLongTextIsWrittenWhole)
{
    const std::wstring path(100'000, L'x');
    manager().writeLogLine((path + L"\n").c_str());
    EXPECT_TRUE(problems() == std::string(100'000, 'x') + "\n");
}

} // namespace
