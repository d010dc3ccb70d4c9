// What is kept in order when memory runs out in the middle.
#include "tests/faults/EachAllocation.h"

#include "cli/ErrorLog.h"
#include "standalone/CommandTable.h"
#include "standalone/FolderListing.h"
#include "tests/standalone/ConfigurationFixture.h"

#include <fstream>

using namespace faults;
using namespace standalonetest;

namespace {

class MemoryTest : public ConfigurationFixture
{
protected:
    /// Brings both lists in step in one turn, as the autoloader does it, with each allocation failing once.
    void bringListsInStep(std::string_view kind)
    {
        storePair(L"old", L"mine;old");
        const std::wstring added = L";a new menu whose path is too long to be kept without memory";
        withEachAllocationFailing(
            kind,
            [&] {
                const Turn turn(store());
                const std::wstring hosts = get(kHosts, L"");
                set(kHosts, hosts + added);
            },
            [&] {
                EXPECT_TRUE(get(kHosts).starts_with(L"mine;old"))
                    << std::string(get(kHosts).begin(), get(kHosts).end());
            });
    }
};

TEST_F(MemoryTest, AListThatCouldNotBeReadIsNotTakenForEmpty)
{
    bringListsInStep("new");
}

TEST_F(MemoryTest, AListThatCouldNotBeHandedOverIsNotTakenForEmpty)
{
#ifdef KEST_INSTRUMENTED
    GTEST_SKIP() << "malloc() is the sanitizer's own";
#else
    bringListsInStep("malloc");
#endif
}

TEST_F(MemoryTest, ATurnLostForLackOfMemoryIsToldAndItsWritesRefused)
{
    storePair(L"old", L"mine;old");
    running.reset();
    startHost();
    {
        const Turn turn(store());
        Progress progress;
        KestVariant value;
        arm(wayOf("new", "once"), 1, progress, false);
        const Kest::ErrorStatus status = kestConfig()->getValue(TarvixConfig::kMenus, kHosts, value);
        disarm();
        EXPECT_EQ(status, Kest::eOutOfMemory);
        EXPECT_EQ(set(kHosts, L";new"), standalone::kStoreFailed);
    }
    const std::string reason = "out of memory; close other programs and try again";
    EXPECT_EQ(notices(), std::vector<std::string>{notRead() + reason});
    EXPECT_EQ(writes(), std::vector<std::string>{"refused: " + reason});
    EXPECT_EQ(pair(), Pair(L"old", L"mine;old"));
}

TEST_F(MemoryTest, ACommandWithoutMemoryForItIsForgottenWithItsModule)
{
    startHost();
    standalone::CommandRegistry& commands = running->commands();
    withEachAllocationFailing(
        "new",
        [&] {
            standalone::CommandRegistry::Registration registration(commands, "/a/module/with/a/long/path.krx");
            try {
                commands.add(
                    "A_COMMAND_WITH_A_LONG_NAME", [](void*) {}, nullptr);
            } catch (...) {
                registration.takeBack();
                throw;
            }
        },
        [&] { EXPECT_FALSE(commands.has(L"A_COMMAND_WITH_A_LONG_NAME")); });
}

TEST_F(MemoryTest, AFolderIsClosedWithoutMemoryForItsNames)
{
    const OwnFolder listed;
    writeFile(listed / "a file with a rather long name", "");
    const int before = descriptorCount();
    withEachAllocationFailing(
        "new",
        [&] {
            standalone::FolderListing listing;
            EXPECT_EQ(listing.read(listed.path.c_str()), 0);
        },
        [&] { EXPECT_EQ(descriptorCount(), before); });
}

TEST_F(MemoryTest, TheErrorLogIsClosedWithoutMemoryForItsText)
{
    const OwnFolder logs;
    const std::string path = logs / "BundleErrorLog.txt";
    writeFile(path, "2026-01-01 00:00:00\n");
    const std::ifstream open(path);
    const int before = descriptorCount();
    withEachAllocationFailing(
        "new", [&] { cli::readErrorLog(path); }, [&] { EXPECT_EQ(descriptorCount(), before); });
}

} // namespace
