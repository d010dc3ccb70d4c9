// Managed assemblies: how they are loaded and what they may do.
#include "tests/engines/ManagedFixture.h"

#include <cstdio>

using standalone::EngineStart;

namespace {

class ManagedEngineTest : public enginetest::ManagedFixture
{
};

TEST_F(ManagedEngineTest, AnAssemblyRegistersACommandThatRuns)
{
    const std::string path = place("Greeting");
    EXPECT_TRUE(load(path)) << console;
    EXPECT_EQ(normalised(console), "start 1 of /T/Greeting.dll\nregistered: True\n");
    ASSERT_EQ(loads().size(), 1U);
    EXPECT_EQ(loads()[0].path, localetext::widen(path));
    EXPECT_TRUE(loads()[0].loaded);
    EXPECT_EQ(loads()[0].problem, "");
    EXPECT_EQ(running->commands().moduleOf(L"GREET"), path);
    const auto result = run(L"Greet");
    EXPECT_TRUE(result.ran);
    EXPECT_EQ(result.problem, "");
    EXPECT_EQ(console, "Hello, host " + running->versionText() + "\n");
}

TEST_F(ManagedEngineTest, TheRuntimeStartsOnceWithTheFirstLoad)
{
    loadPlaced("Greeting");
    loadPlaced("Streams");
    const auto starts = running->journal().only<EngineStart>();
    ASSERT_EQ(starts.size(), 1U);
    EXPECT_TRUE(starts[0].description.starts_with("managed (Mono 6.")) << starts[0].description;
    EXPECT_EQ(starts[0].description.find(' ', 14), std::string::npos) << starts[0].description;
    EXPECT_GT(starts[0].milliseconds, 0);
}

TEST_F(ManagedEngineTest, LoadedAgainAnAssemblyStartsAgainAndReplacesItsCommands)
{
    const std::string path = place("Greeting");
    EXPECT_TRUE(load(path));
    EXPECT_TRUE(load(path));
    EXPECT_EQ(normalised(console), "start 2 of /T/Greeting.dll\nregistered: True\n");
    EXPECT_TRUE(run(L"GREET").ran);
    EXPECT_EQ(console, "Hello, host " + running->versionText() + "\n");
}

TEST_F(ManagedEngineTest, CommandsThatAreTakenBackOrReplacedAreNotKeptInMemory)
{
    const std::string path = place("Forgotten");
    EXPECT_FALSE(load(path));
    EXPECT_FALSE(running->commands().has(L"FORGOTTEN-7"));
    EXPECT_TRUE(load(path));
    EXPECT_EQ(console, "0, most are gone: True\n");
    EXPECT_TRUE(load(path)); // the first time they were taken back
    EXPECT_EQ(console, "100, most are gone: True\n");
    EXPECT_TRUE(load(path)); // the second time they were replaced
    EXPECT_EQ(console, "100, most are gone: True\n");
    EXPECT_TRUE(run(L"REPLACED-7").ran);
    EXPECT_EQ(console, "replaced-7 True\n");
}

TEST_F(ManagedEngineTest, NamesThatTheHostRefusesAndNullsAreToldToTheAssembly)
{
    EXPECT_TRUE(loadPlaced("Greeting"));
    EXPECT_TRUE(loadPlaced("Refused")) << console;
    EXPECT_EQ(console, "empty: False\nnull: name\nnull: command\ngreet: False\n");
    EXPECT_TRUE(run(L"GREET").ran);
    EXPECT_EQ(console, "Hello, host " + running->versionText() + "\n");
}

TEST_F(ManagedEngineTest, TheStandardStreamsAreTheHostsConsoleAndNoInput)
{
    ASSERT_NE(std::freopen(write("typed", "typed\n").c_str(), "r", stdin), nullptr);
    const std::string expected = "out 1\nprint\nerror\nab12.5😀图纸 \uFFFD!\nend of input\n-1\n";
    EXPECT_TRUE(loadPlaced("Streams"));
    EXPECT_EQ(console, expected);
    EXPECT_TRUE(loadPlaced("Streams")); // the one before has thrown its console away
    EXPECT_EQ(console, expected);
}

TEST_F(ManagedEngineTest, PathsNamesAndTextsAreNotBoundToAscii)
{
    const std::string path = place("Drawing", "Maßstäbe 图纸/图 😀.dll");
    EXPECT_TRUE(load(path)) << console;
    EXPECT_EQ(console, "图 😀.dll 图纸 😀\n");
    const auto result = run(L"标注");
    EXPECT_FALSE(result.ran);
    EXPECT_EQ(result.problem, "System.Exception: Größe fehlt 😀");
    EXPECT_TRUE(hasTraceOf("Maßstäbe.Plugin.Beschriften ()")) << console;
}

TEST_F(ManagedEngineTest, InTheLocaleCPathsBeyondAsciiStillLeadToTheirFiles)
{
    std::setlocale(LC_ALL, "C");
    EXPECT_TRUE(load(place("Drawing", "Maßstäbe/图.dll"))) << console;
    EXPECT_EQ(console, "图.dll 图纸 😀\n");
}

TEST_F(ManagedEngineTest, APathThatIsNotUtf8StillLeadsToItsFile)
{
    EXPECT_TRUE(load(place("Greeting", "Gr\xFC\xDF.dll"))) << console;
    EXPECT_EQ(console, "start 1 of \nregistered: True\n");
    EXPECT_TRUE(run(L"GREET").ran);
}

TEST_F(ManagedEngineTest, WithoutAHostNothingIsLoaded)
{
    const std::string path = place("Greeting");
    running.reset();
    EXPECT_FALSE(load(path));
    EXPECT_EQ(console, "");
    startHost();
    EXPECT_TRUE(load(path));
    running.reset();
    EXPECT_FALSE(load(path));
    startHost();
    EXPECT_TRUE(load(path));
    EXPECT_EQ(normalised(console), "start 2 of /T/Greeting.dll\nregistered: True\n");
}

} // namespace
