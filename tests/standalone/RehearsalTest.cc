// A host that rehearses answers as a real one would, executes nothing, and leaves the disk as it is.
#include "standalone/Rehearsal.h"

#include "HostFixture.h"
#include "ModuleFolder.h"

#include "tests/AssemblyBytes.h"

#include "standalone/CommandTable.h"
#include "standalone/Configuration.h"
#include "standalone/LispQueue.h"

#include "host/Configuration.h"
#include "host/DynamicLinker.h"
#include "host/Engines.h"
#include "host/FileLayer.h"
#include "host/LocaleText.h"
#include "host/MenuDatabase.h"
#include "host/ModuleLayer.h"

#include <dlfcn.h>

extern "C" std::remove_pointer_t<engines::LoadPythonFile> loadPythonFile;

using namespace standalone;
using localetext::narrow;
using localetext::widen;
using standalonetest::fileContent;
using standalonetest::namesIn;
using standalonetest::writeFile;

namespace {

namespace fs = std::filesystem;

const std::string kEngines = KEST_TEST_ENGINES;

/// Whether `library` stands for the program itself.
bool isTheProgram(const void* library)
{
    void* const program = ::dlopen(nullptr, RTLD_LAZY);
    ::dlclose(program);
    return library == program;
}

class RehearsalTest : public standalonetest::HostFixture
{
protected:
    RehearsalTest()
    {
        settings.rehearses = true;
        settings.engineFolder = kEngines;
        ::setenv("KEST_TEST_TRACE", (folder / "trace").c_str(), 1);
    }
    ~RehearsalTest() override
    {
        EXPECT_FALSE(fs::exists(folder / "trace")) << "code of a library ran";
        ::unsetenv("KEST_TEST_TRACE");
    }

    Host& host() { return running ? *running : startHost(); }

    static ModuleLoad load(Host& host, const std::string& path)
    {
        auto* linker = dynamic_cast<KsRxDynamicLinker*>(ksrxSysRegistry()->at(L"DynamicLinker"));
        const bool isLoaded = linker->loadModule(widen(path).c_str(), false, false);
        const ModuleLoad noted = host.journal().only<ModuleLoad>().back();
        EXPECT_EQ(noted.path, widen(path));
        EXPECT_EQ(noted.loaded, isLoaded);
        return noted;
    }

    ScriptLoad lastScript() { return host().journal().only<ScriptLoad>().back(); }

