#include "tests/standalone/HostFixture.h"

#include "host/LocaleText.h"
#include "host/ModuleLayer.h"

#include <dlfcn.h>

using namespace standalonetest;
using localetext::widen;
using standalone::EngineOpen;

namespace {

class ModuleLayerTest : public HostFixture
{
protected:
    ModuleLayerTest() { settings.engineFolder = KEST_TEST_ENGINES; }

    EngineOpen lastOpen() const { return running->journal().only<EngineOpen>().back(); }

    /// The kind of library that the other tests do not open: those stay open.
    static bool isLoaded(const std::string& path)
    {
        void* const library = ::dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        if (library != nullptr) {
            ::dlclose(library);
        }
        return library != nullptr;
    }
};

} // namespace

TEST_F(ModuleLayerTest, LibraryBesideTheToolIsLoadedAndThenFoundByItsName)
{
    startHost();
    EXPECT_EQ(GetModuleHandleW(L"TestEngine.dll"), nullptr);
    const ModuleHandle library = LoadLibraryW(L"TestEngine.dll");
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(GetModuleHandleW(L"TestEngine.dll"), library);
    EXPECT_EQ(LoadLibraryW(L"TestEngine.dll"), library);
    EXPECT_EQ(running->journal().size(), 2U) << "asking whether it is loaded is no event";
    const auto opens = running->journal().only<EngineOpen>();
    ASSERT_EQ(opens.size(), 2U);
    for (const EngineOpen& one : opens) {
        EXPECT_EQ(one.name, L"TestEngine.dll");
        EXPECT_TRUE(one.opened);
        EXPECT_EQ(one.problem, "");
    }
    // Two references by now. Asking took none, so that two closings end it.
    ::dlclose(library);
    EXPECT_TRUE(isLoaded(std::string(KEST_TEST_ENGINES) + "/TestEngine.dll"));
    ::dlclose(library);
    EXPECT_FALSE(isLoaded(std::string(KEST_TEST_ENGINES) + "/TestEngine.dll"));
    EXPECT_EQ(GetModuleHandleW(L"TestEngine.dll"), nullptr);
}

TEST_F(ModuleLayerTest, LibraryThatSomebodyElseOpenedByPathIsFoundByItsFileName)
{
    settings.engineFolder.clear();
    startHost();
    EXPECT_EQ(GetModuleHandleW(L"TestEngineByPath.dll"), nullptr);
    void* const library = ::dlopen(KEST_TEST_ENGINES "/TestEngineByPath.dll", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(GetModuleHandleW(L"TestEngineByPath.dll"), library);
    EXPECT_EQ(GetModuleHandleW(L"ByPath.dll"), nullptr);
    EXPECT_EQ(GetModuleHandleW(L""), nullptr);
    ::dlclose(library);
}

TEST_F(ModuleLayerTest, LibraryOfTheSystemIsLoadedByItsName)
{
    startHost();
    EXPECT_NE(LoadLibraryW(L"libm.so.6"), nullptr);
    EXPECT_TRUE(lastOpen().opened);
    EXPECT_NE(GetModuleHandleW(L"libm.so.6"), nullptr);
}

TEST_F(ModuleLayerTest, ExportsAreFoundByName)
{
    startHost();
    const ModuleHandle library = LoadLibraryW(L"TestEngine.dll");
    ASSERT_NE(library, nullptr);
    const ProcAddress answer = GetProcAddress(library, "kestTestAnswer");
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(reinterpret_cast<int (*)()>(answer)(), 42);
    EXPECT_EQ(GetProcAddress(library, "absent"), nullptr);
    ::dlclose(library);
}

TEST_F(ModuleLayerTest, ExportsOfAnEngineAreNotMixedWithThoseOfOthers)
{
    startHost();
    const ModuleHandle library = LoadLibraryW(L"TestEngine.dll");
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(::dlsym(RTLD_DEFAULT, "kestTestAnswer"), nullptr);
    ::dlclose(library);
}

TEST_F(ModuleLayerTest, AbsentLibraryIsReportedAsNotBesideTheTool)
{
    startHost();
    EXPECT_EQ(LoadLibraryW(L"VxManagedCommand.dll"), nullptr);
    const EngineOpen open = lastOpen();
    EXPECT_EQ(open.name, L"VxManagedCommand.dll");
    EXPECT_FALSE(open.opened);
    EXPECT_EQ(open.problem, "VxManagedCommand.dll is not beside the tool and not among the system's libraries "
                            "(VxManagedCommand.dll: cannot open shared object file: No such file or directory)");
}

TEST_F(ModuleLayerTest, LibraryThatNeedsAnAbsentOneNamesTheAbsentOne)
{
    startHost();
    EXPECT_EQ(LoadLibraryW(L"NeedyEngine.dll"), nullptr);
    EXPECT_EQ(lastOpen().problem,
              "NeedyEngine.dll needs libkest-test-needed.so, which is not installed "
              "(libkest-test-needed.so: cannot open shared object file: No such file or directory)");
}

TEST_F(ModuleLayerTest, DamagedLibraryBesideTheToolIsNotPassedOverForOneOfTheSystem)
{
    settings.engineFolder = folder.path;
    writeFile(folder / "libm.so.6", "not a library, but long enough to be looked at by the dynamic linker");
    startHost();
    EXPECT_EQ(LoadLibraryW(L"libm.so.6"), nullptr);
    EXPECT_EQ(lastOpen().problem, "libm.so.6 cannot be loaded (" + folder / "libm.so.6" + ": invalid ELF header)");
}

TEST_F(ModuleLayerTest, EmptyNameLoadsNothing)
{
    for (const char* engines : {"", KEST_TEST_ENGINES}) {
        settings.engineFolder = engines;
        running.reset();
        startHost();
        EXPECT_EQ(LoadLibraryW(L""), nullptr);
        EXPECT_FALSE(lastOpen().opened);
        EXPECT_EQ(lastOpen().problem, "No name was given");
    }
}
