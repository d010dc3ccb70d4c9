// How far a check is, as a terminal gets to see it.
#include "tests/SpawnWords.h"
#include "tests/cli/ToolTest.h"

#include <algorithm>
#include <fcntl.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class CheckProgressTest : public ToolTest
{
protected:
    /// What `kestbundle check` of the user's bundles writes to a terminal as its standard error.
    std::string seenOnTerminal()
    {
        int screen = -1;
        int terminal = -1;
        EXPECT_EQ(::openpty(&screen, &terminal, nullptr, nullptr, nullptr), 0);
        std::vector<std::string> words = commandThatStarts(path("tool/bin/kestbundle"));
        words.insert(words.end(), {"check", plugins()});
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_adddup2(&actions, terminal, STDERR_FILENO);
        pid_t process = -1;
        EXPECT_EQ(::posix_spawn(&process, words.front().c_str(), &actions, nullptr, pointersTo(words).data(),
                                pointersTo(environment).data()),
                  0);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(terminal);
        std::string seen;
        char bytes[256];
        for (ssize_t count = 0; (count = ::read(screen, bytes, sizeof(bytes))) > 0;) { // ends with the tool
            seen.append(bytes, static_cast<std::size_t>(count));
        }
        ::close(screen);
        int status = -1;
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status << ": " << seen;
        return seen;
    }

    void installBundle(const std::string& name) const
    {
        const std::string folder = install(name + ".bundle", manifestOf(startupEntry("./a.lsp"), name));
        write(folder + "/a.lsp", "(princ)\n");
    }
};

TEST_F(CheckProgressTest, ATerminalIsToldHowFarTheCheckIsAndKeepsNoTraceOfIt)
{
    for (const char* name : {"One", "Two", "Three"}) {
        installBundle(name);
    }
    EXPECT_EQ(seenOnTerminal(), "\r1 of 3 bundles\r2 of 3 bundles\r3 of 3 bundles\r\x1B[K");
}

TEST_F(CheckProgressTest, OfOneBundleNothingIsTold)
{
    installBundle("One");
    EXPECT_EQ(seenOnTerminal(), "");
}

TEST_F(CheckProgressTest, OfManyBundlesTheWholePercentagesAreTold)
{
    for (int number = 0; number < 150; ++number) {
        installBundle("B" + std::to_string(number));
    }
    const std::string seen = seenOnTerminal();
    EXPECT_EQ(std::count(seen.begin(), seen.end(), 'o'), 100) << seen;
    EXPECT_TRUE(seen.starts_with("\r2 of 150 bundles\r3 of 150 bundles\r5 of 150 bundles")) << seen;
    EXPECT_TRUE(seen.ends_with("\r150 of 150 bundles\r\x1B[K")) << seen;
}

} // namespace
