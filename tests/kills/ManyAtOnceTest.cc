// Many runs of the tool that begin together on one home.
#include "tests/kills/KillTest.h"

#include <sys/wait.h>
#include <unistd.h>

namespace {

class ManyAtOnceTest : public KillTest
{
protected:
    /// Runs the tool so many times, all of them at once, and returns how each ended and what it printed.
    std::vector<ToolRun> runTogether(std::size_t count) const
    {
        const auto outputOf = [this](std::size_t number) { return path("output") + std::to_string(number); };
        int gate[2];
        EXPECT_EQ(::pipe(gate), 0);
        std::vector<pid_t> processes;
        for (std::size_t number = 0; number < count; ++number) {
            ProcessCommand one = command();
            one.output = outputOf(number);
            processes.push_back(startBehind(gate, one));
        }
        ::close(gate[0]);
        ::close(gate[1]); // they begin
        std::vector<ToolRun> runs;
        for (std::size_t number = 0; number < count; ++number) {
            const int status = endOf(processes[number]);
            runs.push_back(
                {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contentOf(outputOf(number)), ""});
        }
        return runs;
    }

    /// Whether `run` did its work; or it did so too, but lost its log to one that began later; or it says that it
    /// waited for the others for as long as it may.
    static bool isGoodOrSaysWhatTheOthersDid(const ToolRun& run)
    {
        const auto says = [&](const char* text) { return run.output.find(text) != std::string::npos; };
        if (run.status == 0) {
            return says("\nResult: all went well\n");
        }
        return run.status == 1 &&
               ((says("another run has emptied it meanwhile\n") && says("\nResult: no reliable error log\n")) ||
                says("could not be locked: another host used it for more than 10 s"));
    }
};

TEST_F(ManyAtOnceTest, FiftyRunsThatBeginTogetherLoseNoneOfTheHostsMenusAndPutTheListRight)
{
    const HomeState wanted = undisturbed(0);
    undisturbed(1); // whose menus they find and have to replace
    installSet(0);

    const std::vector<ToolRun> runs = runTogether(50);

    for (const ToolRun& run : runs) {
        EXPECT_PRED1(isGoodOrSaysWhatTheOthersDid, run);
    }
    EXPECT_EQ(left(), wanted);
    EXPECT_EQ(wanted.hostMenus, kOwnMenus + L";" + wanted.bundleMenus);
    runToTheEnd();
    EXPECT_EQ(left(), wanted);
}

TEST_F(ManyAtOnceTest, FiftyRunsThatBeginTogetherOnANewHomeMakeOneWholeConfiguration)
{
    const HomeState wanted = undisturbed(0, false);
    beginAfresh(false);

    const std::vector<ToolRun> runs = runTogether(50);

    for (const ToolRun& run : runs) {
        EXPECT_PRED1(isGoodOrSaysWhatTheOthersDid, run);
    }
    EXPECT_EQ(left(), wanted);
}

} // namespace
