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
