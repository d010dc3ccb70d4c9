// Turns at the configuration: several hosts at once, and processes that die in the middle.
#include "ConfigurationFixture.h"

#include <csignal>
#include <fcntl.h>
#include <set>
#include <sstream>
#include <stdexcept>
#include <sys/file.h>

using namespace standalonetest;

namespace {

class ConfigurationTurnTest : public ConfigurationFixture
{
protected:
    /// Holds the lock on the configuration folder, as another host in its turn does.
    class OtherHost
    {
    public:
        explicit OtherHost(const std::string& path) : descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY))
        {
            EXPECT_EQ(::flock(descriptor, LOCK_EX | LOCK_NB), 0);
        }
        OtherHost(const OtherHost&) = delete;
        OtherHost& operator=(const OtherHost&) = delete;
        ~OtherHost()
        {
            ::flock(descriptor, LOCK_UN);
            ::close(descriptor);
        }

    private:
        int descriptor;
    };
};

TEST_F(ConfigurationTurnTest, ATurnIsKeptAsAWholeWhenItEnds)
{
    startHost();
    {
        const Turn turn(store());
        set(kOurs, L"a");
        EXPECT_EQ(get(kOurs), L"a");
        {
            const Turn inner(store());
            set(kHosts, L"h;a");
        }
        // Another reader sees the file as it was.
        EXPECT_EQ(endOf(startProcess([&] {
                      sqlite3* other = nullptr;
                      sqlite3_open(file().c_str(), &other);
                      sqlite3_exec(
                          other, "SELECT 1 FROM value",
                          [](void*, int, char**, char**) {
                              ADD_FAILURE() << "half a turn can be seen";
                              return 0;
                          },
                          nullptr, nullptr);
                      sqlite3_close(other);
                  })),
                  0);
    }
    EXPECT_EQ(pair(), Pair(L"a", L"h;a"));
}

