#include "standalone/Host.h"

#include "HostFixture.h"

#include "standalone/ModuleApi.h"

#include "host/Configuration.h"
#include "host/Kds.h"
#include "host/LocaleText.h"

#include <optional>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/utsname.h>

using standalone::Host;
using standalonetest::fileContent;
using standalonetest::namesIn;
using standalonetest::writeFile;

namespace {

class HostTest : public standalonetest::HostFixture
{
};

/// Sets HOME, or takes it away, until it ends.
class HomeVariable
{
public:
    explicit HomeVariable(const char* value)
    {
        if (const char* present = std::getenv("HOME")) {
            before = present;
        }
        set(value);
    }
    HomeVariable(const HomeVariable&) = delete;
    HomeVariable& operator=(const HomeVariable&) = delete;
    ~HomeVariable() { set(before ? before->c_str() : nullptr); }

private:
    static void set(const char* value) { value != nullptr ? ::setenv("HOME", value, 1) : ::unsetenv("HOME"); }

    std::optional<std::string> before;
};

unsigned modeOf(const std::string& path)
{
    struct stat found
    {
    };
    EXPECT_EQ(::stat(path.c_str(), &found), 0) << path;
    return found.st_mode & 07777U;
}

TEST_F(HostTest, VernumNamesVersionBuildSystemAndMachine)
{
    utsname machine{};
    ASSERT_EQ(::uname(&machine), 0);
    const std::string expected = std::string("26.0_1_") + machine.sysname + "_" + machine.machine;
    EXPECT_EQ(standalone::machineVernum(), localetext::widen(expected));
    startHost();
    resbuf result{};
    EXPECT_EQ(ksedGetVar(L"VERNUM", &result), 5100);
    EXPECT_EQ(std::wstring(result.resval.rstring), localetext::widen(expected));
    EXPECT_EQ(std::string(kestHostVersion()), expected);
}

TEST_F(HostTest, VernumAndProductNameCanBeSet)
{
    settings.vernum = L"27.1_9_Linux_riscv64";
    settings.productName = L"TARVIX Viewer";
    startHost();
    resbuf result{};
    EXPECT_EQ(ksedGetVar(L"VERNUM", &result), 5100);
    EXPECT_EQ(std::wstring(result.resval.rstring), L"27.1_9_Linux_riscv64");
    EXPECT_EQ(std::wstring(kestConfig()->productName()), L"TARVIX Viewer");
}

TEST_F(HostTest, TheProductNameHasADefault)
{
    startHost();
    EXPECT_EQ(std::wstring(kestConfig()->productName()), L"TARVIX");
}

TEST_F(HostTest, OtherVariablesAreNotKnown)
{
    startHost();
    resbuf result{};
    for (const wchar_t* name : {L"vernum", L"VERNUM ", L"", L"PRODUCT"}) {
        EXPECT_NE(ksedGetVar(name, &result), 5100);
        EXPECT_EQ(result.resval.rstring, nullptr);
    }
}

TEST_F(HostTest, WithoutAHostItsServicesAnswerThatTheyAreNotThere)
{
    resbuf result{};
    EXPECT_EQ(kestConfig(), nullptr);
    EXPECT_NE(ksedGetVar(L"VERNUM", &result), 5100);
    EXPECT_NE(kds_queueexpr(L"(LOAD \"/a.lsp\")"), 5100);
    EXPECT_EQ(kestRegisterCommand(
                  "a", [](void*) {}, nullptr),
              0);
    EXPECT_EQ(std::string(kestHostVersion()), "");
    kestPrint("nobody hears this");
    EXPECT_THROW(Host::current(), std::logic_error);
}

TEST_F(HostTest, ThereIsOneHostAtATime)
{
    startHost();
    EXPECT_EQ(&Host::current(), running.get());
    EXPECT_THROW(Host(settings, nullptr), std::logic_error);
    EXPECT_EQ(&Host::current(), running.get());
    running.reset();
    startHost();
    EXPECT_EQ(&Host::current(), running.get());
}

TEST_F(HostTest, TheConfigurationFolderIsMadeForItsOwnerAlone)
{
    settings.configurationFile = folder / "home/.config/kest.db";
    startHost();
    EXPECT_EQ(modeOf(folder / "home"), 0700U);
    EXPECT_EQ(modeOf(folder / "home/.config"), 0700U);
    EXPECT_EQ(namesIn(folder / "home/.config"), std::vector<std::string>{});
    EXPECT_EQ(notices(), std::vector<std::string>{});
}

TEST_F(HostTest, AFolderThatIsThereKeepsItsMode)
{
    ASSERT_EQ(::mkdir((folder / "open").c_str(), 0755), 0);
    ASSERT_EQ(::chmod((folder / "open").c_str(), 0755), 0);
    settings.configurationFile = folder / "open/kest.db";
    startHost();
    EXPECT_EQ(modeOf(folder / "open"), 0755U);
}

TEST_F(HostTest, AFolderThatCannotBeMadeIsANotice)
{
    writeFile(folder / "inTheWay", "keep me");
    settings.configurationFile = folder / "inTheWay/sub/kest.db";
    startHost();
    EXPECT_EQ(notices(),
              std::vector<std::string>{"The configuration folder \"" + folder.path +
                                       "/inTheWay/sub\" could not be made: Not a directory; make it by hand, writable "
                                       "by its owner"});
    EXPECT_EQ(fileContent(folder / "inTheWay"), "keep me");
}

TEST_F(HostTest, TheUsersConfigurationFolderLiesUnderHome)
{
    {
        const HomeVariable home("/home/ada");
        EXPECT_EQ(standalone::userConfigurationFolder(), "/home/ada/.config/ORRELIN");
    }
    const HomeVariable home(nullptr);
    EXPECT_EQ(standalone::userConfigurationFolder(), "");
}

TEST_F(HostTest, TheConfigurationStaysWhereItIsWhenTheWorkingDirectoryChanges)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path);
    settings.configurationFile = "relative/kest.db";
    startHost();
    std::filesystem::current_path(before);
    EXPECT_EQ(running->settings().configurationFile, folder / "relative/kest.db");
}

TEST_F(HostTest, WhatModulesPrintReachesTheConsoleInPieces)
{
    startHost();
    kestPrint("one ");
    kestPrint(nullptr);
    kestPrint("two\n");
    EXPECT_EQ(console, "one two\n");
}

} // namespace
