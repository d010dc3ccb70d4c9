// Loading a component when one of its commands is first used.
#include "tests/AutoloaderTest.h"
#include "tests/TestLocale.h"

namespace {

using Lines = std::vector<std::string>;
using Map = std::map<CStdStr<wchar_t>, CStdStr<wchar_t>>;

class CommandLoadTest : public AutoloaderTest
{
protected:
    CommandLoadTest()
    {
        host.openLibraries[L"VxManagedCommand.dll"]["netLoad"] = hostdouble::netLoadAddress();
        host.sharedObjects["libpython3.11.so"] = {};
        host.sharedObjects["libVxPythonLoad.so"] = {{"setPythonVersion", hostdouble::setPythonVersionAddress()},
                                                    {"loadPythonFile", hostdouble::loadPythonFileAddress()}};
        manager().commandMap = {{L"", L"/empty.lsp"},
                                {L"NET", L"/b/a.dll"},
                                {L"KRX", L"/b/a.krx"},
                                {L"LSP", L"/b/a.lsp"},
                                {L"KELX", L"/b/a.KELX"},
                                {L"VLS", L"/b/a.Vls"},
                                {L"PY", L"/b/a.py"},
                                {L"MENU", L"/b/a.cuix"},
                                {L"BAK", L"/b/a.lsp.bak"},
                                {L"NONE", L"/b/krx"},
                                {L"low", L"/b/low.lsp"},
                                {L"NOWHERE", L""},
                                {L"L\u0130NE", L"/b/turkish.lsp"},
                                {L"LINE", L"/b/line.lsp"}};
        manager().pythonVersionMap = {{L"/b/a.py", L"python3.11"}};
    }

