#include "standalone/WholeFile.h"

#include "HostFixture.h"

#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace standalonetest;

namespace {

/// What happens in the place of the next call; it may call the system itself.
std::function<int()> insteadOfLinking;
std::function<void()> beforeRenaming;

} // namespace

// The program's own functions come before the C library's.
extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept
{
    if (insteadOfLinking) {
        return std::exchange(insteadOfLinking, nullptr)();
    }
    const auto next = reinterpret_cast<decltype(&::linkat)>(::dlsym(RTLD_NEXT, "linkat"));
    return next(fromFolder, from, toFolder, to, flags);
}

extern "C" int rename(const char* from, const char* to) noexcept
{
    if (beforeRenaming) {
        std::exchange(beforeRenaming, nullptr)();
    }
    const auto next = reinterpret_cast<decltype(&::rename)>(::dlsym(RTLD_NEXT, "rename"));
    return next(from, to);
}

namespace {

class WholeFileTest : public testing::Test
{
protected:
    void TearDown() override
    {
        insteadOfLinking = nullptr;
        beforeRenaming = nullptr;
    }

    OwnFolder folder;
    const std::string path = folder / "menu";
    const std::vector<std::string> onlyTheFile{"menu"};
    std::vector<std::string> whileLinking{"not asked"}; ///< the names in the folder
    int other = -1;                                     ///< what another run answered
};

TEST_F(WholeFileTest, UntilItIsWholeAFileHasNoNameThatAKilledProcessCouldLeave)
{
    if (const int nameless = ::open(folder.path.c_str(), O_TMPFILE | O_WRONLY, 0600); nameless >= 0) {
        ::close(nameless);
    } else {
        GTEST_SKIP() << "this file system has no files without a name";
    }
    insteadOfLinking = [this] {
        whileLinking = namesIn(folder.path);
        errno = ENOENT;
        return -1;
    };
    EXPECT_EQ(standalone::replaceWholeFile(path, "new"), 0);
    EXPECT_EQ(whileLinking, std::vector<std::string>());
    EXPECT_EQ(namesIn(folder.path), onlyTheFile);
}

TEST_F(WholeFileTest, WhatAKilledProcessLeftUnderTheOtherNameDoesNotKeepTheFileFromBeingReplaced)
{
    writeFile(path, "old");
    writeFile(path + ".new", "of the dead");
    EXPECT_EQ(standalone::replaceWholeFile(path, "new"), 0);
    EXPECT_EQ(fileContent(path), "new");
    EXPECT_EQ(namesIn(folder.path), onlyTheFile);
}

TEST_F(WholeFileTest, ARunWhoseFileIsTakenForThatOfADeadOneWritesItAgain)
{
    beforeRenaming = [this] { standalone::discardUnfinished(path); };
    EXPECT_EQ(standalone::replaceWholeFile(path, "new"), 0);
    EXPECT_EQ(fileContent(path), "new");
    EXPECT_EQ(namesIn(folder.path), onlyTheFile);
}

TEST_F(WholeFileTest, OfTwoRunsAtOnceOneComesLastAndBothSucceed)
{
    beforeRenaming = [this] { other = standalone::replaceWholeFile(path, "other"); };
    EXPECT_EQ(standalone::replaceWholeFile(path, "new"), 0);
    EXPECT_EQ(other, 0);
    EXPECT_EQ(fileContent(path), "new");
    EXPECT_EQ(namesIn(folder.path), onlyTheFile);
}

TEST_F(WholeFileTest, WithoutNamesForOpenFilesTheFileIsReplacedAllTheSame)
{
    writeFile(path, "old");
    insteadOfLinking = [] {
        errno = ENOENT; // as where no /proc is mounted
        return -1;
    };
    EXPECT_EQ(standalone::replaceWholeFile(path, "new"), 0);
    EXPECT_EQ(fileContent(path), "new");
    EXPECT_EQ(namesIn(folder.path), onlyTheFile);
}

TEST_F(WholeFileTest, AFileThatCannotBeReplacedIsTheReasonAndNothingIsLeft)
{
    std::filesystem::create_directory(path);
    EXPECT_EQ(standalone::replaceWholeFile(path, "new"), EISDIR);
    EXPECT_EQ(namesIn(folder.path), onlyTheFile);
    EXPECT_EQ(standalone::replaceWholeFile(folder / "none/menu", "new"), ENOENT);
}

TEST_F(WholeFileTest, AFileIsForItsOwnerAlone)
{
    ASSERT_EQ(standalone::replaceWholeFile(path, "new"), 0);
    struct stat found
    {
    };
    ASSERT_EQ(::stat(path.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0600U);
}

} // namespace
