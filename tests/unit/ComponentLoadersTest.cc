// The loaders of managed assemblies, native modules and LISP files.
#include "tests/AutoloaderTest.h"

#include <csignal>

namespace {

using Lines = std::vector<std::string>;

class ComponentLoadersTest : public AutoloaderTest
{
protected:
    KestBundle carrier; ///< loaders need nothing of their bundle

    hostdouble::Exports managedExports() const { return {{"netLoad", hostdouble::netLoadAddress()}}; }
};

const std::wstring kManaged = L"VxManagedCommand.dll";

// Managed assemblies.

TEST_F(ComponentLoadersTest, AManagedAssemblyGoesToTheLibraryThatIsLoadedAlready)
{
    host.openLibraries[kManaged] = managedExports();
    EXPECT_TRUE(carrier.loadNet(L"/b/a.dll"));
    EXPECT_EQ(host.calls, (Lines{"GetModuleHandleW(VxManagedCommand.dll) -> handle",
                                 "GetProcAddress(netLoad) -> address", "netLoad(/b/a.dll, 0) -> true"}));
}

TEST_F(ComponentLoadersTest, TheManagedLibraryIsLoadedWhenItIsNotYet)
{
    host.loadableLibraries[kManaged] = managedExports();
    EXPECT_TRUE(carrier.loadNet(L"/b/a.dll"));
    EXPECT_EQ(host.calls,
              (Lines{"GetModuleHandleW(VxManagedCommand.dll) -> null", "LoadLibraryW(VxManagedCommand.dll) -> handle",
                     "GetProcAddress(netLoad) -> address", "netLoad(/b/a.dll, 0) -> true"}));
}

TEST_F(ComponentLoadersTest, WithoutTheManagedLibraryNothingIsLoaded)
{
    EXPECT_FALSE(carrier.loadNet(L"/b/a.dll"));
    EXPECT_EQ(host.calls,
              (Lines{"GetModuleHandleW(VxManagedCommand.dll) -> null", "LoadLibraryW(VxManagedCommand.dll) -> null"}));
}

TEST_F(ComponentLoadersTest, WithoutNetLoadNothingIsLoaded)
{
    host.openLibraries[kManaged] = {};
    EXPECT_FALSE(carrier.loadNet(L"/b/a.dll"));
    EXPECT_EQ(host.calls,
              (Lines{"GetModuleHandleW(VxManagedCommand.dll) -> handle", "GetProcAddress(netLoad) -> null"}));
}

TEST_F(ComponentLoadersTest, TheResultOfNetLoadIsTheResult)
{
    host.openLibraries[kManaged] = managedExports();
    host.netLoadResult = false;
    EXPECT_FALSE(carrier.loadNet(L"/b/a.dll"));
}

const CStdStr<wchar_t>* receivedPath = nullptr;

bool keepPath(const CStdStr<wchar_t>& path, int /*reserved*/)
{
    receivedPath = &path;
    return true;
}

TEST_F(ComponentLoadersTest, NetLoadReceivesThePathItself)
{
    host.openLibraries[kManaged]["netLoad"] = reinterpret_cast<void (*)()>(&keepPath);
    const CStdStr<wchar_t> path = L"/b/a.dll";
    host.stringCopies = 0;
    EXPECT_TRUE(carrier.loadNet(path));
    EXPECT_EQ(receivedPath, &path);
    EXPECT_EQ(host.stringCopies, 0U);
}

// Native modules.

TEST_F(ComponentLoadersTest, ANativeModuleGoesToTheDynamicLinkerWithBothFlagsFalse)
{
    EXPECT_TRUE(carrier.loadKrx(L"/b/a.krx"));
    EXPECT_EQ(host.calls, (Lines{"KsRxDictionary::at(DynamicLinker)", "loadModule(/b/a.krx, false, false) -> true"}));
}

TEST_F(ComponentLoadersTest, TheResultOfTheDynamicLinkerIsTheResult)
{
    host.brokenModules = {L"/b/a.krx"};
    EXPECT_FALSE(carrier.loadKrx(L"/b/a.krx"));
    EXPECT_EQ(host.calls, (Lines{"KsRxDictionary::at(DynamicLinker)", "loadModule(/b/a.krx, false, false) -> false"}));
}

class ComponentLoadersDeathTest : public ComponentLoadersTest
{
protected:
    void loadNativeModule()
    {
        std::signal(SIGSEGV, SIG_DFL); // a sanitizer would report the fault and end the process its own way
        carrier.loadKrx(L"/b/a.krx");
    }
};

TEST_F(ComponentLoadersDeathTest, WithoutADynamicLinkerTheProcessStopsWithANullObjectFault)
{
    host.hasDynamicLinker = false;
    EXPECT_EXIT(loadNativeModule(), ::testing::KilledBySignal(SIGSEGV), "");
}

TEST_F(ComponentLoadersDeathTest, WithAnObjectOfAForeignClassInItsPlaceTheProcessStopsTheSame)
{
    host.isDynamicLinkerOfForeignClass = true;
    EXPECT_EXIT(loadNativeModule(), ::testing::KilledBySignal(SIGSEGV), "");
}

// LISP files.

TEST_F(ComponentLoadersTest, ALispFileIsQueuedAsALoadExpression)
{
    EXPECT_TRUE(carrier.loadLsp(L"/b/a.lsp"));
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"/b/a.lsp\")) -> 5100"}));
}

