// What the host makes of what engines tell it.
#include "tests/engines/EngineTest.h"

using standalone::CommandRegistered;
using standalone::EngineStart;
using standalone::ScriptLoad;

namespace {

class EngineServicesTest : public enginetest::EngineTest
{
protected:
    KestEngineHost& host() { return *kestEngineHost(); }
};

std::string succeed(int)
{
    return "";
}

std::string failWithNumber(int number)
{
    return "failure " + std::to_string(number);
}

TEST_F(EngineServicesTest, WithoutAHostThereIsNone)
{
    EXPECT_EQ(kestEngineHost(), &running->engineServices());
    running.reset();
    EXPECT_EQ(kestEngineHost(), nullptr);
}

TEST_F(EngineServicesTest, TheHostPrintsAndTellsItsVersion)
{
    host().print("one\n");
    host().print("two");
    EXPECT_EQ(console, "one\ntwo");
    EXPECT_EQ(host().versionText(), running->versionText());
}

TEST_F(EngineServicesTest, ALoadStandsInTheJournalAndOwnsItsCommands)
{
    host().beginComponent(L"/T/a.py");
    EXPECT_TRUE(host().registerCommand("stairs", &succeed, 1));
    host().endComponent("");
    ASSERT_EQ(loads().size(), 1U);
    EXPECT_EQ(loads()[0].path, L"/T/a.py");
    EXPECT_TRUE(loads()[0].loaded);
    EXPECT_EQ(loads()[0].problem, "");
    EXPECT_EQ(running->commands().moduleOf(L"STAIRS"), "/T/a.py");
}

TEST_F(EngineServicesTest, AFailedLoadTakesItsCommandsWithIt)
{
    host().beginComponent(L"/T/outer.py");
    host().registerCommand("outer", &succeed, 1);
    host().beginComponent(L"/T/inner.dll");
    host().registerCommand("inner", &succeed, 2);
    host().endComponent("no entry");
    host().endComponent("");
    ASSERT_EQ(loads().size(), 2U);
    EXPECT_TRUE(loads()[0].loaded);
    EXPECT_EQ(loads()[1].path, L"/T/inner.dll");
    EXPECT_FALSE(loads()[1].loaded);
    EXPECT_EQ(loads()[1].problem, "no entry");
    EXPECT_TRUE(running->commands().has(L"OUTER"));
    EXPECT_FALSE(running->commands().has(L"INNER"));
}

TEST_F(EngineServicesTest, AnEndWithoutABeginningIsNothing)
{
    host().endComponent("late");
    EXPECT_TRUE(loads().empty());
}

TEST_F(EngineServicesTest, AComponentThatIsLoadedAgainReplacesItsOwnCommandsOnly)
{
    host().beginComponent(L"/T/a.py");
    EXPECT_TRUE(host().registerCommand("mine", &failWithNumber, 1));
    host().endComponent("");
    host().beginComponent(L"/T/b.py");
    EXPECT_FALSE(host().registerCommand("Mine", &failWithNumber, 2));
    host().endComponent("");
    EXPECT_EQ(run(L"MINE").problem, "failure 1");
    host().beginComponent(L"/T/a.py");
    EXPECT_TRUE(host().registerCommand("MINE", &failWithNumber, 3));
    host().endComponent("");
    EXPECT_EQ(run(L"MINE").problem, "failure 3");
    EXPECT_EQ(running->journal().only<CommandRegistered>().size(), 1U);
}

TEST_F(EngineServicesTest, OutsideOfALoadNoCommandIsReplaced)
{
    EXPECT_TRUE(host().registerCommand("loose", &failWithNumber, 1));
    EXPECT_FALSE(host().registerCommand("loose", &failWithNumber, 2));
    EXPECT_EQ(run(L"LOOSE").problem, "failure 1");
    EXPECT_EQ(running->commands().moduleOf(L"LOOSE"), "");
}

TEST_F(EngineServicesTest, AnEmptyNameAndOneThatIsNotUtf8AreRefused)
{
    EXPECT_FALSE(host().registerCommand("", &succeed, 1));
    EXPECT_FALSE(host().registerCommand("\xC3", &succeed, 1));
    EXPECT_TRUE(running->journal().only<CommandRegistered>().empty());
}

TEST_F(EngineServicesTest, TheRunOfAnEnginesCommandFailsWithItsWords)
{
    host().registerCommand("good", &succeed, 1);
    host().registerCommand("bad", &failWithNumber, 7);
    EXPECT_TRUE(run(L"GOOD").ran);
    EXPECT_FALSE(run(L"BAD").ran);
    EXPECT_EQ(run(L"BAD").problem, "failure 7");
}

TEST_F(EngineServicesTest, TheStartOfAnEngineIsNoPartOfTheLoadThatBroughtItAbout)
{
    host().beginComponent(L"/T/a.py");
    host().engineStarted("Python 3.99", 3600000);
    host().endComponent("");
    const auto starts = running->journal().only<EngineStart>();
    ASSERT_EQ(starts.size(), 1U);
    EXPECT_EQ(starts[0].description, "Python 3.99");
    EXPECT_EQ(starts[0].milliseconds, 3600000);
    EXPECT_LT(running->journal().only<ScriptLoad>()[0].milliseconds, 0); // an hour less than it took
}

} // namespace