    /// The host's calls for the command `name`; nothing is logged, whatever happens.
    Lines invoke(const wchar_t* name)
    {
        host.calls.clear();
        manager().loadCommandBundle(name);
        EXPECT_EQ(problems(), "");
        return host.calls;
    }
};

TEST_F(CommandLoadTest, ANullOrEmptyNameReturnsAtOnceWithoutALookup)
{
    EXPECT_EQ(invoke(nullptr), Lines());
    EXPECT_EQ(invoke(L""), Lines()) << "an empty key is in the map, but never found";
}

TEST_F(CommandLoadTest, AnUnknownNameDoesNothing)
{
    EXPECT_EQ(invoke(L"UNKNOWN"), Lines());
    EXPECT_EQ(invoke(L"LS"), Lines());
    EXPECT_EQ(invoke(L"LSPX"), Lines());
    EXPECT_EQ(invoke(L" LSP"), Lines());
}

TEST_F(CommandLoadTest, AManagedAssemblyIsLoadedByTheManagedLibrary)
{
    EXPECT_EQ(invoke(L"NET"), (Lines{"GetModuleHandleW(VxManagedCommand.dll) -> handle",
                                     "GetProcAddress(netLoad) -> address", "netLoad(/b/a.dll, 0) -> true"}));
}

TEST_F(CommandLoadTest, ANativeModuleIsLoadedWithoutNotingALoadType)
{
    EXPECT_EQ(invoke(L"KRX"),
              (Lines{"KsRxDictionary::at(DynamicLinker)", "loadModule(/b/a.krx, false, false) -> true"}));
}

TEST_F(CommandLoadTest, LispFilesOfAllThreeKindsAreQueuedWhateverTheCaseOfTheirExtension)
{
    EXPECT_EQ(invoke(L"LSP"), (Lines{"kds_queueexpr((LOAD \"/b/a.lsp\")) -> 5100"}));
    EXPECT_EQ(invoke(L"KELX"), (Lines{"kds_queueexpr((LOAD \"/b/a.KELX\")) -> 5100"}));
    EXPECT_EQ(invoke(L"VLS"), (Lines{"kds_queueexpr((LOAD \"/b/a.Vls\")) -> 5100"}));
}

TEST_F(CommandLoadTest, AScriptIsRunWithTheVersionKeptForItsPath)
{
    EXPECT_EQ(invoke(L"PY"),
              (Lines{"GetCurrentDirectoryW(2049) -> /start", "SetCurrentDirectoryW(/b)",
                     "dlopen(libpython3.11.so, 1) -> handle", "dlclose()", "dlopen(libVxPythonLoad.so, 1) -> handle",
                     "dlsym(setPythonVersion) -> address", "setPythonVersion(libpython3.11.so)",
                     "dlsym(loadPythonFile) -> address", "loadPythonFile(/b/a.py) -> 0"}));
    EXPECT_EQ(host.workingDirectory, L"/b");
}

TEST_F(CommandLoadTest, AScriptWithoutAPythonVersionIsNotLoaded)
{
    manager().pythonVersionMap = {{L"/b/a.py", L""}};
    EXPECT_EQ(invoke(L"PY"), Lines());
    manager().pythonVersionMap = {{L"/b/A.py", L"python3.11"}, {L"/b/b.py", L"python3.11"}};
    EXPECT_EQ(invoke(L"PY"), Lines()) << "paths are compared exactly";
}

TEST_F(CommandLoadTest, APythonVersionOnRecordMakesNoScriptOfAModuleOfAnotherKind)
{
    const Lines net = invoke(L"NET");
    const Lines krx = invoke(L"KRX");
    const Lines lsp = invoke(L"LSP");
    manager().pythonVersionMap = {
        {L"/b/a.dll", L"python3.11"}, {L"/b/a.krx", L"python3.11"}, {L"/b/a.lsp", L"python3.11"}};
    EXPECT_EQ(invoke(L"NET"), net);
    EXPECT_EQ(invoke(L"KRX"), krx);
    EXPECT_EQ(invoke(L"LSP"), lsp);
}

TEST_F(CommandLoadTest, ThePythonVersionGoesThroughTheEncodingOfTheLocale)
{
    manager().pythonVersionMap = {{L"/b/a.py", L"\u00e4"}};
    const TestLocale german("de_DE.ISO-8859-1");
    invoke(L"PY");
    EXPECT_EQ(hostdouble::callsTo({"dlopen"}),
              (Lines{"dlopen(lib\xE4.so, 1) -> null", "dlopen(lib\xE4m.so, 1) -> null"}));
}

TEST_F(CommandLoadTest, ModulesOfOtherKindsAreNotLoaded)
{
    for (const wchar_t* name : {L"MENU", L"BAK", L"NONE", L"NOWHERE"}) {
        EXPECT_EQ(invoke(name), Lines()) << name;
    }
}

TEST_F(CommandLoadTest, EveryFailureIsSilent)
{
    host.netLoadResult = false;
    host.brokenModules = {L"/b/a.krx"};
    host.queueStatus = 0;
    host.pythonResult = 1;
    for (const wchar_t* name : {L"NET", L"KRX", L"LSP", L"PY"}) {
        EXPECT_NE(invoke(name), Lines()) << name;
    }
    EXPECT_EQ(host.workingDirectory, L"/start");
    host.openLibraries.clear();
    host.sharedObjects.clear();
    EXPECT_EQ(invoke(L"NET").size(), 2U);
    EXPECT_EQ(invoke(L"PY").size(), 5U);
}

// Names.

TEST_F(CommandLoadTest, ANameInAnyLetterCaseIsFound)
{
    EXPECT_EQ(invoke(L"lsp"), (Lines{"kds_queueexpr((LOAD \"/b/a.lsp\")) -> 5100"}));
    EXPECT_EQ(invoke(L"LsP"), (Lines{"kds_queueexpr((LOAD \"/b/a.lsp\")) -> 5100"}));
}

TEST_F(CommandLoadTest, AKeyThatIsNotUpperCaseIsNeverFound)
{
    EXPECT_EQ(invoke(L"low"), Lines());
}

TEST_F(CommandLoadTest, ADeclaredNameIsFoundByTheSameMappingOfTheLocale)
{
    EXPECT_EQ(invoke(L"line"), (Lines{"kds_queueexpr((LOAD \"/b/line.lsp\")) -> 5100"}));
    const TestLocale turkish("tr_TR.UTF-8");
    EXPECT_EQ(invoke(L"line"), (Lines{"kds_queueexpr((LOAD \"/b/turkish.lsp\")) -> 5100"}));
}

TEST_F(CommandLoadTest, TheNameGivenIsNotChanged)
{
    const std::wstring name = L"lsp";
    invoke(name.c_str());
    EXPECT_EQ(name, L"lsp");
}

// What stays behind.

TEST_F(CommandLoadTest, ASecondCallLoadsTheModuleAgain)
{
    EXPECT_EQ(invoke(L"LSP"), invoke(L"LSP"));
    invoke(L"PY");
    host.workingDirectory = L"/start";
    const Lines again = invoke(L"PY");
    EXPECT_EQ(hostdouble::callsTo({"dlopen"}),
              (Lines{"dlopen(libpython3.11.so, 1) -> handle", "dlopen(libVxPythonLoad.so, 1) -> handle"}))
        << "the probe runs afresh";
    EXPECT_EQ(again.back(), "loadPythonFile(/b/a.py) -> 0");
}

TEST_F(CommandLoadTest, TheManagerIsNotChanged)
{
    const Map commands = manager().commandMap;
    const Map versions = manager().pythonVersionMap;
    for (const wchar_t* name : {L"unknown", L"lsp", L"py", L"krx"}) {
        invoke(name);
    }
    EXPECT_EQ(manager().commandMap, commands);
    EXPECT_EQ(manager().pythonVersionMap, versions);
    EXPECT_TRUE(manager().bundles.empty());
    EXPECT_TRUE(manager().loadedStatus.empty());
}

TEST_F(CommandLoadTest, TheBundleThatTheCommandCameFromIsNotConsulted)
{
    KestBundle& bundle = addBundle(L"a");
    bundle.commandModuleMap = {{L"LSP", L"/other.lsp"}};
    bundle.pythonVersionMap = {{L"/b/a.py", L"other"}};
    EXPECT_EQ(invoke(L"LSP"), (Lines{"kds_queueexpr((LOAD \"/b/a.lsp\")) -> 5100"}));
    invoke(L"PY");
    EXPECT_EQ(hostdouble::callsTo({"setPythonVersion"}), (Lines{"setPythonVersion(libpython3.11.so)"}));
    EXPECT_EQ(bundle.pythonVersion, "");
    EXPECT_FALSE(bundle.getIsLoad());
}

} // namespace
