// The manager's own life: how it begins and ends, and how it merges the maps of its bundles.
#include "tests/AutoloaderTest.h"
#include "tests/TestLocale.h"

#include <stdexcept>
#include <typeinfo>

namespace {

using Lines = std::vector<std::string>;
using Map = std::map<CStdStr<wchar_t>, CStdStr<wchar_t>>;

const std::string kOpen = "_wfopen(/home/user/.config/ORRELIN/BundleErrorLog.txt, w) -> stream";

class BundleManagerTest : public AutoloaderTest
{
protected:
    void SetUp() override
    {
        setenv("TZ", "UTC0", 1);
        tzset();
        host.time = 1'709'820'309;
    }

    void TearDown() override
    {
        unsetenv("TZ");
        tzset();
    }
};

TEST_F(BundleManagerTest, ThereIsOneManager)
{
    EXPECT_EQ(KestBundleManager::getInstance(), KestBundleManager::getInstance());
    EXPECT_EQ(host.calls, Lines()) << "made once only";
}

TEST_F(BundleManagerTest, ANewManagerIsEmpty)
{
    const KestBundleManager own;
    EXPECT_TRUE(own.bundlePaths.empty());
    EXPECT_TRUE(own.manifestPaths.empty());
    EXPECT_TRUE(own.bundles.empty());
    EXPECT_TRUE(own.loadedStatus.empty());
    EXPECT_TRUE(own.commandMap.empty());
    EXPECT_TRUE(own.pythonVersionMap.empty());
}

TEST_F(BundleManagerTest, ANewManagerOpensTheLogAndWritesTheTimeIntoIt)
{
    const KestBundleManager own;
    EXPECT_EQ(host.calls, (Lines{kOpen}));
    EXPECT_EQ(hostdouble::logText(), "2024-03-07 14:05:09\n");
    EXPECT_TRUE(own.logFile);
}

TEST_F(BundleManagerTest, AnExistingLogIsEmptiedWhenTheManagerIsCreated)
{
    manager().writeLogLine(L"of the run before\n");
    host.time = 0;

    const KestBundleManager own;

    EXPECT_EQ(hostdouble::logText(), "1970-01-01 00:00:00\n");
}

TEST_F(BundleManagerTest, ALogThatCannotBeOpenedIsDoneWithout)
{
    host.isLogOpenable = false;
    KestBundleManager own;

    EXPECT_EQ(host.calls, (Lines{"_wfopen(/home/user/.config/ORRELIN/BundleErrorLog.txt, w) -> null"}));
    EXPECT_FALSE(own.logFile);
    own.writeLogLine(L"a");
    host.calls.clear();
    {
        KestBundleManager another;
        host.calls.clear();
    }
    EXPECT_EQ(host.calls, Lines()) << "nothing to close";
}

TEST_F(BundleManagerTest, LoadingGoesOnWithoutALog)
{
    manager().logFile.reset();
    host.calls.clear();
    KestBundle& broken = addBundle(L"a");
    addComponent(broken, L"/broken.krx");
    addComponent(broken, L"/b.lsp");
    host.brokenModules = {L"/broken.krx"};

    manager().loadBundle();

    EXPECT_EQ(host.calls, (Lines{"KsRxDictionary::at(DynamicLinker)", "loadModule(/broken.krx, false, false) -> false",
                                 "kds_queueexpr((LOAD \"/b.lsp\")) -> 5100"}));
    EXPECT_TRUE(broken.getIsLoad());
}

TEST_F(BundleManagerTest, WithoutHomeTheConstructorThrowsTheLogicErrorAndMakesNoLog)
{
    unsetenv("HOME");
    std::string message;
    try {
        const KestBundleManager own;
    } catch (const std::logic_error& error) {
        message = error.what();
        EXPECT_EQ(typeid(error), typeid(std::logic_error));
    }
    EXPECT_EQ(message, "basic_string::_M_construct null not valid");
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(BundleManagerTest, TheNextManagerIsMadeOnceHomeIsSet)
{
    unsetenv("HOME");
    EXPECT_THROW(KestBundleManager(), std::logic_error);
    setenv("HOME", "/other", 1);

    const KestBundleManager own;

    EXPECT_EQ(host.calls, (Lines{"_wfopen(/other/.config/ORRELIN/BundleErrorLog.txt, w) -> stream"}));
}

TEST_F(BundleManagerTest, AnEmptyHomeIsAFolderLikeAnyOther)
{
    setenv("HOME", "", 1);
    const KestBundleManager own;
    EXPECT_EQ(host.calls, (Lines{"_wfopen(/.config/ORRELIN/BundleErrorLog.txt, w) -> stream"}));
}

TEST_F(BundleManagerTest, HomeIsTakenAsItStands)
{
    setenv("HOME", "/home//user/", 1);
    const KestBundleManager own;
    EXPECT_EQ(host.calls, (Lines{"_wfopen(/home//user//.config/ORRELIN/BundleErrorLog.txt, w) -> stream"}));
}

TEST_F(BundleManagerTest, HomeIsWidenedByTheGlobalLocale)
{
    setenv("HOME", "/\xC3\xA4", 1);
    {
        const KestBundleManager own;
        EXPECT_EQ(host.calls.at(0), "_wfopen(/\xC3\xA4/.config/ORRELIN/BundleErrorLog.txt, w) -> stream");
    }
    host.calls.clear();
    const TestLocale german("de_DE.ISO-8859-1");
    const KestBundleManager own;
    EXPECT_EQ(host.calls.at(0), "_wfopen(/\xC3\x83\xC2\xA4/.config/ORRELIN/BundleErrorLog.txt, w) -> stream")
        << "two characters there";
}

/// A reader that says when it ends.
class EndingReader : public XmlFilerReader
{
public:
    explicit EndingReader(std::string readerName) : name(std::move(readerName)) {}
    ~EndingReader() override { hostdouble::state().calls.push_back("end of " + name); }

    int checkStartElement() override { return 1; }
    int checkEndElement() override { return 1; }
    void attribute(const CStdStr<wchar_t>& /*name*/, CStdStr<wchar_t>& /*value*/) override {}
    void tokenName(CStdStr<wchar_t>& /*name*/) override {}
    int moreTokens() override { return 0; }
    int readOk() override { return 1; }
    void readNext() override {}

private:
    std::string name;
};

TEST_F(BundleManagerTest, ItsEndDeletesTheBundlesFromFirstToLastAndThenClosesTheLog)
{
    {
        KestBundleManager own;
        host.calls.clear();
        for (const char* name : {"a", "b", "c"}) {
            own.bundles.push_back(new KestBundle(L"/f", L"/m"));
            own.bundles.back()->xmlReader = std::make_unique<EndingReader>(name);
        }
        EXPECT_EQ(host.calls, Lines());
    }
    EXPECT_EQ(host.calls, (Lines{"end of a", "end of b", "end of c", "fclose(log)"}));
    EXPECT_TRUE(host.isLogClosed);
}

TEST_F(BundleManagerTest, ABundleBelongsToTheOneManager)
{
    EXPECT_EQ(addBundle(L"a").manager, &manager());
}

TEST_F(BundleManagerTest, CommandsOfAllBundlesAreMergedLoadedOrNot)
{
    KestBundle& loaded = addBundle(L"a");
    loaded.isLoad = true;
    loaded.commandModuleMap = {{L"ONE", L"/a.krx"}, {L"", L"/empty.krx"}};
    loaded.pythonVersionMap = {{L"/a.py", L"python3.11"}};
    KestBundle& unloaded = addBundle(L"b", {L"missing"});
    unloaded.commandModuleMap = {{L"TWO", L"/b.krx"}};
    unloaded.pythonVersionMap = {{L"/b.py", L""}};

    manager().collectLoadCommand();

    EXPECT_EQ(manager().commandMap, (Map{{L"", L"/empty.krx"}, {L"ONE", L"/a.krx"}, {L"TWO", L"/b.krx"}}));
    EXPECT_EQ(manager().pythonVersionMap, (Map{{L"/a.py", L"python3.11"}, {L"/b.py", L""}}));
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(BundleManagerTest, OfTwoBundlesWithTheSameCommandTheOneEarlierInTheListWins)
{
    addBundle(L"z").commandModuleMap = {{L"SAME", L"/first.krx"}};
    addBundle(L"a").commandModuleMap = {{L"SAME", L"/second.krx"}, {L"OTHER", L"/second.krx"}};
    manager().bundles[0]->pythonVersionMap = {{L"/s.py", L"python3.9"}};
    manager().bundles[1]->pythonVersionMap = {{L"/s.py", L"python3.11"}};

    manager().collectLoadCommand();

    EXPECT_EQ(manager().commandMap, (Map{{L"OTHER", L"/second.krx"}, {L"SAME", L"/first.krx"}}));
    EXPECT_EQ(manager().pythonVersionMap, (Map{{L"/s.py", L"python3.9"}}));
}

TEST_F(BundleManagerTest, CommandNamesAreComparedExactly)
{
    addBundle(L"a").commandModuleMap = {{L"A", L"/1"}, {L"a", L"/2"}, {L"AB", L"/3"}, {L"\U0001F600", L"/4"}};

    manager().collectLoadCommand();

    std::vector<std::wstring> order;
    for (const auto& [name, path] : manager().commandMap) {
        order.push_back(name);
    }
    EXPECT_EQ(order, (std::vector<std::wstring>{L"A", L"AB", L"a", L"\U0001F600"}));
}

TEST_F(BundleManagerTest, TheMapsAreNotClearedFirst)
{
    manager().commandMap = {{L"OLD", L"/old.krx"}, {L"SAME", L"/old.krx"}};
    manager().pythonVersionMap = {{L"/old.py", L"1"}};
    addBundle(L"a").commandModuleMap = {{L"SAME", L"/new.krx"}};

    manager().collectLoadCommand();
    manager().collectLoadCommand();

    EXPECT_EQ(manager().commandMap, (Map{{L"OLD", L"/old.krx"}, {L"SAME", L"/old.krx"}}));
    EXPECT_EQ(manager().pythonVersionMap, (Map{{L"/old.py", L"1"}}));
}

} // namespace
