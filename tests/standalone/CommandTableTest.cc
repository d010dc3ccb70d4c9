#include "standalone/CommandTable.h"

#include "HostFixture.h"

#include "host/CommandTable.h"
#include "host/ErrorStatus.h"
#include "host/LocaleText.h"

#include <clocale>
#include <stdexcept>

using standalone::CommandAnnounced;
using standalone::CommandRegistered;
using standalone::CommandRegistry;

namespace {

class CommandTableTest : public standalonetest::HostFixture
{
protected:
    CommandTableTest() { startHost(); }
    ~CommandTableTest() override { std::setlocale(LC_ALL, "C"); }

    CommandRegistry& commands() { return running->commands(); }
};

void countUp(void* context)
{
    ++*static_cast<int*>(context);
}

TEST_F(CommandTableTest, AnAnnouncedCommandIsKnownByNameAndHasNoFunction)
{
    KestGetCommandString2TypeMap()->addEntry(L"DRAWGEAR", 3);
    EXPECT_EQ(commands().announcedKind(L"drawgear"), 3);
    EXPECT_EQ(commands().announcedKind(L"DRAW"), std::nullopt);
    EXPECT_FALSE(commands().has(L"DRAWGEAR"));
    const auto noted = running->journal().only<CommandAnnounced>();
    ASSERT_EQ(noted.size(), 1U);
    EXPECT_EQ(noted[0].name, L"DRAWGEAR");
    EXPECT_EQ(noted[0].kind, 3);
}

TEST_F(CommandTableTest, ACommandMayBeAnnouncedAgain)
{
    KestGetCommandString2TypeMap()->addEntry(L"DRAWGEAR", 3);
    KestGetCommandString2TypeMap()->addEntry(L"DRAWGEAR", 4);
    EXPECT_EQ(commands().announcedKind(L"DRAWGEAR"), 4);
    EXPECT_EQ(running->journal().only<CommandAnnounced>().size(), 2U);
}

TEST_F(CommandTableTest, ACommandRunsUnderItsNameInAnyLetterCase)
{
    int runs = 0;
    EXPECT_EQ(kestRegisterCommand("DrawGear", &countUp, &runs), 1);
    EXPECT_TRUE(commands().has(L"drawgear"));
    const standalone::RunResult result = commands().run(L"DRAWgear");
    EXPECT_TRUE(result.ran);
    EXPECT_EQ(result.problem, "");
    EXPECT_EQ(runs, 1);
    const auto noted = running->journal().only<CommandRegistered>();
    ASSERT_EQ(noted.size(), 1U);
    EXPECT_EQ(noted[0].name, L"DRAWGEAR");
    EXPECT_EQ(noted[0].module, "");
    EXPECT_EQ(commands().moduleOf(L"drawgear"), "");
}

TEST_F(CommandTableTest, NamesFollowTheLettersOfTheGlobalLocale)
{
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    EXPECT_EQ(kestRegisterCommand("caf\xC3\xA9", &countUp, nullptr), 1);
    EXPECT_TRUE(commands().has(L"CAF\u00C9"));
}

TEST_F(CommandTableTest, ABadNameOrNoFunctionIsRefused)
{
    EXPECT_EQ(kestRegisterCommand("", &countUp, nullptr), 0);
    EXPECT_EQ(kestRegisterCommand("caf\xE9", &countUp, nullptr), 0);
    EXPECT_EQ(kestRegisterCommand(nullptr, &countUp, nullptr), 0);
    EXPECT_EQ(kestRegisterCommand("draw", nullptr, nullptr), 0);
    EXPECT_EQ(running->journal().size(), 0U);
}

TEST_F(CommandTableTest, TheFirstFunctionOfANameStays)
{
    int first = 0;
    int second = 0;
    EXPECT_EQ(kestRegisterCommand("draw", &countUp, &first), 1);
    EXPECT_EQ(kestRegisterCommand("DRAW", &countUp, &second), 0);
    commands().run(L"DRAW");
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0);
    EXPECT_EQ(running->journal().only<CommandRegistered>().size(), 1U);
}

TEST_F(CommandTableTest, AnUnknownCommandDoesNotRun)
{
    const standalone::RunResult result = commands().run(L"DRAW");
    EXPECT_FALSE(result.ran);
    EXPECT_EQ(result.problem, "no module has registered a command of this name");
}

TEST_F(CommandTableTest, AnErrorEndsTheCommandAndNotTheHost)
{
    kestRegisterCommand(
        "throw", [](void*) { throw std::runtime_error("out of paper\n"); }, nullptr);
    kestRegisterCommand(
        "raise", [](void*) { throw new VxErrorStatus(Kest::eOutOfMemory, L"no room for a circle", 8); }, nullptr);
    kestRegisterCommand(
        "number", [](void*) { throw 5; }, nullptr);
    const auto problem = [&](const wchar_t* name) {
        const standalone::RunResult result = commands().run(name);
        EXPECT_FALSE(result.ran);
        return result.problem;
    };
    EXPECT_EQ(problem(L"throw"), "the command ended with an exception: out of paper\\x0A");
    EXPECT_EQ(problem(L"raise"), "the command ended with error 6 of the host, number 8: no room for a circle");
    EXPECT_EQ(problem(L"number"), "the command ended with an exception of unknown type");
}

TEST_F(CommandTableTest, ACommandMayRegisterAndRunCommands)
{
    static int runs = 0;
    runs = 0;
    kestRegisterCommand(
        "outer",
        [](void*) {
            kestRegisterCommand("inner", &countUp, &runs);
            standalone::Host::current().commands().run(L"INNER");
        },
        nullptr);
    EXPECT_TRUE(commands().run(L"OUTER").ran);
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(commands().has(L"INNER"));
}

TEST_F(CommandTableTest, CommandsOfAModuleAreTakenBackTogether)
{
    {
        CommandRegistry::Registration registration(commands(), "/a.krx");
        kestRegisterCommand("one", &countUp, nullptr);
        {
            const CommandRegistry::Registration inner(commands(), "/b.krx");
            kestRegisterCommand("other", &countUp, nullptr);
        }
        kestRegisterCommand("two", &countUp, nullptr);
        EXPECT_EQ(commands().moduleOf(L"two"), "/a.krx");
        EXPECT_EQ(commands().moduleOf(L"other"), "/b.krx");
        registration.takeBack();
    }
    EXPECT_EQ(commands().moduleOf(L"one"), std::nullopt);
    EXPECT_FALSE(commands().has(L"two"));
    EXPECT_TRUE(commands().has(L"other"));
}

} // namespace
