// The shared library, opened and closed by one process again and again.
#include "standalone/Host.h"
#include "tests/growth/LiveMemory.h"
#include "tests/standalone/HostFixture.h"

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>

namespace {

class ReopeningTest : public standalonetest::HostFixture
{
protected:
    ReopeningTest()
    {
        const std::string bundle = folder / "home/.config/ORRELIN/ApplicationPlugins/Tools.bundle";
        std::filesystem::create_directories(bundle);
        standalonetest::writeFile(bundle + "/PackageContents.xml",
                                  R"(<ApplicationPackage UpgradeCode="{Tools-and-more}"><Components>
            <ComponentEntry ModuleName="./tools.cuix"/>
            <ComponentEntry ModuleName="./draw.lsp" LoadOnTARVIXStartup="False" LoadOnCommandInvocation="True">
            <Commands><Command Global="G" Local="draw"/></Commands></ComponentEntry>
            <ComponentEntry ModuleName="./absent.krx"/></Components></ApplicationPackage>)");
        ::setenv("HOME", (folder / "home").c_str(), 1);
        startHost();
    }

    /// The library from its opening to its closing, in full use.
    void useLibrary()
    {
        void* const library = ::dlopen(KEST_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << ::dlerror();
        reinterpret_cast<void (*)()>(::dlsym(library, "excuteCuix"))();
        reinterpret_cast<void (*)()>(::dlsym(library, "excute"))();
        reinterpret_cast<void (*)(const wchar_t*)>(::dlsym(library, "loadIfCmdNeeded"))(L"NOBODYSCOMMAND");
        ASSERT_EQ(::dlclose(library), 0);
        ASSERT_EQ(::dlopen(KEST_LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "it stays mapped";
        running->journal().clear(); // what the fixture notes is no growth of the library's
        std::string().swap(console);
    }
};

TEST_F(ReopeningTest, AThousandOpeningsAndClosingsLeaveNothingBehind)
{
    for (int time = 0; time < 40; ++time) { // the host keeps some folder listings
        ASSERT_NO_FATAL_FAILURE(useLibrary());
    }
    const std::vector<std::string> descriptors = openDescriptors();
    const std::vector<std::string> mapped = mappedFiles();
    const Blocks before = liveBlocks();

    for (int time = 0; time < 1000; ++time) {
        ASSERT_NO_FATAL_FAILURE(useLibrary());
        ASSERT_EQ(liveBlocks(), before) << "after opening " << time;
    }

    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(mappedFiles(), mapped);
    std::cout << "in use before and after: " << before << ", " << descriptors.size() << " descriptors\n";
}

} // namespace
