// Many runs of the tool that begin together on one home.
#include "tests/kills/KillTest.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <poll.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// Keeps every run from its turn at the configuration while it lives, as another host in its turn does.
class OthersTurn
{
public:
    explicit OthersTurn(const std::string& path)
        : folder(path),
          lock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          openings(::inotify_init1(IN_CLOEXEC))
    {
        EXPECT_EQ(::flock(lock, LOCK_EX | LOCK_NB), 0);
        EXPECT_GE(::inotify_add_watch(openings, folder.c_str(), IN_OPEN), 0);
    }
    OthersTurn(const OthersTurn&) = delete;
    OthersTurn& operator=(const OthersTurn&) = delete;
    ~OthersTurn()
    {
        ::close(openings);
        ::close(lock);
    }

    /// Waits until all of `processes` stand before their turn. On a busy machine it gives up before they do.
    void gather(const std::vector<pid_t>& processes) const
    {
        const auto patienceEnds = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!std::all_of(processes.begin(), processes.end(), [this](pid_t process) { return isHere(process); })) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(patienceEnds - std::chrono::steady_clock::now());
            pollfd ready{openings, POLLIN, 0};
            char events[4096]; // equal ones are merged: they say when to look again, not how many there were
            if (left.count() <= 0 || ::poll(&ready, 1, static_cast<int>(left.count())) <= 0 ||
                ::read(openings, events, sizeof events) <= 0) {
                return;
            }
        }
    }

private:
    /// Whether `process` has the folder open.
    bool isHere(pid_t process) const
    {
        std::error_code error;
        fs::directory_iterator opened("/proc/" + std::to_string(process) + "/fd", error);
        while (!error && opened != fs::directory_iterator()) {
            std::error_code isClosed; // meanwhile
            if (fs::read_symlink(opened->path(), isClosed) == folder) {
                return true;
            }
            opened.increment(error);
        }
        return false;
    }

    fs::path folder;
    int lock;
    int openings;
};

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
        {
            const OthersTurn turn(home() + "/.config/ORRELIN");
            ::close(gate[0]);
            ::close(gate[1]); // they begin
            turn.gather(processes);
        }
        std::vector<ToolRun> runs;
        for (std::size_t number = 0; number < count; ++number) {
            const int status = endOf(processes[number]);
            runs.push_back(
                {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contentOf(outputOf(number)), ""});
        }
        return runs;
    }

    /// Expects that `runs` had their turns one after the other: the report of the first one says `first` about the
    /// list of menus, and that of each later one `later`. Whoever did not get its turn says so.
    static void expectOneAfterTheOther(const std::vector<ToolRun>& runs, const std::string& first,
                                       const std::string& later)
    {
        std::map<std::string, std::size_t> answers;
        std::size_t turns = 0;
        for (const ToolRun& run : runs) {
            if (run.output.find("could not be locked") == std::string::npos) {
                const std::size_t begin = run.output.find("\nMenus: ") + 1;
                ++answers[run.output.substr(begin, run.output.find('\n', begin) - begin)];
                ++turns;
            }
        }
        ASSERT_GT(turns, 1U);
        EXPECT_EQ(answers, (std::map<std::string, std::size_t>{{first, 1}, {later, turns - 1}}));
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
    // The first replaces two menus of bundles by three; the others find those three, and the host's three.
    expectOneAfterTheOther(runs, "Menus: 5 before, 6 after", "Menus: 6 before, 6 after");
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
    expectOneAfterTheOther(runs, "Menus: 0 before, 4 after", "Menus: 4 before, 4 after");
    EXPECT_EQ(left(), wanted);
}

} // namespace
