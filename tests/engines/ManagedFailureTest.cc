// Managed assemblies that fail: each harms itself alone, and says why.
#include "tests/engines/ManagedFixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char kExpected[] =
    "; expected is one public class named Plugin with the method \"public static void Start()\"";

// A handler for a stack that is full needs a stack of its own, and Mono for arm64 asks the system for none.
#ifdef __aarch64__
constexpr bool kCatchesStackOverflow = false;
#else
constexpr bool kCatchesStackOverflow = true;
#endif
constexpr char kNoOverflow[] = "Mono for arm64 sets up no signal stack: a stack overflow ends the process";

class ManagedFailureTest : public enginetest::ManagedFixture
{
protected:
    /// Loads `path`, which must fail with `why`, print that and nothing else, and leave no command "never".
    void failsWith(const std::string& path, const std::string& why)
    {
        EXPECT_FALSE(load(path));
        EXPECT_EQ(problem(), why);
        EXPECT_EQ(console.find("KestEngine"), std::string::npos) << "the engine's own methods help nobody:\n"
                                                                 << console;
        EXPECT_EQ(printed(), normalised(path) + ": could not be loaded: " + why + "\n");
        EXPECT_FALSE(running->commands().has(L"NEVER"));
    }

    /// Runs the command `name`, which must fail with `why` and print `text`, twice.
    void commandFailsWith(const std::wstring& name, const std::string& why, const std::string& text)
    {
        for (int i = 0; i < 2; ++i) {
            const auto result = run(name);
            EXPECT_FALSE(result.ran);
            EXPECT_EQ(result.problem, why);
            EXPECT_EQ(printed(), text);
        }
        EXPECT_TRUE(run(L"FINE").ran);
        EXPECT_EQ(console, "fine\n");
    }
};

TEST_F(ManagedFailureTest, AnExceptionOfStartFailsTheLoadAndTakesItsCommandsBack)
{
    failsWith(place("ThrowingStart"), "System.InvalidOperationException: no licence for this seat");
    EXPECT_TRUE(hasTraceOf("Plugin.Start ()")) << console;
    EXPECT_TRUE(loadPlaced("Greeting"));
}

TEST_F(ManagedFailureTest, NullReferencesOfStartFailTheLoad)
{
    const std::string path = place("NullReference");
    const auto before = enginetest::processState();
    for (int i = 0; i < 3; ++i) {
        failsWith(path, "System.NullReferenceException: Object reference not set to an instance of an object.");
        EXPECT_EQ(enginetest::processState(), before);
    }
}

TEST_F(ManagedFailureTest, DivisionsByZeroInStartFailTheLoad)
{
    const std::string path = place("DividesByZero");
    const auto before = enginetest::processState();
    for (int i = 0; i < 3; ++i) {
        failsWith(path, "System.DivideByZeroException: Attempted to divide by zero.");
        EXPECT_EQ(enginetest::processState(), before);
    }
}

TEST_F(ManagedFailureTest, StackOverflowsOfStartFailTheLoad)
{
    if (!kCatchesStackOverflow) {
        GTEST_SKIP() << kNoOverflow;
    }
    const std::string path = place("StackOverflow");
    const auto before = enginetest::processState();
    for (int i = 0; i < 3; ++i) {
        failsWith(path, "System.StackOverflowException: The requested operation caused a stack overflow.");
        EXPECT_TRUE(hasTraceOf("Plugin.Deeper (System.Int32 depth)")) << console;
        EXPECT_EQ(enginetest::processState(), before);
    }
}

TEST_F(ManagedFailureTest, AStackOverflowShowsItsOwnFramesAndNotThoseOfOneBefore)
{
    if (!kCatchesStackOverflow) {
        GTEST_SKIP() << kNoOverflow;
    }
    EXPECT_FALSE(loadPlaced("StackOverflow"));
    EXPECT_FALSE(loadPlaced("Overflows"));
    EXPECT_TRUE(hasTraceOf("Plugin.Endless (System.Int32 depth)")) << console;
    EXPECT_FALSE(hasTraceOf("Plugin.Deeper (System.Int32 depth)")) << console;
}

TEST_F(ManagedFailureTest, AThrowingStaticConstructorIsToldWithItsCause)
{
    failsWith(place("ThrowingInitializer"),
              "System.TypeInitializationException: The type initializer for 'Plugin' threw an exception. ---> "
              "System.FormatException: bad table");
}

TEST_F(ManagedFailureTest, TheEndOfTheProcessFailsTheLoad)
{
    failsWith(place("Ending"), "the assembly tried to end the process with status 3");
}

TEST_F(ManagedFailureTest, ThePlaceOfTheEntryIsExplained)
{
    failsWith(place("NoPlugin"), std::string("it has no public class named Plugin") + kExpected);
    failsWith(place("TwoPlugins"),
              std::string("it has several public classes named Plugin (First.Plugin, Second.Plugin)") + kExpected);
}

