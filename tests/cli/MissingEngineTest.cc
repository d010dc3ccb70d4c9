// What to do about the libraries that a message says are missing. The messages are those of the dynamic linker.
#include "cli/MissingEngine.h"
#include "tests/cli/LinkerMessages.h"

#include <gtest/gtest.h>

namespace {

using cli::withRemedy;

TEST(MissingEngineTest, AKnownLibraryThatIsMissingNamesItsPackage)
{
    const std::string managed = "VxManagedCommand.dll needs libmonosgen-2.0.so.1, which is not installed "
                                "(libmonosgen-2.0.so.1" +
                                kMissing + ")";
    EXPECT_EQ(withRemedy(managed), managed + "; install the Debian package libmonosgen-2.0-1");
    const std::string lisp = "the LISP evaluator beside the tool cannot be opened: libecl.so.21.2" + kMissing;
    EXPECT_EQ(withRemedy(lisp), lisp + "; install the Debian package libecl21.2");
    const std::string python = "libpython3.11.so" + kMissing;
    EXPECT_EQ(withRemedy(python), python + "; install the Debian package libpython3.11-dev");
}

TEST(MissingEngineTest, AnEngineThatIsMissingIsLackingInTheInstallation)
{
    const std::string lacks = "; this installation of kestbundle lacks its engine for ";
    const std::string managed = "VxManagedCommand.dll is not beside the tool (VxManagedCommand.dll" + kMissing + ")";
    EXPECT_EQ(withRemedy(managed), managed + lacks + "managed assemblies");
    const std::string python = "the Python engine cannot be used: libVxPythonLoad.so" + kMissing;
    EXPECT_EQ(withRemedy(python), python + lacks + "Python scripts");
    const std::string lisp = "no LISP evaluator is installed: libKestLispEvaluator.so" + kMissing;
    EXPECT_EQ(withRemedy(lisp), lisp + lacks + "LISP files");
}

TEST(MissingEngineTest, TheFirstKnownLibraryOfAMessageCounts)
{
    const std::string both = "(libpython3.7.so" + kMissing + "; libpython3.8.so" + kMissing + ")";
    EXPECT_EQ(withRemedy(both), both + "; install the Debian package libpython3.7-dev");
    const std::string second = "libother.so.1" + kMissing + "; libecl.so.21.2" + kMissing;
    EXPECT_EQ(withRemedy(second), second + "; install the Debian package libecl21.2");
}

TEST(MissingEngineTest, ALibraryThatNobodyKnowsHasNoRemedy)
{
    for (const std::string& problem : std::initializer_list<std::string>{
             "", ": ", "libother.so.1" + kMissing, "libecl.so.16.1" + kMissing, "libpython3.so" + kMissing,
             "libPython3.11.so" + kMissing, "libpython3..so" + kMissing, "libpython3.11m.so" + kMissing,
             "libpython3.11.so.1.0" + kMissing, "python3.11.so" + kMissing, std::string("libecl.so.21.2"),
             std::string("libecl.so.21.2, and: more")}) {
        EXPECT_EQ(withRemedy(problem), problem);
    }
}

TEST(MissingEngineTest, ALibraryThatIsThereButDamagedNeedsNoInstalling)
{
    for (const char* problem : {"/usr/lib/libecl.so.21.2: file too short", "/opt/lib/VxManagedCommand.dll: invalid ELF "
                                                                           "header"}) {
        EXPECT_EQ(withRemedy(problem), problem);
    }
}

} // namespace
