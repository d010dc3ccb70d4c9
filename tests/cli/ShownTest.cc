#include "cli/Shown.h"

#include <clocale>
#include <cstdio>
#include <gtest/gtest.h>

namespace {

class ShownTest : public ::testing::Test
{
protected:
    ShownTest() { std::setlocale(LC_ALL, "C.UTF-8"); }
    ~ShownTest() override { std::setlocale(LC_ALL, "C.UTF-8"); }

    static std::string printed(const std::string& text)
    {
        char* bytes = nullptr;
        std::size_t size = 0;
        std::FILE* stream = ::open_memstream(&bytes, &size);
        cli::print(stream, text);
        std::fclose(stream);
        std::string content(bytes, size);
        std::free(bytes);
        return content;
    }
};

TEST_F(ShownTest, EveryControlCharacterOfALineIsEscaped)
{
    EXPECT_EQ(cli::shownLine(std::string("\0\x1B[2J\a\r\n\t\x7F", 10)), "\\x00\\x1B[2J\\x07\\x0D\\x0A\\x09\\x7F");
    EXPECT_EQ(cli::shownLine("\xC2\x9B"
                             "31m"),
              "\\xC2\\x9B31m")
        << "the second set of control characters acts on terminals too";
}

TEST_F(ShownTest, CharactersThatTurnALineRoundOrEndItOrAreNotSeenAreEscaped)
{
    for (const char* unseen : {"\xD8\x9C", "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xA8", "\xE2\x80\xA9",
                               "\xE2\x80\xAA", "\xE2\x80\xAB", "\xE2\x80\xAC", "\xE2\x80\xAD", "\xE2\x80\xAE",
                               "\xE2\x81\xA6", "\xE2\x81\xA7", "\xE2\x81\xA8", "\xE2\x81\xA9", "\xEF\xBB\xBF"}) {
        std::string escaped;
        for (const char* byte = unseen; *byte != '\0'; ++byte) {
            char two[5];
            std::snprintf(two, sizeof(two), "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(*byte)));
            escaped += two;
        }
        EXPECT_EQ(cli::shownLine(std::string("a") + unseen + "b"), "a" + escaped + "b");
        EXPECT_EQ(cli::shownOutput(std::string("a") + unseen + "b"), "a" + escaped + "b");
    }
    const std::string beside =
        "\xD8\x9B \xE2\x80\x8D \xE2\x80\x90 \xE2\x80\xA7 \xE2\x80\xAF \xE2\x81\xA5 \xE2\x81\xAA \xEF\xBB\xBE";
    EXPECT_EQ(cli::shownLine(beside), beside) << "their neighbours stand in a line like letters";
}

TEST_F(ShownTest, OutputKeepsItsLineEndsAndTabs)
{
    EXPECT_EQ(cli::shownOutput("one\n\ttwo\r\x1B[0m"), "one\n\ttwo\\x0D\\x1B[0m");
}

TEST_F(ShownTest, CharactersBeyondAsciiStayAndBytesThatAreNoneAreEscaped)
{
    EXPECT_EQ(cli::shownLine("Zahnr\xC3\xA4"
                             "der \xE9\xBD\xBF \xF0\x9F\x94\xA9"),
              "Zahnr\xC3\xA4"
              "der \xE9\xBD\xBF \xF0\x9F\x94\xA9");
    EXPECT_EQ(cli::shownLine("\xFF \xC3 \xED\xA0\x80 \xC0\xAF"), "\\xFF \\xC3 \\xED\\xA0\\x80 \\xC0\\xAF");
}

TEST_F(ShownTest, PlainTextReplacesWhatIsNoCharacter)
{
    const wchar_t text[] = {
        L'a', 0x1B, static_cast<wchar_t>(0xDCFF), static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000),
        L'z', 0};
    EXPECT_EQ(cli::plainUtf8(text), "a\x1B\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDz");
    EXPECT_EQ(cli::plainUtf8FromLocale("\xC3\xA4\xFF"), "\xC3\xA4\xEF\xBF\xBD");
}

TEST_F(ShownTest, PrintingFollowsALocaleThatLacksCharacters)
{
    EXPECT_EQ(printed("r\xC3\xB6hre \xE9\xBD\xBF"), "r\xC3\xB6hre \xE9\xBD\xBF");
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(printed("r\xC3\xB6hre \xE9\xBD\xBF\n"), "r\\u{00F6}hre \\u{9F7F}\n");
}

} // namespace
