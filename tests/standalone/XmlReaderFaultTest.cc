#include "tests/standalone/XmlReaderFixture.h"

#include <cstdio>
#include <sys/stat.h>

using namespace standalonetest;

namespace {

class XmlReaderFaultTest : public XmlReaderFixture
{
protected:
    /// `levels` elements, one inside the other.
    static std::string nested(int levels)
    {
        std::string document;
        for (int i = 0; i < levels; ++i) {
            document += "<a>";
        }
        for (int i = 0; i < levels; ++i) {
            document += "</a>";
        }
        return document;
    }

    /// What `act` makes the process print to its standard error stream.
    template <typename Act>
    std::string printedDuring(const Act& act)
    {
        testing::internal::CaptureStderr();
        act();
        std::fflush(stderr);
        return testing::internal::GetCapturedStderr();
    }
};

} // namespace

TEST_F(XmlReaderFaultTest, TokensBeforeTheFaultAreDelivered)
{
    EXPECT_EQ(told("<a>\n  <b x='1'/>\n  <c></d>\n</a>", {L"x"}), "<a x=[]><b x=[1]></b><c x=[]> malformed");
    EXPECT_EQ(lastFault(), "3:10 Opening and ending tag mismatch: c line 3 and d");
}

TEST_F(XmlReaderFaultTest, FaultIsTheFirstOfSeveral)
{
    told("<a>\n<b x=1/>\n<c y=2/></d>");
    EXPECT_EQ(lastFault(), "2:6 AttValue: \" or ' expected");
}

TEST_F(XmlReaderFaultTest, TagWithTheFaultGivesNoToken)
{
    EXPECT_EQ(told("<a><b x='1' x='2'/></a>"), "<a> malformed");
    EXPECT_EQ(lastFault(), "1:18 Attribute x redefined");
}

TEST_F(XmlReaderFaultTest, DocumentsThatAreNotWellFormedAreRefused)
{
    const std::vector<std::string> documents = {
        "",
        " ",
        "\n",
        "x",
        "<",
        "<a",
        "<a>",
        "<a></a",
        "<a/>x",
        "<a/>&amp;",
        "<a/><b/>",
        "x<a/>",
        " <?xml version='1.0'?><a/>",
        "<?xml version='1.0'?>",
        "<?xml?><a/>",
        "<a><!-- -- --></a>",
        "<a>]]></a>",
        "<a x='<'/>",
        "<a x='&'/>",
        "<a x='&unknown;'/>",
        "<a>&unknown;</a>",
        "<a x='&#0;'/>",
        "<a x='&#xFFFE;'/>",
        "<a x='&#xD800;'/>",
        "<a x='1'y='2'/>",
        "<1/>",
        "<a><?xml version='1.0'?></a>",
        "<a><!DOCTYPE a></a>",
        "<a>\x01</a>",
        "<a x='\x01'/>",
        std::string("<a>\0</a>", 8),
        std::string("<a/>\0", 5),
        std::string("<a x='1\0'/>", 11),
        std::string("\0<a/>", 5),
        "<a>\xFF</a>",
        "<a x='\xC3'/>",
        "<a x='\xED\xA0\x80'/>",
        "<a x='\xC0\xAF'/>",
        "<a/>\xC3",
        "<!DOCTYPE a [<!ENTITY e '</a><a>'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e</a>",
        "<!DOCTYPE a [<!ENTITY e '<b>'>]><a x='&e;'/>",
        "<!DOCTYPE a [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><a x='&a;'/>",
        "<!DOCTYPE a [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><a>&a;</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM 'elsewhere'>]><a x='&e;'/>",
        "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'elsewhere' NDATA n>]><a>&e;</a>",
        "<!DOCTYPE a [<!ELEMENT a ANY>",
        "<!DOCTYPE a ><!DOCTYPE a ><a/>",
    };
    for (const std::string& document : documents) {
        const std::string outcome = told(document);
        EXPECT_EQ(outcome.substr(outcome.rfind(' ')), " malformed") << document;
        EXPECT_TRUE(lastRead().malformed) << document;
        EXPECT_NE(lastRead().problem, "") << document;
        EXPECT_EQ(told("<after x='&gt;'/>", {L"x"}), "<after x=[>]></after> ok") << "after " << document;
    }
}

TEST_F(XmlReaderFaultTest, NothingIsPrintedWhateverIsWrong)
{
    const std::string printed = printedDuring([&] {
        told("<a>");
        told("<a><p:b/></a>");
        told("<?xml version='1.0' encoding='nonsense'?><a/>");
        told("<?xml version='1.0' encoding='Shift_JIS'?><a x='\x81 \xFF'/>");
        told("<?xml version='1.0' encoding='GB18030'?><a x='" + std::string(10000, 'x') + "\x81 \xFF'/>");
        told("<?xml version='1.0' encoding='GB18030'?><a>" + std::string(400 * 1000, 'x') + "\xFF\xFF</a>");
        told(std::string("\xFF\xFE<\0a\0/", 7)); // UTF-16, cut within a character
        told("<!DOCTYPE a SYSTEM 'http://127.0.0.1:9/a.dtd'><a>&e;</a>");
        told("<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///nowhere'>]><a>&e;</a>");
    });
    EXPECT_EQ(printed, "");
}