TEST_F(ManagedFailureTest, TheFormOfTheEntryIsExplained)
{
    failsWith(place("NoStart"),
              "its class Rooms.Plugin has no method \"public static void Start()\" that is not async");
    const std::string why = "its class Plugin has no method \"public static void Start()\" that is not async";
    failsWith(place("StartReturns"), why);
    failsWith(place("StartIsAsync"), why);
}

TEST_F(ManagedFailureTest, WhatCannotBeReadSaysWhy)
{
    failsWith(folder / "missing.dll", "No such file or directory");
    std::filesystem::create_directory(folder / "folder.dll");
    failsWith(folder / "folder.dll", "it is a folder");
    ASSERT_EQ(::mkfifo((folder / "pipe.dll").c_str(), 0600), 0);
    failsWith(folder / "pipe.dll", "it is no regular file");
    failsWith(write("empty.dll", ""), "the file is empty");
}

TEST_F(ManagedFailureTest, WhatIsNoAssemblySaysSo)
{
    failsWith(write("text.dll", "no assembly\n"), "it is no managed assembly (Invalid Image)");
    std::filesystem::copy_file(KEST_ENGINE_FOLDER "/VxManagedCommand.dll", folder / "native.dll");
    failsWith(folder / "native.dll", "it is no managed assembly (Invalid Image)");
}

TEST_F(ManagedFailureTest, ATruncatedAssemblyIsRefusedWhereverItEnds)
{
    const std::string whole = standalonetest::fileContent(place("Greeting"));
    for (std::size_t length = 1; length < whole.size() / 2; length += 61) {
        failsWith(write("cut " + std::to_string(length) + ".dll", whole.substr(0, length)),
                  "it is no managed assembly (Invalid Image)");
    }
    // Behind that, code and resources lack: the entry is found, or what lacks is never used. The process lives.
    for (std::size_t length = whole.size() / 2; length < whole.size(); length += 61) {
        const bool isLoaded = load(write("cut " + std::to_string(length) + ".dll", whole.substr(0, length)));
        EXPECT_EQ(isLoaded, problem().empty()) << length;
    }
    EXPECT_TRUE(loadPlaced("Greeting"));
}

TEST_F(ManagedFailureTest, ACommandThatThrowsFailsAlone)
{
    ASSERT_TRUE(loadPlaced("Faults")) << console;
    const std::string null = "System.NullReferenceException: Object reference not set to an instance of an object.";
    const std::string zero = "System.DivideByZeroException: Attempted to divide by zero.";
    const auto before = enginetest::processState();
    commandFailsWith(L"NULL", null, null + "\n");
    commandFailsWith(L"DIVIDE", zero, zero + "\n");
    EXPECT_EQ(enginetest::processState(), before);
}

TEST_F(ManagedFailureTest, ACommandThatOverflowsTheStackFailsAlone)
{
    if (!kCatchesStackOverflow) {
        GTEST_SKIP() << kNoOverflow;
    }
    ASSERT_TRUE(loadPlaced("Faults")) << console;
    const std::string overflow = "System.StackOverflowException: The requested operation caused a stack overflow.";
    const auto before = enginetest::processState();
    commandFailsWith(L"OVERFLOW", overflow, overflow + "\n");
    EXPECT_EQ(enginetest::processState(), before);
}

TEST_F(ManagedFailureTest, CausesOfExceptionsAreTold)
{
    ASSERT_TRUE(loadPlaced("Faults")) << console;
    commandFailsWith(L"INVOKE", "System.ArgumentException: wrong scale", "System.ArgumentException: wrong scale\n");
    EXPECT_EQ(run(L"INITIALIZER").problem,
              "System.TypeInitializationException: The type initializer for 'NeverReady' threw an exception. ---> "
              "System.FormatException: bad table");
    EXPECT_EQ(run(L"MUTE").problem, "Plugin+Mute: (its message could not be had)");
    EXPECT_EQ(run(L"ABORT").problem, "System.Threading.ThreadAbortException: Thread was being aborted.");
    EXPECT_TRUE(run(L"FINE").ran);
}

TEST_F(ManagedFailureTest, ACommandCannotEndTheProcess)
{
    ASSERT_TRUE(loadPlaced("Faults")) << console;
    const std::string ending = "the assembly tried to end the process with status ";
    commandFailsWith(L"EXIT", ending + "3", ending + "3\n");
    commandFailsWith(L"SWALLOW", ending + "0", "swallowed\n" + ending + "0\n");
    const std::string failure = "the assembly tried to end the process: disk on fire";
    commandFailsWith(L"FAILFAST", failure, failure + "\n");
}

} // namespace
