#include "ConfigurationFixture.h"

#include "host/LocaleText.h"

using standalone::ConfigurationWrite;
using namespace standalonetest;

namespace {

class ConfigurationTest : public ConfigurationFixture
{
protected:
    ConfigurationTest() { startHost(); }
};

TEST_F(ConfigurationTest, ReadingWhereNothingIsStoredFindsNothingAndMakesNoFile)
{
    {
        const Turn turn(store());
        EXPECT_EQ(statusOfGetting(kOurs), standalone::kKeyNotFound);
    }
    EXPECT_EQ(statusOfGetting(kOurs), standalone::kKeyNotFound);
    EXPECT_EQ(store().text(TarvixConfig::kMenus, kOurs), std::nullopt);
    EXPECT_EQ(namesIn(fileFolder()), std::vector<std::string>{});
    EXPECT_EQ(notices(), std::vector<std::string>{});
}

TEST_F(ConfigurationTest, EveryTextComesBackAsItWas)
{
    const auto unit = [](std::uint32_t code) { return std::wstring(1, static_cast<wchar_t>(code)); };
    const std::wstring texts[] = {
        L"",
        L";",
        L"/a b/m.cuix;;/c.cuix;",
        L"/\u00E9\u20AC\U0001F600'\"%ls\\\n.cuix",
        localetext::widen("/caf\xC3\xA9/\xE9\xFF\x80.cuix"),
        std::wstring(L"before\0after", 12),
        unit(0xD800) + unit(0xDFFF) + unit(0xDC80) + unit(0x110000) + unit(0x80000000) + unit(0xFFFFFFFF),
        std::wstring(300'000, L'\u20AC'),
    };
    for (const std::wstring& text : texts) {
        EXPECT_EQ(set(kOurs, text), Kest::eOk);
        EXPECT_TRUE(get(kOurs) == text);
        running.reset();
        startHost();
        EXPECT_TRUE(get(kOurs) == text) << "after a restart";
    }
}

TEST_F(ConfigurationTest, ATextBlockIsItsByteCountAndItsCodeUnits)
{
    set(kOurs, L"a\u20AC");
    set(kHosts, L"");
    const auto bytesOf = [](const wchar_t* key, std::size_t size) {
        KestVariant value;
        giveText(value, L"an older text is released");
        EXPECT_EQ(kestConfig()->getValue(TarvixConfig::kMenus, key, value), Kest::eOk);
        const auto* first = static_cast<const std::uint8_t*>(static_cast<const void*>(value.block));
        return std::vector<std::uint8_t>(first, first + size);
    };
    EXPECT_EQ(bytesOf(kOurs, 16), (std::vector<std::uint8_t>{16, 0, 0, 0, 'a', 0, 0, 0, 0xAC, 0x20, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytesOf(kHosts, 8), (std::vector<std::uint8_t>{8, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(ConfigurationTest, KeysAreKeptApartBySelectorAndByLetterCase)
{
    EXPECT_TRUE(store().store(4, L"key", L"four"));
    EXPECT_TRUE(store().store(5, L"key", L"five"));
    EXPECT_TRUE(store().store(4, L"KEY", L"upper"));
    EXPECT_EQ(store().text(4, L"key"), L"four");
    EXPECT_EQ(store().text(5, L"key"), L"five");
    EXPECT_EQ(store().text(4, L"KEY"), L"upper");
    EXPECT_EQ(store().text(6, L"key"), std::nullopt);
}

TEST_F(ConfigurationTest, TheJournalSaysWhatWasThereAndWhatIs)
{
    set(kOurs, L"a");
    set(kOurs, L"b");
    const auto noted = running->journal().only<ConfigurationWrite>();
    ASSERT_EQ(noted.size(), 2U);
    EXPECT_EQ(noted[0].key, kOurs);
    EXPECT_EQ(noted[0].before, L"");
    EXPECT_EQ(noted[0].after, L"a");
    EXPECT_EQ(noted[1].before, L"a");
    EXPECT_EQ(noted[1].after, L"b");
    EXPECT_EQ(writes(), (std::vector<std::string>{"stored", "stored"}));
}

TEST_F(ConfigurationTest, OnlyTextIsStored)
{
    KestVariant value;
    EXPECT_EQ(kestConfig()->setValue(TarvixConfig::kMenus, kOurs, value), Kest::eInvalidInput);
    giveText(value, L"a");
    value.type = 3;
    EXPECT_EQ(kestConfig()->setValue(TarvixConfig::kMenus, kOurs, value), Kest::eInvalidInput);
    EXPECT_EQ(kestConfig()->setValue(TarvixConfig::kMenus, nullptr, value), Kest::eInvalidInput);
    EXPECT_EQ(kestConfig()->getValue(TarvixConfig::kMenus, nullptr, value), Kest::eInvalidInput);
    EXPECT_EQ(writes(), (std::vector<std::string>{"refused: only text can be stored, and this is a value of kind 0",
                                                  "refused: only text can be stored, and this is a value of kind 3"}));
    EXPECT_EQ(namesIn(fileFolder()), std::vector<std::string>{});
}

TEST_F(ConfigurationTest, AMalformedBlockIsRefused)
{
    const auto setBlock = [](const std::vector<std::int32_t>& words) {
        KestVariant value;
        value.type = KestVariant::kText;
        value.block = std::malloc(words.size() * 4 + 4);
        std::memcpy(value.block, words.data(), words.size() * 4);
        return kestConfig()->setValue(TarvixConfig::kMenus, kOurs, value);
    };
    EXPECT_EQ(setBlock({4, 0}), Kest::eInvalidInput);
    EXPECT_EQ(setBlock({0, 0}), Kest::eInvalidInput);
    EXPECT_EQ(setBlock({-8, 0}), Kest::eInvalidInput);
    EXPECT_EQ(setBlock({7, 0}), Kest::eInvalidInput);
    EXPECT_EQ(setBlock({10, 'a', 0}), Kest::eInvalidInput);
    EXPECT_EQ(setBlock({12, 'a', 'b', 0}), Kest::eInvalidInput); // no zero where the count ends
    KestVariant empty;
    empty.type = KestVariant::kText;
    EXPECT_EQ(kestConfig()->setValue(TarvixConfig::kMenus, kOurs, empty), Kest::eInvalidInput);
    EXPECT_EQ(writes(), std::vector<std::string>(7, "refused: the block of the text is malformed"));
    EXPECT_EQ(setBlock({12, 'a', 0}), Kest::eOk);
    EXPECT_EQ(get(kOurs), L"a");
}

TEST_F(ConfigurationTest, StoringAnEqualTextLeavesTheFileAlone)
{
    storePair(L"a", L"h;a");
    const std::string before = fileContent(file());
    storePair(L"a", L"h;a");
    EXPECT_TRUE(fileContent(file()) == before);
    EXPECT_EQ(writes(), std::vector<std::string>(4, "stored"));
}

TEST_F(ConfigurationTest, TheFileIsMadeAnewWhenItWasTakenAway)
{
    storePair(L"a", L"h;a");
    std::filesystem::remove(file());
    EXPECT_EQ(pair(), Pair(L"(none)", L"(none)"));
    storePair(L"b", L"h;b");
    EXPECT_EQ(pair(), Pair(L"b", L"h;b"));
}

TEST_F(ConfigurationTest, TheFolderIsMadeAnewWhenItWasTakenAway)
{
    std::filesystem::remove_all(fileFolder());
    storePair(L"a", L"h;a");
    EXPECT_EQ(pair(), Pair(L"a", L"h;a"));
}

TEST_F(ConfigurationTest, NoFileIsLeftBesideTheConfiguration)
{
    storePair(L"a", L"h;a");
    EXPECT_EQ(namesIn(fileFolder()), std::vector<std::string>{"kest.db"});
}

TEST_F(ConfigurationTest, AnEmptyFileIsAnEmptyConfiguration)
{
    writeFile(file(), "");
    EXPECT_EQ(statusOfGetting(kOurs), standalone::kKeyNotFound);
    storePair(L"a", L"h;a");
    EXPECT_EQ(pair(), Pair(L"a", L"h;a"));
    EXPECT_EQ(notices(), std::vector<std::string>{});
}

} // namespace
