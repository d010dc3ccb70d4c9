// Where assemblies find the assemblies that they refer to.
#include "tests/engines/ManagedFixture.h"

namespace {

class ManagedDependencyTest : public enginetest::ManagedFixture
{
};

TEST_F(ManagedDependencyTest, AssembliesOfOneNameInTwoFoldersRunTheirOwnCode)
{
    EXPECT_TRUE(load(place("one/Twin"))) << console;
    EXPECT_TRUE(load(place("other/Twin"))) << console;
    EXPECT_TRUE(run(L"ONE").ran);
    EXPECT_EQ(console, "the one\n");
    EXPECT_TRUE(run(L"OTHER").ran);
    EXPECT_EQ(console, "the other\n");
}

TEST_F(ManagedDependencyTest, ADependencyInTheSameFolderIsFound)
{
    place("Steel", "a/Steel.dll");
    EXPECT_TRUE(load(place("UsesSteel", "a/UsesSteel.dll"))) << console;
    EXPECT_EQ(console, "the user has S235\n");
}

TEST_F(ManagedDependencyTest, EachBundleHasItsOwnDependencyOfOneName)
{
    place("Steel", "a/Steel.dll");
    place("other/Steel", "b/Steel.dll");
    EXPECT_TRUE(load(place("SteelBundle", "a/SteelBundle.dll"))) << console;
    EXPECT_EQ(console, "the bundle has S235\n");
    EXPECT_TRUE(load(place("UsesSteel", "b/UsesSteel.dll"))) << console;
    EXPECT_EQ(console, "the user has S355\n");
    EXPECT_TRUE(run(L"GRADE").ran);
    EXPECT_EQ(console, "S355\n");
}

TEST_F(ManagedDependencyTest, AnAssemblyOfAnotherBundleIsFoundByItsName)
{
    place("other/Steel", "a/Steel.dll");
    EXPECT_TRUE(load(place("SteelBundle", "a/SteelBundle.dll"))) << console;
    EXPECT_TRUE(load(place("UsesSteel", "b/UsesSteel.dll"))) << console;
    EXPECT_EQ(console, "the user has S355\n");
}

TEST_F(ManagedDependencyTest, AnAssemblyOfAnotherBundleMayHaveAnotherVersion)
{
    place("later/Steel", "a/Steel.dll");
    EXPECT_TRUE(load(place("SteelBundle", "a/SteelBundle.dll"))) << console;
    EXPECT_EQ(console, "the bundle has S355\n");
    EXPECT_TRUE(load(place("UsesSteel", "b/UsesSteel.dll"))) << console;
    EXPECT_EQ(console, "the user has S355\n");
}

TEST_F(ManagedDependencyTest, TheWorkingDirectoryIsNotSearched)
{
    place("Steel", "work/Steel.dll");
    const std::string path = place("UsesSteel", "b/UsesSteel.dll");
    std::filesystem::current_path(folder / "work");
    EXPECT_FALSE(load(path));
    EXPECT_EQ(problem(), "System.IO.FileNotFoundException: Could not load file or assembly 'Steel, Version=1.0.0.0, "
                         "Culture=neutral, PublicKeyToken=null' or one of its dependencies.");
    std::filesystem::current_path("/");
}

TEST_F(ManagedDependencyTest, ABundlesCopyOfTheHostsAssemblyIsNotUsed)
{
    place("own/Kest", "a/Kest.dll");
    EXPECT_TRUE(load(place("Greeting", "a/Greeting.dll"))) << console;
    EXPECT_EQ(normalised(console), "start 1 of /T/a/Greeting.dll\nregistered: True\n");
}

TEST_F(ManagedDependencyTest, AMissingPieceOfTheFrameworkIsToldWithItsPackage)
{
    EXPECT_FALSE(loadPlaced("UsesAbsent"));
    EXPECT_EQ(problem(), "System.IO.FileNotFoundException: Could not load file or assembly 'System.Kest.Absent, "
                         "Version=0.0.0.0, Culture=neutral, PublicKeyToken=null' or one of its dependencies. "
                         "(the package libmono-system-kest-absent4.0-cil may be missing)");
}

} // namespace
