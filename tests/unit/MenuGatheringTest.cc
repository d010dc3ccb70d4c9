// Which menus one bundle brings. In which order the bundles bring them: MenuOrderTest.
#include "tests/AutoloaderTest.h"

#include <stdexcept>

namespace {

using Lines = std::vector<std::string>;

class MenuGatheringTest : public AutoloaderTest
{
protected:
    /// What loadCuix() makes of `list`; whether it appended anything goes to `hasAppended`.
    std::wstring gather(const std::wstring& list = L"")
    {
        CStdStr<wchar_t> menuList = list;
        hasAppended = bundle.loadCuix(menuList);
        return menuList;
    }

    KestBundle bundle{L"/b", L"/b/PackageContents.xml"};
    bool hasAppended = false;
};

TEST_F(MenuGatheringTest, ABundleWithoutEntriesAppendsNothingAndIsNotMarkedLoaded)
{
    EXPECT_EQ(gather(L"before"), L"before");
    EXPECT_FALSE(hasAppended);
    EXPECT_FALSE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, ABundleWithoutStartupMenusAppendsNothingAndIsNotMarkedLoaded)
{
    addComponent(bundle, L"/b/a.cuix", 0);
    addComponent(bundle, L"/b/b.cuix", KestComponentEntry::kLoadCommand);
    addComponent(bundle, L"/b/c.cuix", KestComponentEntry::kLoadStartup, 0);
    addComponent(bundle, L"/b/d.mnu", 0);

    EXPECT_EQ(gather(L"before"), L"before");
    EXPECT_FALSE(hasAppended);
    EXPECT_FALSE(bundle.getIsLoad());
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(MenuGatheringTest, ABundleWhoseStartupEntriesAreNoMenusAppendsNothing)
{
    addComponent(bundle, L"/b/a.krx");
    addComponent(bundle, L"/b/b.lsp");

    EXPECT_EQ(gather(L"before"), L"before");
    EXPECT_FALSE(hasAppended);
    EXPECT_FALSE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, ABundleOfMenusAloneIsMarkedLoaded)
{
    addComponent(bundle, L"/b/a.cuix");
    addComponent(bundle, L"/b/b.cuix");

    EXPECT_EQ(gather(), L"/b/a.cuix;/b/b.cuix");
    EXPECT_TRUE(hasAppended);
    EXPECT_TRUE(bundle.getIsLoad());
    EXPECT_EQ(host.calls, Lines());
    EXPECT_EQ(problems(), "");
}

TEST_F(MenuGatheringTest, AMenuThatAlsoLoadsOnACommandIsAMenu)
{
    addComponent(bundle, L"/b/a.cuix", KestComponentEntry::kLoadStartup | KestComponentEntry::kLoadCommand);

    EXPECT_EQ(gather(), L"/b/a.cuix");
    EXPECT_TRUE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, AMenuThatIsNotLoadedAtStartupIsNotRegisteredAndKeepsTheBundleFromBeingMarkedLoaded)
{
    addComponent(bundle, L"/b/a.cuix");
    addComponent(bundle, L"/b/b.cuix", KestComponentEntry::kLoadCommand);

    EXPECT_EQ(gather(), L"/b/a.cuix");
    EXPECT_TRUE(hasAppended);
    EXPECT_FALSE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, AMenuWhoseControlFlagIsNotOneIsNotRegisteredAndKeepsTheBundleFromBeingMarkedLoaded)
{
    for (const int flag : {0, 2, 3, -1}) {
        bundle.components.clear();
        addComponent(bundle, L"/b/a.cuix", KestComponentEntry::kLoadStartup, flag);
        addComponent(bundle, L"/b/b.cuix");

        EXPECT_EQ(gather(), L"/b/b.cuix") << flag;
        EXPECT_FALSE(bundle.getIsLoad()) << flag;
    }
}

TEST_F(MenuGatheringTest, AnEntryThatIsPassedOverAppendsNoSeparator)
{
    addComponent(bundle, L"/b/a.cuix");
    addComponent(bundle, L"/b/b.cuix", 0);
    addComponent(bundle, L"/b/c.cuix", KestComponentEntry::kLoadStartup, 3);
    addComponent(bundle, L"/b/d.cuix");

    EXPECT_EQ(gather(), L"/b/a.cuix;/b/d.cuix");
}

TEST_F(MenuGatheringTest, AStartupModuleBetweenTwoMenusLeavesAnEmptyEntryAndTheBundleNotLoaded)
{
    addComponent(bundle, L"/b/first.cuix");
    addComponent(bundle, L"/b/app.krx");
    addComponent(bundle, L"/b/second.cuix");

    EXPECT_EQ(gather(), L"/b/first.cuix;;/b/second.cuix");
    EXPECT_TRUE(hasAppended);
    EXPECT_FALSE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, AStartupModuleBehindTheOnlyMenuLeavesATrailingSeparatorInTheCallersList)
{
    addComponent(bundle, L"/b/only.cuix");
    addComponent(bundle, L"/b/app.krx");

    EXPECT_EQ(gather(L"/a/x.cuix"), L"/a/x.cuix;/b/only.cuix;");
    EXPECT_FALSE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, AStartupModuleBeforeTheFirstMenuLeavesNoEmptyEntry)
{
    addComponent(bundle, L"/b/app.krx");
    addComponent(bundle, L"/b/app.lsp");
    addComponent(bundle, L"/b/only.cuix");

    EXPECT_EQ(gather(), L"/b/only.cuix");
    EXPECT_FALSE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, TwoBundlesInARowAreJoinedByOneSeparator)
{
    KestBundle other(L"/o", L"/o/PackageContents.xml");
    addComponent(bundle, L"/b/a.cuix");
    addComponent(other, L"/o/a.cuix");
    CStdStr<wchar_t> list;

    bundle.loadCuix(list);
    other.loadCuix(list);

    EXPECT_EQ(list, L"/b/a.cuix;/o/a.cuix");
}

TEST_F(MenuGatheringTest, AMarkThatTheBundleHasAlreadyIsNotTakenAway)
{
    bundle.isLoad = true;
    addComponent(bundle, L"/b/a.cuix");
    addComponent(bundle, L"/b/app.krx");

    gather();

    EXPECT_TRUE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, ALegacyMenuIsConvertedOnceAndTheConvertedFileIsRegistered)
{
    host.convertedMenus = {{L"/b/a.mnu", L"/c/a.cuix"}, {L"/b/b.mns", L"/c/b.cuix"}, {L"/b/c.menuc", L"/c/c.cuix"}};
    for (const wchar_t* path : {L"/b/a.mnu", L"/b/b.mns", L"/b/c.menuc"}) {
        addComponent(bundle, path);
    }

    EXPECT_EQ(gather(), L"/c/a.cuix;/c/b.cuix;/c/c.cuix");
    EXPECT_TRUE(bundle.getIsLoad());
    EXPECT_EQ(host.calls, (Lines{"convertMenuToCuix(/b/a.mnu, ) -> true", "convertMenuToCuix(/b/b.mns, ) -> true",
                                 "convertMenuToCuix(/b/c.menuc, ) -> true"}))
        << "each with an output that is empty";
}

TEST_F(MenuGatheringTest, AFailedConversionIsSilentLeavesItsSeparatorAndTheBundleNotLoaded)
{
    addComponent(bundle, L"/b/a.cuix");
    addComponent(bundle, L"/b/b.mnu");
    addComponent(bundle, L"/b/c.cuix");

    EXPECT_EQ(gather(), L"/b/a.cuix;;/b/c.cuix");
    EXPECT_TRUE(hasAppended);
    EXPECT_FALSE(bundle.getIsLoad());
    EXPECT_EQ(host.calls, Lines{"convertMenuToCuix(/b/b.mnu, ) -> false"});
    EXPECT_EQ(problems(), "");
}

TEST_F(MenuGatheringTest, AConversionThatSucceedsWithoutAPathCountsAsFailed)
{
    host.convertedMenus = {{L"/b/b.mnu", L""}};
    addComponent(bundle, L"/b/a.cuix");
    addComponent(bundle, L"/b/b.mnu");

    EXPECT_EQ(gather(), L"/b/a.cuix;");
    EXPECT_FALSE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, AConversionThatFailsButGivesAPathCountsAsFailed)
{
    host.convertMenu = [](const std::wstring&, std::wstring& converted) {
        converted = L"/c/half.cuix";
        return false;
    };
    addComponent(bundle, L"/b/b.mnu");

    EXPECT_EQ(gather(L"before"), L"before");
    EXPECT_FALSE(hasAppended);
    EXPECT_FALSE(bundle.getIsLoad());
}

TEST_F(MenuGatheringTest, AnErrorOfTheConversionReachesTheCallerAndTheListStaysAsItWas)
{
    host.convertMenu = [](const std::wstring&, std::wstring&) -> bool { throw std::runtime_error("menu"); };
    addComponent(bundle, L"/b/a.cuix");
    addComponent(bundle, L"/b/b.mnu");
    CStdStr<wchar_t> list = L"before";

    EXPECT_THROW(bundle.loadCuix(list), std::runtime_error);
    EXPECT_EQ(list, L"before");
    EXPECT_FALSE(bundle.getIsLoad());
}

struct ExtensionCase
{
    std::wstring path;
    bool isMenu;
    bool isConverted;
};

class MenuExtensionTest : public MenuGatheringTest, public ::testing::WithParamInterface<ExtensionCase>
{
};

TEST_P(MenuExtensionTest, TheTextFromTheLastPointDecidesInAnyLetterCase)
{
    const auto& [path, isMenu, isConverted] = GetParam();
    host.convertMenu = [](const std::wstring& source, std::wstring& converted) {
        converted = source + L">";
        return true;
    };
    addComponent(bundle, path);

    EXPECT_EQ(gather(), !isMenu ? L"" : isConverted ? path + L">" : path);
    EXPECT_EQ(hasAppended, isMenu);
    EXPECT_EQ(bundle.getIsLoad(), isMenu);
    EXPECT_EQ(hostdouble::callsTo({"convertMenuToCuix"}).size(), isConverted ? 1U : 0U);
}

using namespace std::string_literals;

INSTANTIATE_TEST_SUITE_P(
    Paths, MenuExtensionTest,
    ::testing::Values(ExtensionCase{L"/b/m.cuix", true, false}, ExtensionCase{L"/b/m.CUIX", true, false},
                      ExtensionCase{L"/b/m.cUiX", true, false}, ExtensionCase{L"/b/m.Mnu", true, true},
                      ExtensionCase{L"/b/m.MNS", true, true}, ExtensionCase{L"/b/m.MenuC", true, true},
                      ExtensionCase{L"/b/m.cuix.bak", false, false}, ExtensionCase{L"/b/m.bak.cuix", true, false},
                      ExtensionCase{L".cuix", true, false}, ExtensionCase{L"/b.cuix/m", false, false},
                      ExtensionCase{L"/b/cuix", false, false}, ExtensionCase{L"cuix", false, false},
                      ExtensionCase{L"", false, false}, ExtensionCase{L"/b/m.", false, false},
                      ExtensionCase{L"/b/m.cui", false, false}, ExtensionCase{L"/b/m.cuixx", false, false},
                      ExtensionCase{L"/b/m.cuix ", false, false}, ExtensionCase{L"/b/m.mnus", false, false},
                      ExtensionCase{L"/b/m.menu", false, false},
                      // The Turkish letters and the long s are no letters of the classic locale.
                      ExtensionCase{L"/b/m.cu\u0130x", false, false}, ExtensionCase{L"/b/m.cu\u0131x", false, false},
                      ExtensionCase{L"/b/m.mn\u017F", false, false},
                      // The extension ends at the first zero code unit of the path; the path itself does not.
                      ExtensionCase{L"/b/m.cuix\0tail"s, true, false}, ExtensionCase{L"/b/m.mns\0t"s, true, true},
                      ExtensionCase{L"/b/m\0tail.cuix"s, false, false}));

} // namespace
