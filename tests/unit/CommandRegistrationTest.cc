// Registering the commands of components that load on invocation.
#include "tests/AutoloaderTest.h"
#include "tests/TestLocale.h"

namespace {

using Lines = std::vector<std::string>;
using Map = std::map<CStdStr<wchar_t>, CStdStr<wchar_t>>;

class CommandRegistrationTest : public AutoloaderTest
{
protected:
    KestBundle& bundle = addBundle(L"a");

    /// Adds a module whose one group declares the local names `names`.
    KestComponentEntry& addModule(const std::wstring& path, const std::vector<std::wstring>& names)
    {
        KestComponentEntry& entry = addComponent(bundle, path, KestComponentEntry::kLoadCommand);
        addGroup(entry, names);
        return entry;
    }

    static void addGroup(KestComponentEntry& entry, const std::vector<std::wstring>& names)
    {
        KestCommands& group = entry.commands.emplace_back();
        for (const std::wstring& name : names) {
            group.commands.push_back({L"global of " + name, name});
        }
    }

    Lines load()
    {
        bundle.load();
        EXPECT_TRUE(bundle.getIsLoad());
        EXPECT_EQ(problems(), "");
        return host.calls;
    }

    /// The name that `name` is registered under.
    std::wstring registered(const std::wstring& name)
    {
        bundle.components.clear();
        bundle.commandModuleMap.clear();
        addModule(L"/b/a.krx", {name});
        load();
        EXPECT_EQ(bundle.commandModuleMap.size(), 1U);
        return bundle.commandModuleMap.begin()->first;
    }
};

TEST_F(CommandRegistrationTest, EveryCommandOfEveryGroupIsRegisteredInOrderAndNothingIsLoaded)
{
    addGroup(addModule(L"/b/a.krx", {L"two", L"one"}), {L"three"});
    addModule(L"/b/b.dll", {L"four"});
    EXPECT_EQ(load(), (Lines{"addEntry(TWO, 3)", "addEntry(ONE, 3)", "addEntry(THREE, 3)", "addEntry(FOUR, 3)"}));
    EXPECT_EQ(bundle.commandModuleMap,
              (Map{{L"FOUR", L"/b/b.dll"}, {L"ONE", L"/b/a.krx"}, {L"THREE", L"/b/a.krx"}, {L"TWO", L"/b/a.krx"}}));
    EXPECT_EQ(bundle.pythonVersionMap, Map());
}

TEST_F(CommandRegistrationTest, TheStoredLocalNamesAreUpperCaseAfterwards)
{
    addModule(L"/b/a.krx", {L"drawLine", L"\u00e4"});
    load();
    const KestCommands& group = bundle.components[0].commands[0];
    EXPECT_EQ(group.commands[0].localName, L"DRAWLINE");
    EXPECT_EQ(group.commands[1].localName, L"\u00c4");
    EXPECT_EQ(group.commands[0].globalName, L"global of drawLine") << "the global name stays";
}

TEST_F(CommandRegistrationTest, OfTwoEntriesWithTheSameCommandTheFirstKeepsItAndBothAreAnnounced)
{
    addModule(L"/b/first.krx", {L"Line"});
    addModule(L"/b/second.lsp", {L"LINE"});
    EXPECT_EQ(load(), (Lines{"addEntry(LINE, 3)", "addEntry(LINE, 3)"}));
    EXPECT_EQ(bundle.commandModuleMap, (Map{{L"LINE", L"/b/first.krx"}}));
}

TEST_F(CommandRegistrationTest, AnEmptyLocalNameIsStoredButNotAnnounced)
{
    addModule(L"/b/a.krx", {L"", L"b"});
    EXPECT_EQ(load(), (Lines{"addEntry(B, 3)"}));
    EXPECT_EQ(bundle.commandModuleMap, (Map{{L"", L"/b/a.krx"}, {L"B", L"/b/a.krx"}}));
}

TEST_F(CommandRegistrationTest, ModulesOfEveryKindAreRegistered)
{
    addModule(L"/b/a.cuix", {L"menu"});
    addModule(L"", {L"nothing"});
    EXPECT_EQ(load(), (Lines{"addEntry(MENU, 3)", "addEntry(NOTHING, 3)"}));
    EXPECT_EQ(bundle.commandModuleMap, (Map{{L"MENU", L"/b/a.cuix"}, {L"NOTHING", L""}}));
}

TEST_F(CommandRegistrationTest, AModuleWithoutCommandsRegistersNothing)
{
    addComponent(bundle, L"/b/a.py", KestComponentEntry::kLoadCommand).pythonVersion = "python3.11";
    addModule(L"/b/b.py", {}).pythonVersion = "python3.11";
    EXPECT_EQ(load(), Lines());
    EXPECT_EQ(bundle.commandModuleMap, Map());
    EXPECT_EQ(bundle.pythonVersionMap, Map()) << "a version goes with a command";
}

// Python versions.

TEST_F(CommandRegistrationTest, AScriptsPythonVersionIsKeptByItsPath)
{
    addModule(L"/b/a.PY", {L"one", L"two"}).pythonVersion = "python3.11";
    load();
    EXPECT_EQ(bundle.pythonVersionMap, (Map{{L"/b/a.PY", L"python3.11"}}));
}

TEST_F(CommandRegistrationTest, AnEmptyPythonVersionIsKeptToo)
{
    addModule(L"/b/a.py", {L""});
    load();
    EXPECT_EQ(bundle.pythonVersionMap, (Map{{L"/b/a.py", L""}}));
}

TEST_F(CommandRegistrationTest, OfTwoEntriesOfOneScriptTheFirstVersionStays)
{
    addModule(L"/b/a.py", {L"one"}).pythonVersion = "python3.9";
    addModule(L"/b/a.py", {L"two"}).pythonVersion = "python3.11";
    load();
    EXPECT_EQ(bundle.pythonVersionMap, (Map{{L"/b/a.py", L"python3.9"}}));
}

TEST_F(CommandRegistrationTest, OnlyScriptsHaveAPythonVersion)
{
    addModule(L"/b/a.lsp", {L"one"}).pythonVersion = "python3.11";
    load();
    EXPECT_EQ(bundle.pythonVersionMap, Map());
}

TEST_F(CommandRegistrationTest, APythonVersionIsWidenedByTheGlobalLocale)
{
    addModule(L"/b/a.py", {L"one"}).pythonVersion = "\xC3\xA4";
    load();
    EXPECT_EQ(bundle.pythonVersionMap, (Map{{L"/b/a.py", L"\u00e4"}}));

    bundle.pythonVersionMap.clear();
    const TestLocale german("de_DE.ISO-8859-1");
    load();
    EXPECT_EQ(bundle.pythonVersionMap, (Map{{L"/b/a.py", L"\u00c3\u00a4"}}));
}

TEST_F(CommandRegistrationTest, RegisteringDoesNotTouchTheBundlesOwnPythonVersion)
{
    addModule(L"/b/a.py", {L"one"}).pythonVersion = "python3.11";
    load();
    EXPECT_EQ(bundle.pythonVersion, "");
    EXPECT_EQ(bundle.pythonLibName, "");
}

// Upper case by the global locale, character by character.

TEST_F(CommandRegistrationTest, LettersOfEveryScriptAreUpperCased)
{
    EXPECT_EQ(registered(L"line_2"), L"LINE_2");
    EXPECT_EQ(registered(L"\u00e4\u00e9\u044f"), L"\u00c4\u00c9\u042f");
    EXPECT_EQ(registered(L"\u03c3\u03c2"), L"\u03a3\u03a3") << "both small sigmas have one capital";
    EXPECT_EQ(registered(L"\U00010428"), L"\U00010400") << "a letter above 16 bits";
}

TEST_F(CommandRegistrationTest, ACharacterStaysOneCharacter)
{
    EXPECT_EQ(registered(L"stra\u00dfe"), L"STRA\u00dfE") << "never two letters";
    EXPECT_EQ(registered(L"\U0001F600x"), L"\U0001F600X");
    EXPECT_EQ(registered(L"\u4e2d\u6587"), L"\u4e2d\u6587");
    EXPECT_EQ(registered(L"\xDCE4x"), L"\xDCE4X") << "a byte that was no character";
}

TEST_F(CommandRegistrationTest, InTurkishTheSmallIKeepsItsDot)
{
    EXPECT_EQ(registered(L"i\u0131"), L"II") << "elsewhere it does not";
    const TestLocale turkish("tr_TR.UTF-8");
    EXPECT_EQ(registered(L"i\u0131"), L"\u0130I");
    EXPECT_EQ(registered(L"line"), L"L\u0130NE");
}

TEST_F(CommandRegistrationTest, InThePlainLocaleOnlyAsciiLettersAreUpperCased)
{
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(registered(L"a\u00e4"), L"A\u00e4");
    std::setlocale(LC_ALL, "C.UTF-8");
}

} // namespace
