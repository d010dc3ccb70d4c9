// Keeping the two stored lists in step. Against a literal telling of the rules: MenuRegistrationModelTest.
#include "tests/AutoloaderTest.h"
#include "tests/unit/MenuKeys.h"

#include <optional>

namespace {

using Lines = std::vector<std::string>;

class MenuRegistrationTest : public AutoloaderTest
{
protected:
    void store(const std::wstring& hostList, const std::wstring& previousList)
    {
        host.configuration = {{kHostKey, {hostList}}, {kBundleKey, {previousList}}};
    }

    std::wstring hostList() { return host.configuration[kHostKey].text; }
    std::wstring bundleList() { return host.configuration[kBundleKey].text; }

    static Lines stores() { return hostdouble::callsTo({"setValue"}); }
};

struct ListCase
{
    const char* name;
    std::wstring hostBefore;
    std::wstring previous;
    std::wstring added;
    std::optional<std::wstring> hostWritten; ///< nullopt: nothing is written
    std::wstring previousWritten;
};

void PrintTo(const ListCase& one, std::ostream* out)
{
    *out << one.name;
}

class MenuListTest : public MenuRegistrationTest, public ::testing::WithParamInterface<ListCase>
{
};

TEST_P(MenuListTest, TheBundlesListIsWrittenFirstAndThenTheHostsList)
{
    const ListCase& one = GetParam();
    store(one.hostBefore, one.previous);

    manager().writeCuixToConfig(one.added);

    Lines calls = {"kestConfig()", "getValue(4, CUIX/LoadedBundleCuix) -> " + hostdouble::utf8(one.previous)};
    if (one.hostWritten) {
        calls.push_back("setValue(4, CUIX/LoadedBundleCuix, " + hostdouble::utf8(one.previousWritten) + ")");
        calls.push_back("getValue(4, CUIX/LoadedCuix) -> " + hostdouble::utf8(one.hostBefore));
        calls.push_back("setValue(4, CUIX/LoadedCuix, " + hostdouble::utf8(*one.hostWritten) + ")");
    }
    EXPECT_EQ(host.calls, calls);
    EXPECT_EQ(hostList(), one.hostWritten.value_or(one.hostBefore));
    EXPECT_EQ(bundleList(), one.previousWritten);
    EXPECT_EQ(problems(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Lists, MenuListTest,
    ::testing::Values(
        ListCase{"FirstRun", L"h.cuix", L"", L"p/a.cuix;p/b.cuix", L"h.cuix;p/a.cuix;p/b.cuix", L"p/a.cuix;p/b.cuix"},
        ListCase{"SameAgain", L"h.cuix;p/a.cuix;p/b.cuix", L"p/a.cuix;p/b.cuix", L"p/a.cuix;p/b.cuix",
                 L"h.cuix;p/a.cuix;p/b.cuix", L"p/a.cuix;p/b.cuix"},
        ListCase{"OneUninstalled", L"h.cuix;p/a.cuix;p/b.cuix", L"p/a.cuix;p/b.cuix", L"p/a.cuix", L"h.cuix;p/a.cuix",
                 L"p/a.cuix"},
        ListCase{"AllUninstalled", L"h.cuix;p/a.cuix", L"p/a.cuix", L"", L"h.cuix", L""},
        ListCase{"FirstRunOfAnEmptyHost", L"", L"", L"p/a.cuix", L";p/a.cuix", L"p/a.cuix"},
        ListCase{"SecondRunOfAnEmptyHost", L";p/a.cuix", L"p/a.cuix", L"p/a.cuix", L";p/a.cuix", L"p/a.cuix"},
        ListCase{"FirstRunWithATrailingSeparator", L"h.cuix;", L"", L"p/a.cuix", L"h.cuix;p/a.cuix", L"p/a.cuix"},
        ListCase{"NothingBeforeAndNothingNew", L"h.cuix", L"", L"", std::nullopt, L""},
        ListCase{"FirstRunWithAnEmptyEntryRunsTheHostsEntriesTogether", L"h.cuix;;i.cuix;j.cuix", L"", L"p", //
                 L"h.cuixi.cuixj.cuix;p", L"p"},
        ListCase{"FirstRunWithALeadingSeparatorAloneRemovesNothing", L";h.cuix;i.cuix", L"", L"p", L";h.cuix;i.cuix;p",
                 L"p"},
        ListCase{"AnEntryAtIndexZeroLeavesTheSeparatorBehindIt", L"p/a;h;i", L"p/a", L"p/b", L";h;i;p/b", L"p/b"},
        ListCase{"AnEntryAtIndexZeroIsAlsoCutOutOfALongerOne", L"/b/m.cuix;/a/b/m.cuix", L"/b/m.cuix", L"p", L";/a;p",
                 L"p"},
        ListCase{"AnEntryFurtherBackIsCutOutOfALongerOneThatBeginsWithIt", L"h;/b/m;/b/mm", L"/b/m", L"", L"hm", L""},
        ListCase{"AnEntryThatTheHostHasTwiceIsTakenOutWholly", L"h;p;i;p", L"p", L"p", L"h;i;p", L"p"},
        ListCase{"AnEntryAtIndexZeroAndFurtherBackIsTakenOutForEach", L"p;h;p", L"p", L"", L";h;", L""},
        ListCase{"AnOldEntryThatTheHostNoLongerHasChangesNothing", L"h;i", L"p", L"", L"h;i", L""},
        ListCase{"AnOldEntryTwiceIsTakenOutOnce", L"h;p;i", L"p;p", L"", L"h;i", L""},
        ListCase{"EntriesAreComparedWithCase", L"h;P", L"p", L"", L"h;P", L""},
        ListCase{"EntriesAreComparedWithBlanks", L"h; p", L"p", L"", L"h; p", L""},
        ListCase{"APartOfAnEntryIsNoEntry", L"h;p/a.cuix", L"p/a", L"", L"h;p/a.cuix", L""},
        ListCase{"ARemovalThatBringsAboutAnotherAtItsPositionRemovesThatToo", L"h;p;p;i", L"p", L"", L"h;i", L""},
        ListCase{"ARemovalThatBringsAboutAnotherBeforeItsPositionLeavesThat", L"h;;pp;p", L"p", L"", L"h;p", L""},
        ListCase{"AnEntryAtIndexZeroMayTakeTheWholeListAway", L"p", L"p", L"q", L";q", L"q"},
        ListCase{"AnEmptyEntryOfThePreviousListTakesOutEverySeparatorToo", L"h;;i;p/a", L"p/a;", L"", L"hi", L""},
        ListCase{"TheHostsEntriesAreThoseFromBeforeTheFirstRemoval", L"h;;i", L";h", L"", L"i", L""},
        ListCase{"TheHostsOwnEntryThatWasOnThePreviousListGoes", L"h;i", L"i", L"", L"h", L""},
        ListCase{"DuplicatesInTheNewListStay", L"h", L"", L"p;p", L"h;p;p", L"p;p"},
        ListCase{"EmptyEntriesOfTheNewListStay", L"h", L"", L"p;;q;", L"h;p;;q;", L"p;;q;"},
        ListCase{"AFormatInAPathIsOnlyText", L"h;%s%n", L"%s%n", L"%ls", L"h;%ls", L"%ls"},
        ListCase{"OtherLettersArePlainText", L"\u00E9\U0001D11E;\u00FC", L"\u00FC", L"\u4E2D",
                 L"\u00E9\U0001D11E;\u4E2D", L"\u4E2D"}),
    [](const auto& one) { return std::string(one.param.name); });

TEST_F(MenuRegistrationTest, RunningTwiceWithTheSameMenusLeavesBothValuesUnchangedButWritesThem)
{
    store(L"h", L"");
    manager().writeCuixToConfig(L"p/a;p/b");
    const std::wstring first = hostList();
    host.calls.clear();

    manager().writeCuixToConfig(L"p/a;p/b");

    EXPECT_EQ(hostList(), first);
    EXPECT_EQ(bundleList(), L"p/a;p/b");
    EXPECT_EQ(stores(),
              (Lines{"setValue(4, CUIX/LoadedBundleCuix, p/a;p/b)", "setValue(4, CUIX/LoadedCuix, h;p/a;p/b)"}));
}

TEST_F(MenuRegistrationTest, APathWithASeparatorIsStoredAsItIsAndComesBackAsTwoEntries)
{
    store(L"h;b", L"");
    manager().writeCuixToConfig(L"/a;b/m");
    EXPECT_EQ(bundleList(), L"/a;b/m");
    EXPECT_EQ(hostList(), L"h;b;/a;b/m");

    manager().writeCuixToConfig(L"");

    EXPECT_EQ(hostList(), L"h;b") << "the two entries are taken out one by one";
}

TEST_F(MenuRegistrationTest, BothListsAreStoredAsTextBlocks)
{
    manager().writeCuixToConfig(L"p");

    const auto bytes = [](std::int32_t count, std::wstring_view text) {
        std::string block(reinterpret_cast<const char*>(&count), 4);
        block.append(reinterpret_cast<const char*>(text.data()), text.size() * 4);
        return block.append(4, '\0');
    };
    EXPECT_EQ(host.storedBlocks[kBundleKey], bytes(12, L"p"));
    EXPECT_EQ(host.storedBlocks[kHostKey], bytes(16, L";p"));
    EXPECT_EQ(host.configuration[kBundleKey].type, 5);
    EXPECT_EQ(host.configuration[kHostKey].type, 5);

    manager().writeCuixToConfig(L"");

    EXPECT_EQ(host.storedBlocks[kBundleKey], bytes(8, L""));
    EXPECT_EQ(host.storedBlocks[kHostKey], bytes(8, L""));
}

TEST_F(MenuRegistrationTest, WithoutAStoreNothingIsReadOrWritten)
{
    host.hasConfiguration = false;

    manager().writeCuixToConfig(L"p");

    EXPECT_EQ(host.calls, Lines{"kestConfig()"});
    EXPECT_EQ(problems(), "");
}

TEST_F(MenuRegistrationTest, AValueThatCannotBeReadCountsAsEmptyEvenWhenTheStoreFilledIt)
{
    for (auto* keys : {&host.unreadableKeys, &host.misreadKeys}) {
        store(L"h;p", L"p");
        *keys = {kBundleKey};
        manager().writeCuixToConfig(L"q");
        EXPECT_EQ(hostList(), L"h;p;q") << "nothing is known of the last run";
        EXPECT_EQ(bundleList(), L"q");

        store(L"h;p", L"p");
        *keys = {kHostKey};
        manager().writeCuixToConfig(L"q");
        EXPECT_EQ(hostList(), L";q");
        EXPECT_EQ(bundleList(), L"q");
        keys->clear();
    }
}

TEST_F(MenuRegistrationTest, AnUnreadablePreviousListAndNoNewOneWriteNothing)
{
    store(L"h;p", L"p");
    host.unreadableKeys = {kBundleKey};

    manager().writeCuixToConfig(L"");

    EXPECT_EQ(stores(), Lines());
}

TEST_F(MenuRegistrationTest, AValueOfAnotherKindCountsAsEmpty)
{
    store(L"h;p", L"p");
    host.configuration[kBundleKey].type = 3;
    host.configuration[kHostKey].type = 2;

    manager().writeCuixToConfig(L"q");

    EXPECT_EQ(hostList(), L";q");
    EXPECT_EQ(bundleList(), L"q");
    EXPECT_EQ(host.configuration[kHostKey].type, 5);
}

TEST_F(MenuRegistrationTest, AListThatCannotBeStoredIsIgnoredAndTheOtherIsStored)
{
    store(L"h;p", L"p");
    host.unstorableKeys = {kBundleKey};
    manager().writeCuixToConfig(L"q");
    EXPECT_EQ(bundleList(), L"p");
    EXPECT_EQ(hostList(), L"h;q");

    store(L"h;p", L"p");
    host.unstorableKeys = {kHostKey};
    manager().writeCuixToConfig(L"q");
    EXPECT_EQ(bundleList(), L"q");
    EXPECT_EQ(hostList(), L"h;p");
    EXPECT_EQ(problems(), "");
}

} // namespace
