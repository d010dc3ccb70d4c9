// The shared library from its opening to its closing, seen by a host through the three exports.
#include "host/ErrorStatus.h"
#include "tests/HostDouble.h"
#include "tests/library/OpenedLibrary.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <regex>
#include <stdexcept>

namespace {

using hostdouble::Element;

const std::wstring kRoot = L"/usr/local/ORRELIN/ApplicationPlugins";

class LifetimeTest : public ::testing::Test
{
protected:
    LifetimeTest()
    {
        hostdouble::reset();
        setenv("HOME", "/home/user", 1);
    }

    void install(const std::wstring& name, const Element& manifest)
    {
        host.folders[kRoot].push_back({name});
        host.folders[kRoot + L"/" + name] = {{L"PackageContents.xml", false}};
        host.documents[kRoot + L"/" + name + L"/PackageContents.xml"] = manifest;
    }

    static Element package(const std::wstring& upgradeCode, const std::vector<Element>& entries)
    {
        return {L"ApplicationPackage", {{L"UpgradeCode", upgradeCode}}, {{L"Components", {}, entries}}};
    }

    hostdouble::State& host = hostdouble::state();
    const std::regex timeLine{"[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\n"};
};

TEST_F(LifetimeTest, OpeningTheLibraryAsksTheHostNothing)
{
    const OpenedLibrary library;

    EXPECT_EQ(host.calls, std::vector<std::string>());
    EXPECT_TRUE(OpenedLibrary::isMapped());
}

TEST_F(LifetimeTest, TheFirstCallMakesTheManagerAndWritesTheTimeIntoTheLog)
{
    const OpenedLibrary library;

    library.excute();

    EXPECT_EQ(host.calls,
              std::vector<std::string>{"_wfopen(/home/user/.config/ORRELIN/BundleErrorLog.txt, w) -> stream"});
    EXPECT_TRUE(std::regex_match(hostdouble::logText(), timeLine)) << hostdouble::logText();
}

TEST_F(LifetimeTest, LoadIfCmdNeededBeforeAnythingMakesTheManagerAndLoadsNothing)
{
    const OpenedLibrary library;

    library.loadIfCmdNeeded(L"GEAR");

    EXPECT_EQ(host.calls,
              std::vector<std::string>{"_wfopen(/home/user/.config/ORRELIN/BundleErrorLog.txt, w) -> stream"});
}

TEST_F(LifetimeTest, ClosingDestroysTheBundlesThenClosesTheLogAndTheMappingIsGone)
{
    install(L"Tools.bundle", package(L"{T}", {}));
    OpenedLibrary library;
    library.excuteCuix();
    EXPECT_EQ(host.openReaders, 1U);
    host.calls.clear();

    library.close();

    EXPECT_EQ(host.calls, (std::vector<std::string>{"~XmlFilerReader()", "fclose(log)"}));
    EXPECT_EQ(host.openReaders, 0U);
    EXPECT_FALSE(OpenedLibrary::isMapped());
}

TEST_F(LifetimeTest, ClosingAnUnusedLibraryDoesNothing)
{
    OpenedLibrary library;

    library.close();

    EXPECT_EQ(host.calls, std::vector<std::string>());
    EXPECT_FALSE(OpenedLibrary::isMapped());
}

TEST_F(LifetimeTest, OpeningAnewStartsAfresh)
{
    install(L"Tools.bundle", package(L"{T}", {{L"ComponentEntry", {{L"ModuleName", L"./tools.krx"}}}}));
    {
        const OpenedLibrary first;
        first.excuteCuix();
        first.excute();
    }
    host.calls.clear();
    host.folders.clear();

    const OpenedLibrary second;
    second.excute();

    EXPECT_EQ(host.calls,
              std::vector<std::string>{"_wfopen(/home/user/.config/ORRELIN/BundleErrorLog.txt, w) -> stream"});
    EXPECT_TRUE(std::regex_match(hostdouble::logText(), timeLine)) << hostdouble::logText();
}

TEST_F(LifetimeTest, WithoutHomeTheFirstCallThrowsAndTheNextOneWorksOnceHomeIsSet)
{
    const OpenedLibrary library;
    unsetenv("HOME");

    try {
        library.excuteCuix();
        FAIL() << "nothing was thrown";
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
    }
    EXPECT_EQ(host.calls, std::vector<std::string>()); // no log file was made

    setenv("HOME", "/home/other", 1);
    library.excute();
    EXPECT_EQ(host.calls,
              std::vector<std::string>{"_wfopen(/home/other/.config/ORRELIN/BundleErrorLog.txt, w) -> stream"});
}

TEST_F(LifetimeTest, AnErrorOfTheHostLeavesTheEntryPointAsThePointerThatTheHostThrew)
{
    install(L"Menus.bundle", package(L"{M}", {{L"ComponentEntry", {{L"ModuleName", L"./old.mnu"}}}}));
    auto* const thrown = new VxErrorStatus(Kest::eOutOfMemory, L"converter", 7);
    host.convertMenu = [&](const std::wstring&, std::wstring&) -> bool { throw thrown; };
    const OpenedLibrary library;

    try {
        library.excuteCuix();
        FAIL() << "nothing was thrown";
    } catch (const VxErrorStatus* error) {
        EXPECT_EQ(error, thrown);
        delete error;
    }
    EXPECT_EQ(host.configuration.size(), 0U);
}

TEST_F(LifetimeTest, ABundleGoesTheWholeRoadThroughTheThreeEntryPoints)
{
    install(L"Tools.bundle",
            package(L"{T}", {{L"ComponentEntry", {{L"ModuleName", L"./tools.cuix"}}},
                             {L"ComponentEntry", {{L"ModuleName", L"./tools.krx"}}},
                             {L"ComponentEntry",
                              {{L"ModuleName", L"./draw.lsp"},
                               {L"LoadOnTARVIXStartup", L"False"},
                               {L"LoadOnCommandInvocation", L"True"}},
                              {{L"Commands", {}, {{L"Command", {{L"Global", L"G"}, {L"Local", L"Draw"}}}}}}}}));
    const std::set<std::string> deeds = {"setValue", "loadModule", "setKrxLoadType", "addEntry", "kds_queueexpr"};
    const OpenedLibrary library;

    library.excuteCuix();
    EXPECT_EQ(hostdouble::callsTo(deeds),
              (std::vector<std::string>{
                  "setValue(4, CUIX/LoadedBundleCuix, /usr/local/ORRELIN/ApplicationPlugins/Tools.bundle/tools.cuix;)",
                  "setValue(4, CUIX/LoadedCuix, ;/usr/local/ORRELIN/ApplicationPlugins/Tools.bundle/tools.cuix;)"}));

    host.calls.clear();
    library.excute();
    EXPECT_EQ(
        hostdouble::callsTo(deeds),
        (std::vector<std::string>{
            "loadModule(/usr/local/ORRELIN/ApplicationPlugins/Tools.bundle/tools.krx, false, false) -> true",
            "setKrxLoadType(/usr/local/ORRELIN/ApplicationPlugins/Tools.bundle/tools.krx, 2)", "addEntry(DRAW, 3)"}));

    host.calls.clear();
    library.loadIfCmdNeeded(L"dRaW");
    EXPECT_EQ(host.calls,
              (std::vector<std::string>{
                  "kds_queueexpr((LOAD \"/usr/local/ORRELIN/ApplicationPlugins/Tools.bundle/draw.lsp\")) -> 5100"}));
    EXPECT_TRUE(std::regex_match(hostdouble::logText(), timeLine)) << hostdouble::logText();
}

} // namespace
