// The managed runtime is a polite guest of its host's process.
#include "tests/engines/ManagedFixture.h"

#include <csignal>
#include <cstdlib>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

class ManagedGuestTest : public enginetest::ManagedFixture
{
};

TEST_F(ManagedGuestTest, TheStartOfTheRuntimeLeavesTheProcessAsItWas)
{
    open("VxManagedCommand.dll");
    const std::string path = place("Greeting");
    const auto before = enginetest::processState();
    const char* const suspend = std::getenv("MONO_THREADS_SUSPEND");
    const char* const debug = std::getenv("MONO_DEBUG");
    EXPECT_TRUE(load(path));
    EXPECT_EQ(enginetest::processState(), before);
    EXPECT_STREQ(std::getenv("MONO_THREADS_SUSPEND"), suspend);
    EXPECT_STREQ(std::getenv("MONO_DEBUG"), debug);
}

TEST_F(ManagedGuestTest, AnInterruptionThatAnAssemblyAsksForDoesNotMeetTheNext)
{
    EXPECT_TRUE(loadPlaced("Interrupts")) << console;
    EXPECT_TRUE(loadPlaced("Sleeps")) << console;
    EXPECT_EQ(console, "slept\n");
}

TEST_F(ManagedGuestTest, AChildThatEndsBetweenVisitsIsNoticed)
{
    ASSERT_EQ(::mkfifo((folder / "go").c_str(), 0600), 0);
    ASSERT_TRUE(loadPlaced("Waits")) << console;
    const pid_t child = std::stoi(console);
    std::ofstream(folder / "go") << "!";
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0); // outside of any visit
    EXPECT_TRUE(run(L"WAIT").ran);
    EXPECT_EQ(console, "ended: True");
}

TEST_F(ManagedGuestTest, WorkingDirectoryAndCultureComeBack)
{
    const std::string path = place("Wandering");
    const auto before = enginetest::processState();
    EXPECT_TRUE(load(path)) << console;
    const std::string culture = console;
    EXPECT_EQ(enginetest::processState(), before);
    EXPECT_TRUE(load(path));
    EXPECT_EQ(console, culture);
}

TEST_F(ManagedGuestTest, ThreadsOfAnAssemblyFailAloneAndDoNotHoldUpTheEnd)
{
    EXPECT_TRUE(loadPlaced("Threads")) << console;
    const std::string failure = "A thread of an assembly failed: ";
    const std::string null = "System.NullReferenceException: Object reference not set to an instance of an object.\n";
    EXPECT_EQ(printed(), failure + "System.InvalidOperationException: alone\n" + failure + null + failure +
                             "the assembly tried to end the process with status 4\n" +
                             "from a thread\ncommands are registered on the host's thread, as in Start()\n" +
                             "finalized: True\nrefused: True\n"); // what a finalizer throws, nobody hears of
    EXPECT_FALSE(running->commands().has(L"ELSEWHERE"));
}

TEST_F(ManagedGuestTest, AThreadMayMeetNullReferencesWhileTheHostRuns)
{
    ASSERT_EQ(::mkfifo((folder / "go").c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo((folder / "ended").c_str(), 0600), 0);
    EXPECT_TRUE(loadPlaced("FailsLater")) << console;
    std::ofstream(folder / "go") << "!";
    EXPECT_EQ(standalonetest::fileContent(folder / "ended"), "d") << "how often it met one: 100 times";
}

TEST_F(ManagedGuestTest, ACrashInNativeCodeReachesTheHostAndWritesNoFiles)
{
    const std::string path = place("Crash", "in/Crash.dll");
    EXPECT_EXIT(
        {
            std::filesystem::create_directory(folder / "work");
            std::filesystem::current_path(folder / "work");
            std::signal(SIGSEGV, [](int) { ::_exit(42); });
            load(path);
        },
        testing::ExitedWithCode(42), "");
    EXPECT_TRUE(standalonetest::namesIn(folder / "work").empty());
}

TEST_F(ManagedGuestTest, AThreadOfTheHostThatTheRuntimeDoesNotKnowMayLoadAndRun)
{
    const std::string path = place("Greeting");
    std::thread([&] { EXPECT_TRUE(load(path)) << console; }).join();
    EXPECT_EQ(normalised(console), "start 1 of /T/Greeting.dll\nregistered: True\n");
    std::thread([&] { EXPECT_TRUE(run(L"GREET").ran); }).join();
    EXPECT_EQ(console, "Hello, host " + running->versionText() + "\n");
    EXPECT_TRUE(run(L"GREET").ran);
    EXPECT_TRUE(load(path));
    EXPECT_EQ(normalised(console), "start 2 of /T/Greeting.dll\nregistered: True\n");
}

} // namespace