    /// What the real host keeps under a key, before the rehearsal.
    void storeForReal(const std::wstring& key, const std::wstring& text)
    {
        Journal events;
        Configuration store(settings.configurationFile, events);
        ASSERT_TRUE(store.store(TarvixConfig::kMenus, key, text));
    }
};

TEST_F(RehearsalTest, NoFolderIsMadeForTheConfiguration)
{
    EXPECT_EQ(host().configuration().text(TarvixConfig::kMenus, L"key"), std::nullopt);
    EXPECT_TRUE(host().configuration().store(TarvixConfig::kMenus, L"key", L"value"));
    EXPECT_EQ(host().configuration().text(TarvixConfig::kMenus, L"key"), L"value");
    EXPECT_EQ(namesIn(folder.path), std::vector<std::string>());
    EXPECT_EQ(notices(), std::vector<std::string>());
}

TEST_F(RehearsalTest, StoredValuesAreReadAndStayAsTheyAre)
{
    storeForReal(L"key", L"real");
    const std::string before = fileContent(settings.configurationFile);
    const std::vector<std::string> names = namesIn(folder / "configuration");
    Configuration& store = host().configuration();
    {
        const Configuration::Turn turn(store);
        EXPECT_EQ(store.text(TarvixConfig::kMenus, L"key"), L"real");
        EXPECT_TRUE(store.store(TarvixConfig::kMenus, L"key", L"rehearsed"));
        EXPECT_EQ(store.text(TarvixConfig::kMenus, L"key"), L"rehearsed");
    }
    EXPECT_EQ(store.text(TarvixConfig::kMenus, L"key"), L"rehearsed") << "for the life of the host";
    const auto writes = host().journal().only<ConfigurationWrite>();
    ASSERT_EQ(writes.size(), 1U);
    EXPECT_EQ(writes[0].before, L"real");
    EXPECT_EQ(writes[0].after, L"rehearsed");
    EXPECT_TRUE(writes[0].stored);
    EXPECT_EQ(writes[0].problem, "");
    EXPECT_EQ(fileContent(settings.configurationFile), before);
    EXPECT_EQ(namesIn(folder / "configuration"), names);
}

TEST_F(RehearsalTest, AStoreThatCannotBeReadIsToldOf)
{
    fs::create_directories(folder / "configuration");
    writeFile(settings.configurationFile, "no database at all, and longer than the header of one would be: "
                                          "0123456789012345678901234567890123456789");
    EXPECT_EQ(host().configuration().text(TarvixConfig::kMenus, L"key"), std::nullopt);
    ASSERT_EQ(notices().size(), 1U);
    EXPECT_TRUE(
        notices()[0].starts_with("The configuration file \"" + settings.configurationFile + "\" could not be read: "))
        << notices()[0];
}

TEST_F(RehearsalTest, WhatIsWrittenToAFileIsKeptInMemory)
{
    writeFile(folder / "log", "of the last start");
    host();
    std::FILE* log = _wfopen(widen(folder / "log").c_str(), L"w");
    ASSERT_NE(log, nullptr);
    std::fputs("first", log);
    std::fflush(log);
    EXPECT_EQ(host().rehearsal()->written(folder / "log"), "first");
    EXPECT_EQ(fileContent(folder / "log"), "of the last start");
    std::FILE* again = _wfopen(widen(folder / "log").c_str(), L"w");
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(host().rehearsal()->written(folder / "log"), "") << "opened for writing, it is emptied";
    std::fputs("second", again);
    std::fclose(again);
    EXPECT_EQ(host().rehearsal()->written(folder / "log"), "second");
    EXPECT_EQ(host().rehearsal()->written(folder / "other"), "");
    running.reset();
    std::fputs("the stream outlives the rehearsal", log);
    EXPECT_EQ(std::fclose(log), 0);
    EXPECT_EQ(fileContent(folder / "log"), "of the last start");
}

TEST_F(RehearsalTest, FilesAreReadForReal)
{
    writeFile(folder / "file", "content");
    host();
    std::FILE* file = _wfopen(widen(folder / "file").c_str(), L"r");
    ASSERT_NE(file, nullptr);
    char text[16] = {};
    EXPECT_STREQ(std::fgets(text, sizeof(text), file), "content");
    std::fclose(file);
}

TEST_F(RehearsalTest, AModuleIsExaminedAndNotOpened)
{
    EXPECT_TRUE(load(host(), kModules + "/greeting.krx").loaded);
    EXPECT_TRUE(load(host(), kModules + "/leaving-trace.krx").loaded);
    EXPECT_EQ(::dlopen((kModules + "/leaving-trace.krx").c_str(), RTLD_LAZY | RTLD_NOLOAD), nullptr);
    EXPECT_EQ(console, "");
    EXPECT_FALSE(host().commands().has(L"GREET"));
}

TEST_F(RehearsalTest, AModuleThatCouldNotBeLoadedFailsWithItsReason)
{
    EXPECT_EQ(load(host(), folder / "missing.krx").problem, "No such file or directory");
    EXPECT_EQ(load(host(), folder.path).problem, "it is not a regular file");
    EXPECT_FALSE(load(host(), "here.krx").loaded);
}

TEST_F(RehearsalTest, AMenuIsConvertedIntoNothing)
{
    writeFile(folder / "good.mnu", "[Draw]\nLine = LINE\n");
    writeFile(folder / "bad.mnu", "Line = LINE\n");
    host();
    CStdStr<wchar_t> converted;
    EXPECT_TRUE(Database::convertMenuToCuix(widen(folder / "good.mnu"), converted));
    EXPECT_TRUE(narrow(converted).starts_with(folder / "configuration/ConvertedMenus/good-")) << narrow(converted);
    EXPECT_FALSE(Database::convertMenuToCuix(widen(folder / "bad.mnu"), converted));
    EXPECT_EQ(converted, L"");
    EXPECT_NE(host().journal().only<MenuConversion>().back().problem, "");
    EXPECT_EQ(namesIn(folder.path), (std::vector<std::string>{"bad.mnu", "good.mnu"}));
}

TEST_F(RehearsalTest, AScriptIsLookedAtAndNotRun)
{
    writeFile(folder / "script.py", "raise SystemExit\n");
    host();
    EXPECT_EQ(loadPythonFile(widen(folder / "script.py").c_str()), 0);
    EXPECT_TRUE(lastScript().loaded);
    EXPECT_EQ(lastScript().path, widen(folder / "script.py"));
    EXPECT_EQ(loadPythonFile(widen(folder / "missing.py").c_str()), 1);
    EXPECT_FALSE(lastScript().loaded);
    EXPECT_EQ(lastScript().problem, "No such file or directory");
}

TEST_F(RehearsalTest, AnAssemblyIsLookedAtAndNotRun)
{
    writeFile(folder / "good.dll", assemblyBytes());
    writeFile(folder / "text.dll", "M");
    host();
    const ModuleHandle engine = LoadLibraryW(L"TestEngine.dll");
    ASSERT_NE(engine, nullptr);
    EXPECT_EQ(GetProcAddress(engine, "netLoad"), nullptr) << "what the engine lacks, a rehearsal lacks as well";
    EXPECT_NE(GetProcAddress(engine, "kestTestAnswer"), nullptr);
    ::dlclose(engine);
    const ModuleHandle whole = LoadLibraryW(L"NetEngine.dll");
    ASSERT_NE(whole, nullptr);
    const auto netLoad = reinterpret_cast<engines::NetLoad>(GetProcAddress(whole, "netLoad"));
    ASSERT_NE(netLoad, nullptr);
    EXPECT_TRUE(netLoad(CStdStr<wchar_t>(widen(folder / "good.dll")), 0)) << "the engine's own would refuse it";
    EXPECT_TRUE(lastScript().loaded);
    EXPECT_FALSE(netLoad(CStdStr<wchar_t>(widen(folder / "text.dll")), 0));
    EXPECT_EQ(lastScript().problem, "it is not a managed assembly");
    ::dlclose(whole);
}

TEST_F(RehearsalTest, ALibraryThatAManifestNamesIsFoundAndNotOpened)
{
    fs::copy_file(kModules + "/leaving-trace.krx", folder / "libtrace.so");
    host();
    EXPECT_TRUE(isTheProgram(::dlopen("libsqlite3.so.0", RTLD_LAZY))) << "one of the system's, used by this program";
    EXPECT_EQ(::dlopen("libkest-is-nowhere.so", RTLD_LAZY), nullptr);
    fs::current_path(folder.path);
    EXPECT_EQ(::dlopen("lib../libtrace.so", RTLD_LAZY), nullptr);
    fs::create_directory(folder / "libx");
    EXPECT_EQ(::dlopen("libx/../libtrace.so", RTLD_LAZY), nullptr) << "it may lie in a bundle";
    fs::current_path("/");
}

TEST_F(RehearsalTest, WithoutThePythonEngineScriptsCannotRun)
{
    host();
    EXPECT_EQ(::dlopen("libVxPythonLoad.so", RTLD_LAZY), nullptr);
}

TEST_F(RehearsalTest, ARealHostOpensLibrariesForRealAndRefusesWhatStandsIn)
{
    settings.rehearses = false;
    host();
    EXPECT_EQ(host().rehearsal(), nullptr);
    void* const library = ::dlopen("libsqlite3.so.0", RTLD_LAZY);
    EXPECT_FALSE(isTheProgram(library));
    ::dlclose(library);
    writeFile(folder / "script.py", "");
    EXPECT_EQ(loadPythonFile(widen(folder / "script.py").c_str()), 1);
    EXPECT_EQ(host().journal().size(), 0U);
}

} // namespace
