#include "tests/TestLocale.h"

#include "host/KsString.h"
#include "host/LocaleText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class KsStringTest : public testing::Test
{
protected:
    KsStringTest() { std::setlocale(LC_ALL, "C.UTF-8"); }
};

int sign(int number)
{
    return number == 0 ? 0 : number < 0 ? -1 : 1;
}

} // namespace

TEST_F(KsStringTest, NewStringIsEmpty)
{
    const KsString text;
    EXPECT_EQ(text.compare(L""), 0);
    EXPECT_STREQ(text.ansiPtr(), "");
    EXPECT_STREQ(text.utf8Ptr(), "");
}

TEST_F(KsStringTest, NarrowTextIsWidenedByTheGlobalLocale)
{
    EXPECT_EQ(KsString("gr\xC3\xB6\xC3\x9F"
                       "e")
                  .compare(L"größe"),
              0);
    const TestLocale latin("de_DE.ISO-8859-1");
    EXPECT_EQ(KsString("gr\xF6\xDF"
                       "e")
                  .compare(L"größe"),
              0);
}

TEST_F(KsStringTest, CompareOrdersByUnsignedCodeUnits)
{
    const KsString text("abc");
    EXPECT_EQ(text.compare(L"abc"), 0);
    EXPECT_EQ(sign(text.compare(L"abd")), -1);
    EXPECT_EQ(sign(text.compare(L"abb")), 1);
    EXPECT_EQ(sign(text.compare(L"ab")), 1);
    EXPECT_EQ(sign(text.compare(L"abcd")), -1);
    EXPECT_EQ(sign(text.compare(L"ABC")), 1);
    const wchar_t above[] = {static_cast<wchar_t>(0x80000000U), L'\0'};
    EXPECT_EQ(sign(text.compare(above)), -1);
}

TEST_F(KsStringTest, AssignReplacesTheText)
{
    KsString text("old");
    EXPECT_STREQ(text.utf8Ptr(), "old");
    EXPECT_STREQ(text.ansiPtr(), "old");
    EXPECT_EQ(&text.assign(L"new"), &text);
    EXPECT_EQ(text.compare(L"new"), 0);
    EXPECT_STREQ(text.utf8Ptr(), "new");
    EXPECT_STREQ(text.ansiPtr(), "new");
    text.assign(nullptr);
    EXPECT_EQ(text.compare(L""), 0);
    EXPECT_STREQ(text.utf8Ptr(), "");
}

TEST_F(KsStringTest, AnsiFormIsInTheEncodingOfTheGlobalLocale)
{
    KsString text;
    text.assign(L"größe");
    EXPECT_STREQ(text.ansiPtr(), "gr\xC3\xB6\xC3\x9F"
                                 "e");
    const TestLocale latin("de_DE.ISO-8859-1");
    text.assign(L"größe");
    EXPECT_STREQ(text.ansiPtr(), "gr\xF6\xDF"
                                 "e");
}

TEST_F(KsStringTest, Utf8FormIsUtf8InEveryLocale)
{
    KsString text;
    text.assign(L"aö水\U0001F600");
    for (const char* locale : {"C", "de_DE.ISO-8859-1", "zh_CN.GB18030", "C.UTF-8"}) {
        const TestLocale set(locale);
        KsString fresh;
        fresh.assign(L"aö水\U0001F600");
        EXPECT_STREQ(fresh.utf8Ptr(), "a\xC3\xB6\xE6\xB0\xB4\xF0\x9F\x98\x80") << locale;
    }
}

TEST_F(KsStringTest, BytesThatTheLocaleCannotDecodeComeBackInBothForms)
{
    const KsString text("a\xFF\xC3z");
    EXPECT_STREQ(text.ansiPtr(), "a\xFF\xC3z");
    EXPECT_STREQ(text.utf8Ptr(), "a\xFF\xC3z");
}

TEST_F(KsStringTest, FormsStayWhereTheyAreUntilTheTextChanges)
{
    KsString text;
    text.assign(L"größe and enough more to have memory of its own");
    const char* const ansi = text.ansiPtr();
    const char* const utf8 = text.utf8Ptr();
    const TestLocale latin("de_DE.ISO-8859-1");
    EXPECT_EQ(text.ansiPtr(), ansi);
    EXPECT_EQ(text.utf8Ptr(), utf8);
    EXPECT_STREQ(ansi, utf8);
}