TEST_F(ComponentLoadersTest, EveryBackslashOfALispPathIsQueuedAsASlash)
{
    EXPECT_TRUE(carrier.loadLsp(L"\\b\\\\c/a\\.lsp\\"));
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"/b//c/a/.lsp/\")) -> 5100"}));
}

TEST_F(ComponentLoadersTest, AnExpressionThatIsNotAcceptedIsAFailure)
{
    for (const int status : {0, 1, -1, 5099, 5101, -5100}) {
        host.queueStatus = status;
        EXPECT_FALSE(carrier.loadLsp(L"/b/a.lsp")) << status;
    }
}

TEST_F(ComponentLoadersTest, QuotesBlanksPercentSignsAndAnyCharacterAreQueuedAsTheyStand)
{
    EXPECT_TRUE(carrier.loadLsp(L"/b \"c\"/%ls%n/\U0001F600\u4e2d.lsp"));
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"/b \"c\"/%ls%n/\xF0\x9F\x98\x80\xE4\xB8\xAD.lsp\")) -> 5100"}));
}

TEST_F(ComponentLoadersTest, AnEmptyPathIsQueuedTheSame)
{
    EXPECT_TRUE(carrier.loadLsp(L""));
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"\")) -> 5100"}));
}

TEST_F(ComponentLoadersTest, TheLongestExpressionThatFitsIsQueuedWhole)
{
    const std::string path(2048 - 9, 'p'); // beside (LOAD "")
    carrier.loadLsp(CStdStr<wchar_t>(path.c_str()));
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"" + path + "\")) -> 5100"}));
}

TEST_F(ComponentLoadersTest, ALongerExpressionIsCutAtTheBuffersSize)
{
    carrier.loadLsp(CStdStr<wchar_t>(std::string(2048 - 8, 'p').c_str()));
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"" + std::string(2048 - 8, 'p') + "\") -> 5100"}));
}

TEST_F(ComponentLoadersTest, APathOfFiveThousandCharactersIsCutAtTheBuffersSize)
{
    EXPECT_TRUE(carrier.loadLsp(L"\\" + std::wstring(4998, L'p') + L"\\"));
    EXPECT_EQ(host.calls, (Lines{"kds_queueexpr((LOAD \"/" + std::string(2048 - 8, 'p') + ") -> 5100"}));
}

TEST_F(ComponentLoadersTest, NoLoaderWritesToTheLog)
{
    host.brokenModules = {L"/b/a.krx"};
    host.queueStatus = 0;
    EXPECT_FALSE(carrier.loadNet(L"/b/a.dll"));
    EXPECT_FALSE(carrier.loadKrx(L"/b/a.krx"));
    EXPECT_FALSE(carrier.loadLsp(L"/b/a.lsp"));
    EXPECT_EQ(problems(), "");
}

} // namespace
