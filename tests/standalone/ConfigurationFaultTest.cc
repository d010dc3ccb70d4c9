// A configuration that cannot be read or written: what is said, and that nothing is harmed.
#include "ConfigurationFixture.h"

#include <cerrno>
#include <grp.h>
#include <sys/stat.h>

using namespace standalonetest;

namespace {

const std::string kMoveAway = "; move it away to start with new lists";
const std::string kWritable = "; make it and its folder writable";

class ConfigurationFaultTest : public ConfigurationFixture
{
protected:
    /// Reads and writes both lists in one turn, as the autoloader does, and expects each step to fail.
    void expectATurnInWhichNothingWorks()
    {
        const Turn turn(store());
        EXPECT_EQ(statusOfGetting(kOurs), standalone::kStoreFailed);
        EXPECT_EQ(set(kOurs, L"new"), standalone::kStoreFailed);
        EXPECT_EQ(statusOfGetting(kHosts), standalone::kStoreFailed);
        EXPECT_EQ(set(kHosts, L";new"), standalone::kStoreFailed);
    }
};

TEST_F(ConfigurationFaultTest, ADamagedFileIsNamedAndLeftAlone)
{
    startHost();
    const std::string damaged(5'000, 'x');
    writeFile(file(), damaged);
    expectATurnInWhichNothingWorks();
    const std::string reason = "file is not a database" + kMoveAway;
    EXPECT_EQ(notices(), std::vector<std::string>{notRead() + reason});
    EXPECT_EQ(writes(), std::vector<std::string>(2, "refused: " + reason));
    EXPECT_TRUE(fileContent(file()) == damaged);
}

TEST_F(ConfigurationFaultTest, AFileThatEndsTooEarlyIsNamedAndLeftAlone)
{
    storePair(L"old", std::wstring(9'000, L'h'));
    running.reset();
    startHost();
    std::filesystem::resize_file(file(), 4096);
    const std::string before = fileContent(file());
    {
        const Turn turn(store());
        EXPECT_EQ(statusOfGetting(kOurs), standalone::kStoreFailed);
        EXPECT_EQ(set(kOurs, L"new"), standalone::kStoreFailed);
    }
    EXPECT_EQ(notices(), std::vector<std::string>{notRead() + "database disk image is malformed" + kMoveAway});
    EXPECT_TRUE(fileContent(file()) == before);
}

TEST_F(ConfigurationFaultTest, AFailedReadUndoesTheTurnSoThatNoListIsTakenForEmpty)
{
    storePair(L"old", L"mine.cuix;old");
    asAnotherProgram("UPDATE value SET text = CAST(x'6DFF' AS TEXT) WHERE key = 'CUIX/LoadedCuix'");
    running.reset();
    startHost();
    {
        const Turn turn(store());
        EXPECT_EQ(get(kOurs), L"old");
        EXPECT_EQ(set(kOurs, L"new"), Kest::eOk);
        EXPECT_EQ(statusOfGetting(kHosts), standalone::kStoreFailed);
        EXPECT_EQ(statusOfGetting(kHosts), standalone::kStoreFailed); // is said once
        EXPECT_EQ(set(kHosts, L";new"), standalone::kStoreFailed);
    }
    const std::string reason = "the value of CUIX/LoadedCuix is not text in UTF-8" + kMoveAway;
    EXPECT_EQ(notices(), std::vector<std::string>{notRead() + reason});
    EXPECT_EQ(writes(), std::vector<std::string>(2, "refused: " + reason));
    EXPECT_EQ(get(kOurs), L"old");
}

TEST_F(ConfigurationFaultTest, AFileLockedByAnotherProgramIsNotWaitedForWithoutEnd)
{
    storePair(L"old", L"h;old");
    running.reset();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    startHost();
    store().setPatience(std::chrono::milliseconds{20});
    expectATurnInWhichNothingWorks();
    sqlite3_close(other);
    const std::string reason = "database is locked; close the program that uses it and try again";
    EXPECT_EQ(notices(), std::vector<std::string>{notRead() + reason});
    EXPECT_EQ(writes(), std::vector<std::string>(2, "refused: " + reason));
    EXPECT_EQ(pair(), Pair(L"old", L"h;old"));
}

TEST_F(ConfigurationFaultTest, AReaderThatDoesNotLetGoKeepsTheTurnFromEnding)
{
    storePair(L"old", L"h;old");
    running->journal().clear();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN; SELECT * FROM value", nullptr, nullptr, nullptr), SQLITE_OK);
    store().setPatience(std::chrono::milliseconds{20});
    {
        const Turn turn(store());
        EXPECT_EQ(set(kOurs, L"new"), Kest::eOk);
        EXPECT_EQ(set(kHosts, L"h;new"), Kest::eOk);
    }
    const std::string reason = "database is locked; close the program that uses it and try again";
    EXPECT_EQ(notices(), std::vector<std::string>{notWritten() + reason});
    EXPECT_EQ(writes(), std::vector<std::string>(2, "refused: " + reason));
    EXPECT_EQ(set(kOurs, L"new"), standalone::kStoreFailed); // outside a turn the end is part of the answer
    sqlite3_close(other);
    EXPECT_EQ(pair(), Pair(L"old", L"h;old"));
}

TEST_F(ConfigurationFaultTest, AReadOnlyFileIsReadAndNotWritten)
{
    storePair(L"old", L"h;old");
    running.reset();
    for (const std::string& path : {folder.path, fileFolder()}) {
        ASSERT_EQ(::chmod(path.c_str(), 0755), 0);
    }
    ASSERT_EQ(::chmod(file().c_str(), 0444), 0);
    const std::string before = fileContent(file());
    EXPECT_EQ(endOf(startProcess([&] {
                  constexpr uid_t kNobody = 65534; // the superuser may write what he likes
                  if (::geteuid() == 0) {
                      ASSERT_EQ(::setgroups(0, nullptr), 0);
                      ASSERT_EQ(::setresgid(kNobody, kNobody, kNobody), 0);
                      ASSERT_EQ(::setresuid(kNobody, kNobody, kNobody), 0);
                  }
                  startHost();
                  {
                      const Turn turn(store());
                      EXPECT_EQ(get(kOurs), L"old");
                      EXPECT_EQ(set(kOurs, L"old"), Kest::eOk); // an equal text asks for no write
                      EXPECT_EQ(set(kOurs, L"new"), standalone::kStoreFailed);
                      EXPECT_EQ(get(kHosts), L"h;old");
                      EXPECT_EQ(set(kHosts, L"h;new"), standalone::kStoreFailed);
                  }
                  const std::string reason = "attempt to write a readonly database" + kWritable;
                  EXPECT_EQ(notices(), std::vector<std::string>{notWritten() + reason});
                  EXPECT_EQ(writes(), std::vector<std::string>(3, "refused: " + reason));
              })),
              0);
    EXPECT_TRUE(fileContent(file()) == before);
}

ssize_t writeToAFullDisk(int, const void*, std::size_t, off_t)
{
    errno = ENOSPC;
    return -1;
}

TEST_F(ConfigurationFaultTest, AFullDiskLeavesTheOldPair)
{
    storePair(L"old", L"h;old");
    running.reset();
    EXPECT_EQ(endOf(startProcess([&] {
                  sqlite3_vfs* files = sqlite3_vfs_find(nullptr);
                  for (const char* call : {"pwrite", "pwrite64"}) {
                      files->xSetSystemCall(files, call, reinterpret_cast<sqlite3_syscall_ptr>(&writeToAFullDisk));
                  }
                  startHost();
                  {
                      const Turn turn(store());
                      set(kOurs, L"new");
                      set(kHosts, std::wstring(9'000, L'h'));
                  }
                  const std::string reason =
                      "database or disk is full; make room on its disk, or mend the disk, and try again";
                  EXPECT_EQ(notices(), std::vector<std::string>{notWritten() + reason});
                  EXPECT_EQ(writes(), std::vector<std::string>(2, "refused: " + reason));
              })),
              0);
    startHost();
    EXPECT_EQ(pair(), Pair(L"old", L"h;old"));
}

TEST_F(ConfigurationFaultTest, TheFileOfAnotherProgramIsLeftAlone)
{
    startHost();
    asAnotherProgram("CREATE TABLE value (path, key, text)");
    const std::string before = fileContent(file());
    expectATurnInWhichNothingWorks();
    EXPECT_EQ(notices(), std::vector<std::string>{notRead() + "it belongs to another program" + kMoveAway});
    EXPECT_TRUE(fileContent(file()) == before);
}

TEST_F(ConfigurationFaultTest, TheFileOfALaterHostIsLeftAlone)
{
    storePair(L"old", L"h;old");
    running.reset();
    asAnotherProgram("PRAGMA user_version = 2");
    startHost();
    expectATurnInWhichNothingWorks();
    EXPECT_EQ(notices(),
              std::vector<std::string>{notRead() + "it has the layout version 2 and this host knows version 1; use "
                                                   "the host that wrote it, or move it away"});
}

TEST_F(ConfigurationFaultTest, WhatIsNoRegularFileIsNotOpened)
{
    startHost();
    const std::vector<std::string> expected{notRead() + "it is not a regular file; move it away"};
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    expectATurnInWhichNothingWorks();
    EXPECT_EQ(notices(), expected);
    running.reset();
    std::filesystem::remove(file());
    std::filesystem::create_directory(file());
    startHost();
    expectATurnInWhichNothingWorks();
    EXPECT_EQ(notices(), expected);
}

TEST_F(ConfigurationFaultTest, AFileThatAppearsDuringTheTurnIsNotOverwritten)
{
    startHost();
    {
        const Turn turn(store());
        EXPECT_EQ(get(kHosts, L""), L"");
        // A host on another machine, which the lock of the folder does not reach.
        asAnotherProgram("CREATE TABLE value (path INTEGER NOT NULL, key TEXT NOT NULL, text TEXT NOT NULL, "
                         "PRIMARY KEY (path, key)) STRICT, WITHOUT ROWID; PRAGMA application_id = 1262834516; "
                         "PRAGMA user_version = 1; INSERT INTO value VALUES (4, 'CUIX/LoadedCuix', 'mine.cuix')");
        EXPECT_EQ(set(kHosts, L";new"), standalone::kStoreFailed);
    }
    EXPECT_EQ(notices(),
              std::vector<std::string>{notWritten() + "another program wrote it since this turn began; try again"});
    EXPECT_EQ(get(kHosts), L"mine.cuix");
}

TEST_F(ConfigurationFaultTest, AFolderThatCannotBeMadeFailsEveryTurn)
{
    writeFile(folder / "configuration", "in the way");
    startHost();
    expectATurnInWhichNothingWorks();
    const std::string notice = "The configuration folder \"" + fileFolder() +
                               "\" could not be made: Not a directory; make it by hand, writable by its owner";
    EXPECT_EQ(notices(), (std::vector<std::string>{notice, notice}));
    EXPECT_EQ(fileContent(fileFolder()), "in the way");
}

TEST_F(ConfigurationFaultTest, WithoutAFileNothingIsKept)
{
    settings.configurationFile = "";
    startHost();
    expectATurnInWhichNothingWorks();
    EXPECT_EQ(notices(),
              std::vector<std::string>{"The configuration cannot be kept: no configuration file is set; set HOME"});
}

} // namespace
