// The walk over a bundle's components when the host starts: what is loaded, by which loader, and what is logged.
#include "tests/AutoloaderTest.h"

namespace {

using Lines = std::vector<std::string>;
constexpr int kStartup = KestComponentEntry::kLoadStartup;
constexpr int kCommand = KestComponentEntry::kLoadCommand;

/// The log's record of a module that failed to load.
std::string failure(const std::string& path)
{
    return kSplit + path + " loading failed\n";
}

class StartupLoadTest : public AutoloaderTest
{
protected:
    KestBundle& bundle = addBundle(L"a");

    StartupLoadTest()
    {
        host.openLibraries[L"VxManagedCommand.dll"]["netLoad"] = hostdouble::netLoadAddress();
        host.sharedObjects["libpython3.11.so"] = {};
        host.sharedObjects["libVxPythonLoad.so"] = {{"loadPythonFile", hostdouble::loadPythonFileAddress()}};
    }

    /// Loads the bundle, which must count as loaded afterwards; the host's calls.
    Lines load()
    {
        bundle.load();
        EXPECT_TRUE(bundle.getIsLoad());
        return host.calls;
    }

    Lines load(const wchar_t* path)
    {
        addComponent(bundle, path);
        return load();
    }
};

TEST_F(StartupLoadTest, ABundleWithZeroComponentsStaysUnloaded)
{
    bundle.load();
    EXPECT_FALSE(bundle.getIsLoad());
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(StartupLoadTest, AManagedAssemblyIsLoadedByTheManagedLibrary)
{
    EXPECT_EQ(load(L"/b/a.dll"), (Lines{"GetModuleHandleW(VxManagedCommand.dll) -> handle",
                                        "GetProcAddress(netLoad) -> address", "netLoad(/b/a.dll, 0) -> true"}));
    EXPECT_EQ(problems(), "");
}

TEST_F(StartupLoadTest, AManagedAssemblyThatFailsIsLogged)
{
    host.netLoadResult = false;
    load(L"/b/a.dll");
    EXPECT_EQ(problems(), failure("/b/a.dll"));
}

TEST_F(StartupLoadTest, ANativeModuleIsLoadedAndItsLoadTypeNoted)
{
    EXPECT_EQ(load(L"/b/a.krx"), (Lines{"KsRxDictionary::at(DynamicLinker)",
                                        "loadModule(/b/a.krx, false, false) -> true", "setKrxLoadType(/b/a.krx, 2)"}));
    EXPECT_EQ(problems(), "");
}

TEST_F(StartupLoadTest, ANativeModuleWithItsExtensionInUpperCaseIsLoadedTheSame)
{
    EXPECT_EQ(load(L"/b/A.KRX"), (Lines{"KsRxDictionary::at(DynamicLinker)",
                                        "loadModule(/b/A.KRX, false, false) -> true", "setKrxLoadType(/b/A.KRX, 2)"}));
}

TEST_F(StartupLoadTest, ANativeModuleThatFailsIsLoggedAndGetsNoLoadType)
{
    host.brokenModules = {L"/b/a.krx"};
    EXPECT_EQ(load(L"/b/a.krx"),
              (Lines{"KsRxDictionary::at(DynamicLinker)", "loadModule(/b/a.krx, false, false) -> false"}));
    EXPECT_EQ(problems(), failure("/b/a.krx"));
}

TEST_F(StartupLoadTest, LispFilesOfAllThreeKindsAreQueued)
{
    addComponent(bundle, L"/b/a.lsp");
    addComponent(bundle, L"/b/a.Kelx");
    EXPECT_EQ(load(L"/b/a.vls"),
              (Lines{"kds_queueexpr((LOAD \"/b/a.lsp\")) -> 5100", "kds_queueexpr((LOAD \"/b/a.Kelx\")) -> 5100",
                     "kds_queueexpr((LOAD \"/b/a.vls\")) -> 5100"}));
    EXPECT_EQ(problems(), "");
}

TEST_F(StartupLoadTest, LispFilesThatAreNotAcceptedAreLogged)
{
    host.queueStatus = -5001;
    addComponent(bundle, L"/b/a.lsp");
    addComponent(bundle, L"/b/a.kelx");
    load(L"/b/a.vls");
    EXPECT_EQ(problems(), failure("/b/a.lsp") + failure("/b/a.kelx") + failure("/b/a.vls"));
}

TEST_F(StartupLoadTest, AScriptIsRunWithItsOwnPythonVersion)
{
    addComponent(bundle, L"/b/a.py").pythonVersion = "python3.11";
    EXPECT_EQ(load(), (Lines{"GetCurrentDirectoryW(2049) -> /start", "SetCurrentDirectoryW(/b)",
                             "dlopen(libpython3.11.so, 1) -> handle", "dlclose()",
                             "dlopen(libVxPythonLoad.so, 1) -> handle", "dlsym(setPythonVersion) -> null",
                             "dlsym(loadPythonFile) -> address", "loadPythonFile(/b/a.py) -> 0"}));
    EXPECT_EQ(problems(), "");
    EXPECT_EQ(host.workingDirectory, L"/b");
    EXPECT_EQ(bundle.pythonVersion, "libpython3.11.so");
    EXPECT_EQ(bundle.components[0].pythonVersion, "python3.11");
}

TEST_F(StartupLoadTest, AScriptThatFailsIsLoggedAndTheWorkingDirectoryGivenBack)
{
    host.pythonResult = 1;
    addComponent(bundle, L"/b/a.py").pythonVersion = "python3.11";
    load();
    EXPECT_EQ(problems(), failure("/b/a.py"));
    EXPECT_EQ(host.workingDirectory, L"/start");
}

TEST_F(StartupLoadTest, AScriptWithoutAPythonVersionIsSkippedWithoutALogEntry)
{
    EXPECT_EQ(load(L"/b/a.py"), Lines());
    EXPECT_EQ(problems(), "");
}

TEST_F(StartupLoadTest, AScriptWithoutAPythonVersionDoesNotRunWithThatOfTheOneBefore)
{
    addComponent(bundle, L"/b/a.py").pythonVersion = "python3.11";
    addComponent(bundle, L"/c/b.py");
    load();
    EXPECT_EQ(hostdouble::callsTo({"loadPythonFile"}), (Lines{"loadPythonFile(/b/a.py) -> 0"}));
    EXPECT_EQ(bundle.pythonVersion, "");
    EXPECT_EQ(bundle.pythonLibName, "libpython3.11.so") << "the last script handled leaves its candidates";
}

TEST_F(StartupLoadTest, EachScriptIsProbedForItsOwnVersion)
{
    host.sharedObjects["libpython2.7m.so"] = {};
    addComponent(bundle, L"/b/a.py").pythonVersion = "python2.7";
    addComponent(bundle, L"/b/b.py").pythonVersion = "python3.11";
    load();
    EXPECT_EQ(hostdouble::callsTo({"dlopen", "loadPythonFile"}),
              (Lines{"dlopen(libpython2.7.so, 1) -> null", "dlopen(libpython2.7m.so, 1) -> handle",
                     "dlopen(libVxPythonLoad.so, 1) -> handle", "loadPythonFile(/b/a.py) -> 0",
                     "dlopen(libpython3.11.so, 1) -> handle", "dlopen(libVxPythonLoad.so, 1) -> handle",
                     "loadPythonFile(/b/b.py) -> 0"}));
    EXPECT_EQ(bundle.pythonLibNameM, "libpython3.11m.so");
}

TEST_F(StartupLoadTest, UnknownExtensionsAndMenusAreSkippedWithoutALogEntry)
{
    for (const wchar_t* path : {L"/b/a.lsp.bak", L"/b/a", L"/b/krx", L"", L"/b/a.cuix", L"/b/a.mnu", L"/b/a.mns",
                                L"/b/a.menuc", L"/b/a.so"}) {
        addComponent(bundle, path);
    }
    EXPECT_EQ(load(), Lines());
    EXPECT_EQ(problems(), "");
}

TEST_F(StartupLoadTest, AFailureDoesNotKeepTheNextComponentFromLoadingAndIsLoggedInItsPlace)
{
    host.brokenModules = {L"/b/a.krx", L"/b/c.krx"};
    addComponent(bundle, L"/b/a.krx");
    addComponent(bundle, L"/b/b.krx");
    load(L"/b/c.krx");
    EXPECT_EQ(hostdouble::callsTo({"loadModule", "setKrxLoadType"}),
              (Lines{"loadModule(/b/a.krx, false, false) -> false", "loadModule(/b/b.krx, false, false) -> true",
                     "setKrxLoadType(/b/b.krx, 2)", "loadModule(/b/c.krx, false, false) -> false"}));
    EXPECT_EQ(problems(), failure("/b/a.krx") + failure("/b/c.krx"));
}

// Which components load at start-up.

TEST_F(StartupLoadTest, OnlyALoadControlFlagOfOneAllowsLoadingAtStartup)
{
    for (const int flag : {0, 2, 3, -1}) {
        addComponent(bundle, L"/b/a.krx", kStartup, flag);
    }
    EXPECT_EQ(load(), Lines());
    EXPECT_EQ(problems(), "");
}

TEST_F(StartupLoadTest, AComponentThatIsNeitherAtStartupNorOnCommandIsSkipped)
{
    addComponent(bundle, L"/b/a.krx", 0).commands = {{L"group", {{L"", L"command"}}}};
    EXPECT_EQ(load(), Lines());
    EXPECT_TRUE(bundle.commandModuleMap.empty());
    EXPECT_EQ(bundle.components[0].commands[0].commands[0].localName, L"command") << "left as it was";
}

TEST_F(StartupLoadTest, AStartupComponentNeverHasItsCommandsRegistered)
{
    addComponent(bundle, L"/b/a.lsp", kStartup | kCommand).commands = {{L"group", {{L"", L"command"}}}};
    EXPECT_EQ(load(), (Lines{"kds_queueexpr((LOAD \"/b/a.lsp\")) -> 5100"}));
    EXPECT_TRUE(bundle.commandModuleMap.empty());
    EXPECT_EQ(bundle.components[0].commands[0].commands[0].localName, L"command");
}

TEST_F(StartupLoadTest, AStartupComponentThatFailsHasItsCommandsNotRegisteredEither)
{
    host.queueStatus = 0;
    addComponent(bundle, L"/b/a.lsp", kStartup | kCommand).commands = {{L"group", {{L"", L"command"}}}};
    load();
    EXPECT_TRUE(bundle.commandModuleMap.empty());
    EXPECT_EQ(hostdouble::callsTo({"addEntry"}), Lines());
}

TEST_F(StartupLoadTest, ALoadControlFlagOfTwoRegistersTheCommandsInstead)
{
    addComponent(bundle, L"/b/a.lsp", kStartup | kCommand, 2).commands = {{L"group", {{L"", L"command"}}}};
    EXPECT_EQ(load(), (Lines{"addEntry(COMMAND, 3)"}));
    EXPECT_EQ(bundle.commandModuleMap, (std::map<CStdStr<wchar_t>, CStdStr<wchar_t>>{{L"COMMAND", L"/b/a.lsp"}}));
}

} // namespace
