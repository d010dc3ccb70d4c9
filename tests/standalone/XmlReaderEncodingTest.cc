#include "tests/standalone/XmlReaderFixture.h"

#include <bit>

using namespace standalonetest;

namespace {

class XmlReaderEncodingTest : public XmlReaderFixture
{
protected:
    /// `text` in UTF-16, `first` being the index of the byte that comes first in each unit (0: the low one).
    static std::string utf16(const std::u16string& text, int first)
    {
        std::string bytes;
        for (const char16_t unit : text) {
            const char low = std::bit_cast<char>(static_cast<unsigned char>(unit & 0xFF));
            const char high = std::bit_cast<char>(static_cast<unsigned char>(unit >> 8));
            bytes += first == 0 ? low : high;
            bytes += first == 0 ? high : low;
        }
        return bytes;
    }

    static std::string declared(const std::string& encoding)
    {
        return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>";
    }
};

} // namespace

TEST_F(XmlReaderEncodingTest, Utf8WithAndWithoutMarkAndDeclaration)
{
    const std::string document = "<a x='größe'/>";
    for (const std::string before : {"", "\xEF\xBB\xBF"}) {
        EXPECT_EQ(told(before + document, {L"x"}), "<a x=[größe]></a> ok");
        EXPECT_EQ(told(before + declared("UTF-8") + document, {L"x"}), "<a x=[größe]></a> ok");
    }
}

TEST_F(XmlReaderEncodingTest, Utf16InBothOrders)
{
    const std::u16string document = u"\uFEFF<?xml version='1.0' encoding='UTF-16'?><größe x='水\U0001F600'/>";
    for (const int order : {0, 1}) {
        EXPECT_EQ(told(utf16(document, order), {L"x"}), "<größe x=[水\xF0\x9F\x98\x80]></größe> ok");
        EXPECT_EQ(told(utf16(u"\uFEFF<a x='水'/>", order), {L"x"}), "<a x=[水]></a> ok");
    }
}

TEST_F(XmlReaderEncodingTest, Utf16WithoutAMarkIsKnownByItsDeclaration)
{
    EXPECT_EQ(told(utf16(u"<?xml version='1.0' encoding='UTF-16LE'?><a x='水'/>", 0), {L"x"}), "<a x=[水]></a> ok");
    EXPECT_EQ(told(utf16(u"<?xml version='1.0' encoding='UTF-16BE'?><a x='水'/>", 1), {L"x"}), "<a x=[水]></a> ok");
}

TEST_F(XmlReaderEncodingTest, Latin1)
{
    EXPECT_EQ(told(declared("ISO-8859-1") + "<gr\xF6\xDF"
                                            "e x='\xE4'/>",
                   {L"x"}),
              "<größe x=[ä]></größe> ok");
}

TEST_F(XmlReaderEncodingTest, Gb18030)
{
    EXPECT_EQ(told(declared("GB18030") + "<a x='\xCB\xAE\x94\x39\xFC\x36'/>", {L"x"}),
              "<a x=[水\xF0\x9F\x98\x80]></a> ok");
}

TEST_F(XmlReaderEncodingTest, ShiftJis)
{
    EXPECT_EQ(told(declared("Shift_JIS") + "<a x='\x90\x85\xB1'/>", {L"x"}), "<a x=[水ｱ]></a> ok");
}

TEST_F(XmlReaderEncodingTest, WhatElseTheSystemConverts)
{
    EXPECT_EQ(told(declared("windows-1252") + "<a x='\x80'/>", {L"x"}), "<a x=[€]></a> ok");
    EXPECT_EQ(told(declared("EUC-JP") + "<a x='\xBF\xE5'/>", {L"x"}), "<a x=[水]></a> ok");
    EXPECT_EQ(told(declared("KOI8-R") + "<a x='\xD7'/>", {L"x"}), "<a x=[в]></a> ok");
}

TEST_F(XmlReaderEncodingTest, EncodingOfOneDocumentIsForgottenForTheNext)
{
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(told(utf16(u"\uFEFF<a x='水'/>", 0), {L"x"}), "<a x=[水]></a> ok");
        EXPECT_EQ(told(declared("ISO-8859-1") + "<a x='\xE4'/>", {L"x"}), "<a x=[ä]></a> ok");
        EXPECT_EQ(told("<a x='ä'/>", {L"x"}), "<a x=[ä]></a> ok");
        EXPECT_EQ(told("<a x='\xE4'/>", {L"x"}), " malformed");
    }
}

TEST_F(XmlReaderEncodingTest, UnknownEncodingIsAFault)
{
    EXPECT_EQ(told(declared("nonsense") + "<a/>"), " malformed");
    EXPECT_EQ(lastRead().problem, "Unsupported encoding nonsense");
    EXPECT_EQ(lastRead().line, 1);
}

TEST_F(XmlReaderEncodingTest, BytesThatTheEncodingDoesNotKnowAreAFault)
{
    for (const std::string bytes : {"\x81 ", "\xFF\xFF", "\x80"}) {
        const std::string outcome = told(declared("Shift_JIS") + "<a><b x='" + bytes + "'/></a>");
        EXPECT_EQ(outcome.substr(outcome.rfind(' ')), " malformed") << outcome;
        EXPECT_NE(lastRead().problem, "");
    }
}

TEST_F(XmlReaderEncodingTest, FaultInALaterPieceOfALargeDocumentLosesNoToken)
{
    const std::string text = declared("GB18030") + "<a><b/>" + std::string(400 * 1000, 'x');
    EXPECT_EQ(told(text + "\xFF\xFF</a>"), "<a><b></b> malformed");
}

TEST_F(XmlReaderEncodingTest, CharacterCutOffByTheEndOfTheFileIsAFault)
{
    EXPECT_EQ(told(utf16(u"\uFEFF<a/>", 0) + "\n"), "<a></a> malformed");
    EXPECT_EQ(told(declared("Shift_JIS") + "<a/>\x81"), "<a></a> malformed");
    EXPECT_EQ(told(declared("GB18030") + "<a/>\x94\x39"), "<a></a> malformed");
}

TEST_F(XmlReaderEncodingTest, LargeDocumentsAreDecodedAcrossTheirPieces)
{
    std::u16string text;
    std::string shiftJis;
    std::string expected;
    for (int i = 0; i < 40000; ++i) {
        const std::string number = std::to_string(i);
        const std::u16string wide(number.begin(), number.end());
        text += u"<b x='水" + wide + u"'/>";
        shiftJis += "<b x='\x90\x85" + number + "'/>";
        expected += "<b x=[水" + number + "]></b>";
    }
    for (const int order : {0, 1}) {
        EXPECT_TRUE(told(utf16(u"\uFEFF<a>" + text + u"</a>", order), {L"x"}) == "<a x=[]>" + expected + "</a> ok");
    }
    EXPECT_TRUE(told(declared("Shift_JIS") + "<a>" + shiftJis + "</a>", {L"x"}) == "<a x=[]>" + expected + "</a> ok");
}