TEST_F(ConfigurationTurnTest, WhatWasWrittenBeforeAnExceptionIsKept)
{
    storePair(L"old", L"h;old");
    try {
        const Turn turn(store());
        set(kOurs, L"new");
        throw std::runtime_error("the menu database failed");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(pair(), Pair(L"new", L"h;old"));
}

TEST_F(ConfigurationTurnTest, TwentyHostsAtOnceLoseNothing)
{
    startHost();
    running.reset();
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    std::vector<pid_t> children;
    {
        const OtherHost holdsThemBack(fileFolder());
        for (int number = 0; number < 20; ++number) {
            children.push_back(startProcess([&, number] {
                startHost();
                EXPECT_EQ(::write(ready[1], "x", 1), 1);
                const Turn turn(store());
                const std::wstring mine = std::to_wstring(number);
                EXPECT_EQ(set(kOurs, get(kOurs, L"") + L";" + mine), Kest::eOk);
                EXPECT_EQ(set(kHosts, get(kHosts, L"") + L";" + mine), Kest::eOk);
            }));
        }
        for (char byte = 0; char waiting : std::vector<char>(20)) {
            static_cast<void>(waiting);
            ASSERT_EQ(::read(ready[0], &byte, 1), 1);
        }
    }
    for (const pid_t child : children) {
        EXPECT_EQ(endOf(child), 0);
    }
    ::close(ready[0]);
    ::close(ready[1]);
    startHost();
    EXPECT_EQ(get(kOurs), get(kHosts)); // every turn wrote both
    std::multiset<int> entries;
    std::wistringstream list(get(kOurs).substr(1));
    for (std::wstring entry; std::getline(list, entry, L';');) {
        entries.insert(std::stoi(entry));
    }
    std::multiset<int> expected;
    for (int number = 0; number < 20; ++number) {
        expected.insert(number);
    }
    EXPECT_EQ(entries, expected);
}

TEST_F(ConfigurationTurnTest, ATurnThatCannotBeHadReadsAndWritesNothing)
{
    storePair(L"old", L"h;old");
    const std::string before = fileContent(file());
    const OtherHost other(fileFolder());
    store().setPatience(std::chrono::milliseconds{20});
    {
        const Turn turn(store());
        EXPECT_EQ(statusOfGetting(kOurs), standalone::kStoreFailed);
        EXPECT_EQ(set(kOurs, L"new"), standalone::kStoreFailed);
        EXPECT_EQ(statusOfGetting(kHosts), standalone::kStoreFailed);
        EXPECT_EQ(set(kHosts, L"new"), standalone::kStoreFailed);
    }
    const std::string reason = "another host used it for more than 20 ms; wait until that host is done";
    EXPECT_EQ(notices(), std::vector<std::string>{"The configuration folder \"" + fileFolder() +
                                                  "\" could not be locked: " + reason});
    EXPECT_EQ(writes(), (std::vector<std::string>{"stored", "stored", "refused: " + reason, "refused: " + reason}));
    EXPECT_TRUE(fileContent(file()) == before);
}

TEST_F(ConfigurationTurnTest, ATurnIsHadAgainAfterOneThatWasNot)
{
    startHost();
    store().setPatience(std::chrono::milliseconds{20});
    {
        const OtherHost other(fileFolder());
        EXPECT_EQ(set(kOurs, L"a"), standalone::kStoreFailed);
    }
    EXPECT_EQ(set(kOurs, L"a"), Kest::eOk);
    EXPECT_EQ(get(kOurs), L"a");
}

TEST_F(ConfigurationTurnTest, AProcessThatOutlivesTheTurnDoesNotKeepIt)
{
    startHost();
    int hold[2];
    ASSERT_EQ(::pipe(hold), 0);
    pid_t child = -1;
    {
        const Turn turn(store());
        child = startProcess([&] { // as a command does that starts a program during the turn
            char byte = 0;
            ::close(hold[1]);
            EXPECT_EQ(::read(hold[0], &byte, 1), 0);
        });
    }
    running.reset();
    startHost();
    store().setPatience(std::chrono::milliseconds{20});
    EXPECT_EQ(set(kOurs, L"a"), Kest::eOk);
    ::close(hold[0]);
    ::close(hold[1]);
    EXPECT_EQ(endOf(child), 0);
}

// The system calls by which a turn reaches the disk, made to kill the process at a chosen one.
int callsUntilDeath = 0;

void dieWhenItIsTime()
{
    if (--callsUntilDeath == 0) {
        ::raise(SIGKILL);
    }
}

ssize_t writeOrDie(int descriptor, const void* data, std::size_t size, off_t offset)
{
    dieWhenItIsTime();
    if (callsUntilDeath == 1) { // dies at the next call: leave half of this one behind
        return ::pwrite(descriptor, data, size / 2 + 1, offset);
    }
    return ::pwrite(descriptor, data, size, offset);
}

int unlinkOrDie(const char* path)
{
    dieWhenItIsTime();
    return ::unlink(path);
}

int truncateOrDie(int descriptor, off_t size)
{
    dieWhenItIsTime();
    return ::ftruncate(descriptor, size);
}

void armDeath(int calls)
{
    callsUntilDeath = calls;
    sqlite3_vfs* files = sqlite3_vfs_find(nullptr);
    const auto replace = [&](const char* name, auto* call) {
        return files->xSetSystemCall(files, name, reinterpret_cast<sqlite3_syscall_ptr>(call)) == SQLITE_OK;
    };
    const bool knowsOneOfThem = replace("pwrite", &writeOrDie) || replace("pwrite64", &writeOrDie);
    replace("pwrite64", &writeOrDie);
    EXPECT_TRUE(knowsOneOfThem && replace("unlink", &unlinkOrDie) && replace("ftruncate", &truncateOrDie));
}

TEST_F(ConfigurationTurnTest, AHostKilledAtAnyStepLeavesTheOldPairOrTheNewOne)
{
    const Pair oldPair(L"old", std::wstring(9'000, L'h') + L";old");
    const Pair newPair(L"new", std::wstring(9'000, L'h') + L";new");
    std::set<Pair> seen;
    int kills = 0;
    for (int step = 1; step < 200; ++step) {
        running.reset();
        std::filesystem::remove_all(fileFolder());
        storePair(oldPair.first, oldPair.second);
        running.reset();
        const int status = endOf(startProcess([&] {
            startHost();
            armDeath(step);
            const Turn turn(store());
            set(kOurs, newPair.first);
            set(kHosts, newPair.second);
        }));
        startHost();
        const Pair left = pair();
        seen.insert(left);
        EXPECT_TRUE(left == oldPair || left == newPair) << "killed at step " << step;
        EXPECT_EQ(notices(), std::vector<std::string>{});
        if (!WIFSIGNALED(status)) {
            EXPECT_EQ(status, 0);
            EXPECT_TRUE(left == newPair);
            break;
        }
        EXPECT_EQ(WTERMSIG(status), SIGKILL);
        ++kills;
    }
    EXPECT_GT(kills, 5);
    EXPECT_EQ(seen, (std::set<Pair>{oldPair, newPair}));
}

TEST_F(ConfigurationTurnTest, AHostKilledWhileItMakesTheFileLeavesNoHalfOfIt)
{
    const Pair nothing(L"(none)", L"(none)");
    const Pair newPair(L"new", L"h;new");
    int kills = 0;
    for (int step = 1; step < 200; ++step) {
        running.reset();
        std::filesystem::remove_all(fileFolder());
        const int status = endOf(startProcess([&] {
            startHost();
            armDeath(step);
            const Turn turn(store());
            set(kOurs, newPair.first);
            set(kHosts, newPair.second);
        }));
        startHost();
        EXPECT_TRUE(pair() == nothing || pair() == newPair) << "killed at step " << step;
        EXPECT_EQ(notices(), std::vector<std::string>{});
        if (!WIFSIGNALED(status)) {
            EXPECT_EQ(pair(), newPair);
            break;
        }
        ++kills;
        storePair(L"later", L"h;later");
        EXPECT_EQ(pair(), Pair(L"later", L"h;later"));
    }
    EXPECT_GT(kills, 2);
}

TEST_F(ConfigurationTurnTest, AHostKilledBetweenTheTwoWritesLeavesTheOldPair)
{
    storePair(L"old", L"h;old");
    running.reset();
    const int status = endOf(startProcess([&] {
        startHost();
        const Turn turn(store());
        set(kOurs, L"new");
        ::raise(SIGKILL);
    }));
    ASSERT_TRUE(WIFSIGNALED(status));
    startHost();
    EXPECT_EQ(pair(), Pair(L"old", L"h;old"));
    storePair(L"new", L"h;new");
    EXPECT_EQ(pair(), Pair(L"new", L"h;new"));
}

} // namespace
