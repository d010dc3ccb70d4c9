// The managed engine as a library, and on a machine that lacks a part of the runtime.
#include "tests/engines/ManagedFixture.h"

#include <cstdio>

namespace {

/// What mono_assembly_getrootdir() tells, if it is not empty.
std::string otherRoot;

class ManagedLibraryTest : public enginetest::ManagedFixture
{
};

} // namespace

/// Stands before the runtime's own function of this name, as this program's symbols come first.
extern "C" __attribute__((visibility("default"))) const char* mono_assembly_getrootdir();

const char* mono_assembly_getrootdir()
{
    if (!otherRoot.empty()) {
        return otherRoot.c_str();
    }
    void* runtime = ::dlopen("libmonosgen-2.0.so.1", RTLD_LAZY | RTLD_NOLOAD);
    const auto real = reinterpret_cast<const char* (*)()>(::dlsym(runtime, "mono_assembly_getrootdir"));
    ::dlclose(runtime);
    return real();
}

namespace {

TEST_F(ManagedLibraryTest, WithoutTheFrameworkALoadFailsAndNamesThePackage)
{
    const std::string path = place("Greeting");
    otherRoot = folder / "nowhere";
    EXPECT_FALSE(load(path));
    const std::string why =
        "/T/nowhere/mono/4.5/mscorlib.dll cannot be read (the package libmono-corlib4.5-dll may be missing)";
    EXPECT_EQ(problem(), why);
    EXPECT_EQ(normalised(console), "/T/Greeting.dll: could not be loaded: " + why + "\n");
    EXPECT_TRUE(running->journal().only<standalone::EngineStart>().empty());
    otherRoot.clear();
    EXPECT_TRUE(load(path)) << console; // it has been installed meanwhile
    EXPECT_EQ(running->journal().only<standalone::EngineStart>().size(), 1U);
}

TEST_F(ManagedLibraryTest, TheOnlyExportIsNetLoad)
{
    FILE* listing =
        ::popen("nm --dynamic --defined-only --format=posix " KEST_ENGINE_FOLDER "/VxManagedCommand.dll", "r");
    ASSERT_NE(listing, nullptr);
    std::string symbols;
    for (int character = std::fgetc(listing); character != EOF; character = std::fgetc(listing)) {
        symbols.push_back(static_cast<char>(character));
    }
    EXPECT_EQ(::pclose(listing), 0);
    EXPECT_EQ(symbols.substr(0, symbols.find(' ')), "netLoad");
    EXPECT_EQ(std::count(symbols.begin(), symbols.end(), '\n'), 1) << symbols;
}

TEST_F(ManagedLibraryTest, AuthorsCompileAgainstTheAssemblyBesideTheLibrary)
{
    EXPECT_EQ(standalonetest::namesIn(KEST_ENGINE_FOLDER "/kest"), (std::vector<std::string>{"Kest.dll", "Kest.xml"}));
}

} // namespace
