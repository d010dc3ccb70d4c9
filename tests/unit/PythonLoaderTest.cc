// The loader of Python scripts: the probe for the system's Python, the loader library, the working directory.
#include "tests/AutoloaderTest.h"
#include "tests/TestLocale.h"

namespace {

using Lines = std::vector<std::string>;

class PythonLoaderTest : public AutoloaderTest
{
protected:
    KestBundle carrier;

    PythonLoaderTest()
    {
        carrier.pythonVersion = "python3.11";
        carrier.preparePyVersion();
        host.sharedObjects["libpython3.11.so"] = {};
        host.sharedObjects["libVxPythonLoad.so"] = {{"setPythonVersion", hostdouble::setPythonVersionAddress()},
                                                    {"loadPythonFile", hostdouble::loadPythonFileAddress()}};
    }
};

const Lines kEntered = {"GetCurrentDirectoryW(2049) -> /start", "SetCurrentDirectoryW(/b)"};
const Lines kProbed = {"dlopen(libpython3.11.so, 1) -> handle", "dlclose()"};
const Lines kLoaderOpened = {"dlopen(libVxPythonLoad.so, 1) -> handle"};
const Lines kVersionSet = {"dlsym(setPythonVersion) -> address", "setPythonVersion(libpython3.11.so)",
                           "dlsym(loadPythonFile) -> address"};
const Lines kReturned = {"SetCurrentDirectoryW(/start)"};

Lines joined(std::initializer_list<Lines> parts)
{
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

// The candidates.

TEST_F(PythonLoaderTest, AnEmptyVersionGivesNoCandidatesAndChangesNothing)
{
    carrier.pythonVersion = "";
    EXPECT_FALSE(carrier.preparePyVersion());
    EXPECT_EQ(carrier.pythonLibName, "libpython3.11.so");
    EXPECT_EQ(carrier.pythonLibNameM, "libpython3.11m.so");
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(PythonLoaderTest, AVersionGivesTwoCandidatesAsItStands)
{
    carrier.pythonVersion = " 3/x";
    EXPECT_TRUE(carrier.preparePyVersion());
    EXPECT_EQ(carrier.pythonLibName, "lib 3/x.so");
    EXPECT_EQ(carrier.pythonLibNameM, "lib 3/xm.so");
    EXPECT_EQ(carrier.pythonVersion, " 3/x");
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(PythonLoaderTest, AVersionIsSetInTheEncodingOfTheLocale)
{
    carrier.setPyVersion(L"python\u00e4");
    EXPECT_EQ(carrier.pythonVersion, "python\xC3\xA4");
    const TestLocale german("de_DE.ISO-8859-1");
    carrier.setPyVersion(L"python\u00e4");
    EXPECT_EQ(carrier.pythonVersion, "python\xE4");
    carrier.setPyVersion(L"");
    EXPECT_EQ(carrier.pythonVersion, "");
}

// The probe.

TEST_F(PythonLoaderTest, TheFirstCandidateThatOpensIsClosedAndKeptByName)
{
    EXPECT_TRUE(carrier.checkSystemPython());
    EXPECT_EQ(host.calls, kProbed);
    EXPECT_EQ(carrier.pythonVersion, "libpython3.11.so");
    EXPECT_EQ(carrier.pythonLibName, "libpython3.11.so");
    EXPECT_EQ(carrier.pythonLibNameM, "libpython3.11m.so");
}

TEST_F(PythonLoaderTest, TheSecondCandidateIsTriedWhenTheFirstDoesNotOpen)
{
    host.sharedObjects = {{"libpython3.11m.so", {}}};
    EXPECT_TRUE(carrier.checkSystemPython());
    EXPECT_EQ(host.calls,
              (Lines{"dlopen(libpython3.11.so, 1) -> null", "dlopen(libpython3.11m.so, 1) -> handle", "dlclose()"}));
    EXPECT_EQ(carrier.pythonVersion, "libpython3.11m.so");
}

TEST_F(PythonLoaderTest, WhenBothOpenTheFirstIsTaken)
{
    host.sharedObjects["libpython3.11m.so"] = {};
    EXPECT_TRUE(carrier.checkSystemPython());
    EXPECT_EQ(host.calls, kProbed);
}

TEST_F(PythonLoaderTest, WhenNeitherOpensTheVersionStaysAsItWas)
{
    host.sharedObjects.clear();
    EXPECT_FALSE(carrier.checkSystemPython());
    EXPECT_EQ(host.calls, (Lines{"dlopen(libpython3.11.so, 1) -> null", "dlopen(libpython3.11m.so, 1) -> null"}));
    EXPECT_EQ(carrier.pythonVersion, "python3.11");
}

// The script.

TEST_F(PythonLoaderTest, AScriptThatRanLeavesTheWorkingDirectoryAtItsFolder)
{
    EXPECT_TRUE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(host.calls, joined({kEntered, kProbed, kLoaderOpened, kVersionSet, {"loadPythonFile(/b/a.py) -> 0"}}));
    EXPECT_EQ(host.workingDirectory, L"/b");
    EXPECT_EQ(carrier.pythonVersion, "libpython3.11.so");
}

TEST_F(PythonLoaderTest, AScriptThatFailedGivesTheWorkingDirectoryBack)
{
    for (const int status : {1, -1, 256}) {
        host.calls.clear();
        host.pythonResult = status;
        EXPECT_FALSE(carrier.loadPython(L"/b/a.py"));
        EXPECT_EQ(host.calls, joined({kEntered,
                                      kProbed,
                                      kLoaderOpened,
                                      kVersionSet,
                                      {"loadPythonFile(/b/a.py) -> " + std::to_string(status)},
                                      kReturned}));
        EXPECT_EQ(host.workingDirectory, L"/start");
    }
}

TEST_F(PythonLoaderTest, WithoutASystemPythonTheLoaderLibraryIsNotOpened)
{
    host.sharedObjects.erase("libpython3.11.so");
    EXPECT_FALSE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(
        host.calls,
        joined({kEntered, {"dlopen(libpython3.11.so, 1) -> null", "dlopen(libpython3.11m.so, 1) -> null"}, kReturned}));
    EXPECT_EQ(host.workingDirectory, L"/start");
}

TEST_F(PythonLoaderTest, WithoutTheLoaderLibraryTheScriptDoesNotRun)
{
    host.sharedObjects.erase("libVxPythonLoad.so");
    EXPECT_FALSE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(host.calls, joined({kEntered, kProbed, {"dlopen(libVxPythonLoad.so, 1) -> null"}, kReturned}));
}

TEST_F(PythonLoaderTest, TheLoaderLibraryIsTheOneThatTheBundleNames)
{
    EXPECT_EQ(carrier.pythonLoadLib, "libVxPythonLoad.so");
    carrier.pythonLoadLib = "libOther.so";
    EXPECT_FALSE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(host.calls, joined({kEntered, kProbed, {"dlopen(libOther.so, 1) -> null"}, kReturned}));
}

TEST_F(PythonLoaderTest, WithoutTheExportThatSetsTheVersionTheScriptRunsNevertheless)
{
    host.sharedObjects["libVxPythonLoad.so"].erase("setPythonVersion");
    EXPECT_TRUE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(host.calls, joined({kEntered,
                                  kProbed,
                                  kLoaderOpened,
                                  {"dlsym(setPythonVersion) -> null", "dlsym(loadPythonFile) -> address",
                                   "loadPythonFile(/b/a.py) -> 0"}}));
}

TEST_F(PythonLoaderTest, WithoutTheExportThatRunsAFileTheLoadFails)
{
    host.sharedObjects["libVxPythonLoad.so"].erase("loadPythonFile");
    EXPECT_FALSE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(host.calls, joined({kEntered,
                                  kProbed,
                                  kLoaderOpened,
                                  {"dlsym(setPythonVersion) -> address", "setPythonVersion(libpython3.11.so)",
                                   "dlsym(loadPythonFile) -> null"},
                                  kReturned}));
}

TEST_F(PythonLoaderTest, TheVersionGivenToTheLoaderIsTheLibraryThatOpened)
{
    host.sharedObjects.erase("libpython3.11.so");
    host.sharedObjects["libpython3.11m.so"] = {};
    EXPECT_TRUE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(hostdouble::callsTo({"setPythonVersion"}), (Lines{"setPythonVersion(libpython3.11m.so)"}));
}

// The working directory.

TEST_F(PythonLoaderTest, TheScriptsFolderIsTheTextBeforeTheLastSlash)
{
    host.pythonResult = 1; // so that each begins in the same folder
    carrier.loadPython(L"/b.d/c/a.py");
    EXPECT_EQ(host.calls.at(1), "SetCurrentDirectoryW(/b.d/c)");
    host.calls.clear();
    carrier.loadPython(L"/a.py");
    EXPECT_EQ(host.calls.at(1), "SetCurrentDirectoryW()");
    host.calls.clear();
    carrier.loadPython(L"a\\b.py");
    EXPECT_EQ(host.calls.at(1), "SetCurrentDirectoryW()") << "without a slash the folder is empty";
}

TEST_F(PythonLoaderTest, AWorkingDirectoryThatCannotBeReadIsNeitherChangedNorGivenBack)
{
    host.workingDirectory.reset();
    host.pythonResult = 1;
    EXPECT_FALSE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(host.calls, joined({{"GetCurrentDirectoryW(2049) -> 0"},
                                  kProbed,
                                  kLoaderOpened,
                                  kVersionSet,
                                  {"loadPythonFile(/b/a.py) -> 1"}}));
}

TEST_F(PythonLoaderTest, TheLongestWorkingDirectoryIsGivenBackWhole)
{
    const std::wstring before = L"/" + std::wstring(2047, L'd');
    host.workingDirectory = before;
    host.pythonResult = 1;
    EXPECT_FALSE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(host.workingDirectory, before);
}

TEST_F(PythonLoaderTest, AWorkingDirectoryLongerThanTheBufferIsNotChanged)
{
    host.workingDirectory = L"/" + std::wstring(2048, L'd');
    EXPECT_TRUE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(hostdouble::callsTo({"GetCurrentDirectoryW", "SetCurrentDirectoryW"}),
              (Lines{"GetCurrentDirectoryW(2049) -> 0"}));
}

TEST_F(PythonLoaderTest, AFolderThatCannotBeEnteredDoesNotStopTheScript)
{
    host.failingCall = 2; // entering it
    EXPECT_TRUE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(host.workingDirectory, L"/start");
}

TEST_F(PythonLoaderTest, ASecondScriptStartsFromTheFolderOfTheFirst)
{
    EXPECT_TRUE(carrier.loadPython(L"/first/a.py"));
    carrier.pythonVersion = "python3.11";
    host.pythonResult = 1;
    EXPECT_FALSE(carrier.loadPython(L"/second/b.py"));
    EXPECT_EQ(host.workingDirectory, L"/first");
}

TEST_F(PythonLoaderTest, NoStepWritesToTheLog)
{
    host.sharedObjects.clear();
    EXPECT_FALSE(carrier.loadPython(L"/b/a.py"));
    EXPECT_EQ(problems(), "");
}

} // namespace
