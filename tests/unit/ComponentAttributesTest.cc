// Where each attribute of a component goes and how it is converted. What a missing one does: ManifestBufferTest.
#include "tests/AutoloaderTest.h"
#include "tests/RecordText.h"
#include "tests/TestLocale.h"

namespace {

using hostdouble::Element;
using Lines = std::vector<std::string>;
using Attributes = std::vector<std::pair<std::wstring, std::wstring>>;

class ComponentAttributesTest : public AutoloaderTest
{
protected:
    /// A reader that stands on a start tag with these attributes.
    void standOn(const Attributes& attributes)
    {
        host.documents[bundle.xmlPath] = Element{L"Any", attributes};
        bundle.xmlReader.reset(kestCreateXmlFilerReader(bundle.xmlPath.c_str()));
        bundle.xmlReader->readNext();
        host.calls.clear();
    }

    /// The entry that is read from these attributes.
    KestComponentEntry readEntry(const Attributes& attributes)
    {
        standOn(attributes);
        KestComponentEntry entry;
        bundle.readXmlAttributeEntry(entry);
        return entry;
    }

    KestBundle bundle{L"/p/X.bundle", L"/p/X.bundle/PackageContents.xml"};
};

Lines linesOf(const KestComponentEntry& entry)
{
    Lines lines;
    recordtext::appendEntry(lines, entry);
    return lines;
}

TEST_F(ComponentAttributesTest, AnEntrysAttributesAreReadInOrderEachIntoItsField)
{
    const KestComponentEntry entry = readEntry({{L"LoadOnCommandInvocation", L"TRUE"},
                                                {L"LoadOnTARVIXStartup", L"FALSE"},
                                                {L"LoadCtrlFlag", L"3"},
                                                {L"PythonVersion", L"python3.8"},
                                                {L"AppName", L"App"},
                                                {L"ModuleName", L"./bin/app.krx"}});

    EXPECT_EQ(host.calls, (Lines{"attribute(ModuleName)", "attribute(AppName)", "attribute(LoadCtrlFlag)",
                                 "attribute(PythonVersion)", "attribute(LoadOnTARVIXStartup)",
                                 "attribute(LoadOnCommandInvocation)"}));
    EXPECT_EQ(linesOf(entry),
              Lines{"entry app=[App] module=[/p/X.bundle/bin/app.krx] python=[python3.8] ctrl=3 flags=4"});
}

TEST_F(ComponentAttributesTest, ValuesAreKeptAsTheyAreBlanksIncluded)
{
    EXPECT_EQ(
        linesOf(readEntry({{L"ModuleName", L"./ a//../b.krx "}, {L"AppName", L" App\t"}, {L"PythonVersion", L" 3 "}})),
        Lines{"entry app=[ App\t] module=[/p/X.bundle/ a//../b.krx ] python=[ 3 ] ctrl=1 flags=2"});
}

TEST_F(ComponentAttributesTest, AnEntryWithoutAModuleNameIsLeftAsItWasAndNothingMoreIsRead)
{
    const Attributes others = {{L"AppName", L"App"},
                               {L"LoadCtrlFlag", L"3"},
                               {L"PythonVersion", L"python3.8"},
                               {L"LoadOnTARVIXStartup", L"FALSE"},
                               {L"LoadOnCommandInvocation", L"TRUE"}};
    Attributes withEmptyName = others;
    withEmptyName.emplace_back(L"ModuleName", L"");
    for (const Attributes& attributes : {others, withEmptyName}) {
        standOn(attributes);
        KestComponentEntry entry;
        entry.loadFlags = 64;
        entry.loadCtrlFlag = 65;

        bundle.readXmlAttributeEntry(entry);

        EXPECT_EQ(host.calls, Lines{"attribute(ModuleName)"});
        EXPECT_EQ(linesOf(entry), Lines{"entry ctrl=65 flags=64"});
    }
}

struct ModuleNameCase
{
    std::wstring moduleName;
    std::wstring modulePath;
};

class ModuleNameTest : public ComponentAttributesTest, public ::testing::WithParamInterface<ModuleNameCase>
{
};

TEST_P(ModuleNameTest, OnlyANameBeginningWithDotAndSlashIsTakenAndTheRestIsReadInAnyCase)
{
    const KestComponentEntry entry = readEntry(
        {{L"ModuleName", GetParam().moduleName}, {L"AppName", L"App"}, {L"LoadOnCommandInvocation", L"TRUE"}});

    EXPECT_EQ(entry.moduleName, GetParam().modulePath);
    EXPECT_EQ(entry.appName, L"App");
    EXPECT_EQ(entry.loadCtrlFlag, 1);
    EXPECT_EQ(entry.loadFlags, 6);
}

INSTANTIATE_TEST_SUITE_P(Names, ModuleNameTest,
                         ::testing::Values(ModuleNameCase{L"./bin/app.krx", L"/p/X.bundle/bin/app.krx"},
                                           ModuleNameCase{L"./", L"/p/X.bundle/"},
                                           ModuleNameCase{L".//a", L"/p/X.bundle//a"},
                                           ModuleNameCase{L"./../a", L"/p/X.bundle/../a"},
                                           ModuleNameCase{L"bin/app.krx", L""}, ModuleNameCase{L".\\bin\\app.krx", L""},
                                           ModuleNameCase{L"/bin/app.krx", L""}, ModuleNameCase{L"../app.krx", L""},
                                           ModuleNameCase{L".", L""}, ModuleNameCase{L"/", L""},
                                           ModuleNameCase{L" ./app.krx", L""}, ModuleNameCase{L"a./app.krx", L""}));

TEST_F(ComponentAttributesTest, AModuleNameThatIsNotTakenLeavesTheEntrysPathAsItWas)
{
    standOn({{L"ModuleName", L"app.krx"}});
    KestComponentEntry entry;
    entry.moduleName = L"/p/X.bundle/earlier.krx";

    bundle.readXmlAttributeEntry(entry);

    EXPECT_EQ(entry.moduleName, L"/p/X.bundle/earlier.krx");
}

struct NumberCase
{
    std::wstring text;
    int number;
};

class LoadCtrlFlagTest : public ComponentAttributesTest, public ::testing::WithParamInterface<NumberCase>
{
};

TEST_P(LoadCtrlFlagTest, IsOneWhenEmptyAndElseTheNumberThatTheTextBeginsWith)
{
    EXPECT_EQ(readEntry({{L"ModuleName", L"./a"}, {L"AppName", L"9"}, {L"LoadCtrlFlag", GetParam().text}}).loadCtrlFlag,
              GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Numbers, LoadCtrlFlagTest,
                         ::testing::Values(NumberCase{L"", 1}, NumberCase{L"1", 1}, NumberCase{L"3", 3},
                                           NumberCase{L"0", 0}, NumberCase{L"abc", 0}, NumberCase{L"-2", -2},
                                           NumberCase{L" 1", 1}, NumberCase{L"1x", 1}, NumberCase{L"010", 10},
                                           NumberCase{L"0x1", 0}));

struct FlagCase
{
    const wchar_t* startup; ///< null: missing
    const wchar_t* command; ///< null: missing
    int flags;
};

class LoadFlagsTest : public ComponentAttributesTest, public ::testing::WithParamInterface<FlagCase>
{
};

TEST_P(LoadFlagsTest, StartupHoldsUnlessItReadsFalseAndCommandOnlyIfItReadsTrue)
{
    Attributes attributes = {{L"ModuleName", L"./a"}};
    if (GetParam().startup != nullptr) {
        attributes.emplace_back(L"LoadOnTARVIXStartup", GetParam().startup);
    }
    if (GetParam().command != nullptr) {
        attributes.emplace_back(L"LoadOnCommandInvocation", GetParam().command);
    }

    EXPECT_EQ(readEntry(attributes).loadFlags, GetParam().flags);
}

INSTANTIATE_TEST_SUITE_P(
    Words, LoadFlagsTest,
    ::testing::Values(FlagCase{nullptr, nullptr, 2}, FlagCase{L"", L"", 2}, FlagCase{L"false", nullptr, 0},
                      FlagCase{L"False", nullptr, 0}, FlagCase{L"FALSE", nullptr, 0}, FlagCase{L"no", nullptr, 2},
                      FlagCase{L"0", nullptr, 2}, FlagCase{L" FALSE", nullptr, 2}, FlagCase{L"FALSE ", nullptr, 2},
                      FlagCase{L"TRUE", nullptr, 2}, FlagCase{nullptr, L"true", 6}, FlagCase{nullptr, L"TRUE", 6},
                      FlagCase{nullptr, L"tRuE", 6}, FlagCase{nullptr, L"yes", 2}, FlagCase{nullptr, L"1", 2},
                      FlagCase{nullptr, L"TRUE ", 2}, FlagCase{nullptr, L"FALSE", 2}, FlagCase{L"FALSE", L"TRUE", 4},
                      FlagCase{L"FALSE", L"FALSE", 0}, FlagCase{L"TRUE", L"TRUE", 6}));

TEST_F(ComponentAttributesTest, TheWordsAreUpperCasedWithTheGlobalLocaleNotTheClassicOne)
{
    // The long s becomes an S in every locale but the classic one.
    const Attributes attributes = {{L"ModuleName", L"./a"}, {L"LoadOnTARVIXStartup", L"fal\u017Fe"}};

    EXPECT_EQ(readEntry(attributes).loadFlags, 0);
    const TestLocale classic("C");
    EXPECT_EQ(readEntry(attributes).loadFlags, 2);
}

TEST_F(ComponentAttributesTest, ThePythonVersionIsUtf8InEveryLocale)
{
    const std::wstring version = L"pyth\u00F6n\u20AC\U0001D11E";
    const std::string utf8 = "pyth\xC3\xB6n\xE2\x82\xAC\xF0\x9D\x84\x9E";
    for (const char* locale : {"C.UTF-8", "C", "de_DE.ISO-8859-1"}) {
        const TestLocale set(locale);

        EXPECT_EQ(readEntry({{L"ModuleName", L"./a"}, {L"PythonVersion", version}}).pythonVersion, utf8) << locale;
    }
}

} // namespace