TEST_F(XmlReaderFaultTest, ExternalEntitiesAreNotOpened)
{
    writeFile(folder / "secret.txt", "secret");
    writeFile(folder / "broken.ent", "<broken>");
    // A file that was read would show: its text, or its fault.
    EXPECT_EQ(told("<!DOCTYPE a [<!ENTITY e SYSTEM 'file://" + folder / "broken.ent" + "'>]><a>&e;<b/></a>"),
              "<a><b></b></a> ok");
    EXPECT_EQ(told("<!DOCTYPE a [<!ENTITY e SYSTEM 'file://" + folder / "secret.txt" + "'>]><a x='&e;'/>", {L"x"}),
              " malformed");
}

TEST_F(XmlReaderFaultTest, DocumentTypeOutsideTheDocumentIsNotOpened)
{
    const std::string path = folder / "outside.dtd";
    writeFile(path, "<!ATTLIST a x CDATA 'from outside'><!ENTITY e 'from outside'>");
    EXPECT_EQ(told("<!DOCTYPE a SYSTEM 'file://" + path + "'><a/>", {L"x"}), "<a x=[]></a> ok");
    EXPECT_EQ(told("<!DOCTYPE a SYSTEM '" + path + "'><a/>", {L"x"}), "<a x=[]></a> ok");
    EXPECT_EQ(told("<!DOCTYPE a SYSTEM 'outside.dtd'><a/>", {L"x"}), "<a x=[]></a> ok");
    EXPECT_EQ(told("<!DOCTYPE a [<!ENTITY % all SYSTEM 'file://" + path + "'> %all;]><a/>", {L"x"}), "<a x=[]></a> ok");
    EXPECT_EQ(told("<!DOCTYPE a SYSTEM 'file://" + path + "'><a>&e;</a>"), "<a></a> ok");
}

TEST_F(XmlReaderFaultTest, PipeNamedAsAnEntityDoesNotHoldTheReader)
{
    const std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(told("<!DOCTYPE a SYSTEM '" + pipe + "' [<!ENTITY % p SYSTEM '" + pipe + "'> %p; <!ENTITY e SYSTEM '" +
                   pipe + "'>]><a>&e;</a>"),
              "<a></a> ok");
}

TEST_F(XmlReaderFaultTest, ElementsNestTwoHundredAndFiftySixLevelsAndNoMore)
{
    EXPECT_EQ(told(nested(256)), nested(256) + " ok");
    const std::string deeper = told(nested(257));
    EXPECT_EQ(deeper, nested(256).substr(0, 256 * 3) + " malformed");
    EXPECT_EQ(lastFault(), "1:771 The elements are nested deeper than 256 levels");
}

TEST_F(XmlReaderFaultTest, EntitiesThatGrowByNestingAreRefused)
{
    std::string document = "<!DOCTYPE a [<!ENTITY e0 'ten bytes.'>";
    for (int level = 1; level < 12; ++level) {
        document += "<!ENTITY e" + std::to_string(level) + " '";
        for (int i = 0; i < 10; ++i) {
            document += "&e" + std::to_string(level - 1) + ";";
        }
        document += "'>";
    }
    EXPECT_EQ(told(document + "]><a><b/>&e11;<c/></a>"), "<a><b></b> malformed");
    EXPECT_EQ(told(document + "]><a><b x='&e11;'/></a>"), "<a> malformed");
}

TEST_F(XmlReaderFaultTest, EntitiesThatGrowByRepetitionAreRefused)
{
    std::string document = "<!DOCTYPE a [<!ENTITY e '" + std::string(100 * 1000, 'x') + "'>]><a>";
    for (int i = 0; i < 1000; ++i) {
        document += "<b x='&e;'/>";
    }
    const std::string outcome = told(document + "</a>");
    EXPECT_EQ(outcome.substr(outcome.rfind(' ')), " malformed");
    EXPECT_EQ(lastRead().problem, "The entities stand for more than 16 MB of text");
    EXPECT_EQ(outcome.size(), 3 + 167 * 7 + 10U) << "16 MB hold the text 167 times";
}

TEST_F(XmlReaderFaultTest, TooManyNamesAreAFaultOfThatDocumentAlone)
{
    std::string document = "<a>";
    for (int i = 0; document.size() < 24 * 1024 * 1024; ++i) {
        document += "<" + std::string(200, 'n') + std::to_string(i) + "/>";
    }
    const std::string outcome = told(document + "</a>");
    EXPECT_EQ(outcome.substr(outcome.rfind(' ')), " malformed");
    EXPECT_NE(lastRead().problem, "");
    EXPECT_EQ(told("<a/>"), "<a></a> ok");
}
