#include "tests/standalone/XmlReaderFixture.h"

using namespace standalonetest;

namespace {

class XmlReaderTest : public XmlReaderFixture
{
};

} // namespace

TEST_F(XmlReaderTest, StartAndEndTagsComeInDocumentOrder)
{
    EXPECT_EQ(told("<a><b></b><c><d></d></c></a>"), "<a><b></b><c><d></d></c></a> ok");
}

TEST_F(XmlReaderTest, SelfClosingElementGivesStartAndEnd)
{
    EXPECT_EQ(told("<a><b/></a>"), "<a><b></b></a> ok");
}

TEST_F(XmlReaderTest, TextCommentsInstructionsAndCharacterDataGiveNoTokens)
{
    EXPECT_EQ(told("<?xml version='1.0'?><!-- <x/> --><a> text <!-- <y/> --><?go <z/>?><![CDATA[<w/>]]></a><!-- -->\n"),
              "<a></a> ok");
}

TEST_F(XmlReaderTest, AttributesAreFoundByNameInAnyOrder)
{
    EXPECT_EQ(told("<a one='1' two='2'><b two='3'/></a>", {L"two", L"one"}),
              "<a two=[2] one=[1]><b two=[3] one=[]></b></a> ok");
}

TEST_F(XmlReaderTest, AttributeNamesAreComparedWhole)
{
    EXPECT_EQ(told("<a name='1' Name='2' nam='3' names='4'/>", {L"name", L"NAME", L"n", L"names", L""}),
              "<a name=[1] NAME=[] n=[] names=[4] =[]></a> ok");
}

TEST_F(XmlReaderTest, AttributeNamesThatDifferInOnePlaceAreDifferent)
{
    for (const std::size_t length : {1U, 2U, 7U, 8U, 9U, 15U, 16U, 17U, 24U}) {
        const std::string name(length, 'n');
        for (std::size_t at = 0; at < length; ++at) {
            std::wstring other(length, L'n');
            other[at] = L'o';
            EXPECT_EQ(told("<a " + name + "='1'/>", {other}), "<a " + utf8(other) + "=[]></a> ok");
            other[at] = static_cast<wchar_t>(L'n' + 0x100);
            EXPECT_EQ(told("<a " + name + "='1'/>", {other}), "<a " + utf8(other) + "=[]></a> ok");
        }
        EXPECT_EQ(told("<a " + name + "='1'/>", {std::wstring(length, L'n')}), "<a " + name + "=[1]></a> ok");
    }
}

TEST_F(XmlReaderTest, CharacterBeyondAsciiIsDecodedWhereverItStands)
{
    for (std::size_t length = 1; length < 26; ++length) {
        EXPECT_EQ(told("<a x='" + std::string(length, 'v') + "'/>", {L"x"}),
                  "<a x=[" + std::string(length, 'v') + "]></a> ok");
        for (std::size_t at = 0; at < length; ++at) {
            const std::string value = std::string(at, 'v') + "\xE6\xB0\xB4" + std::string(length - at - 1, 'w');
            EXPECT_EQ(told("<a x='" + value + "'/>", {L"x"}), "<a x=[" + value + "]></a> ok");
        }
    }
}

TEST_F(XmlReaderTest, MissingAttributeEmptiesTheValue)
{
    const XmlReader reader = openDocument("<a/>");
    reader->readNext();
    CStdStr<wchar_t> value(L"TRUE");
    reader->attribute(L"LoadOnCommandInvocation", value);
    EXPECT_EQ(value, L"");
}

TEST_F(XmlReaderTest, EmptyValueIsEmpty)
{
    EXPECT_EQ(told("<a x='' y='1'/>", {L"x", L"y"}), "<a x=[] y=[1]></a> ok");
}

TEST_F(XmlReaderTest, NamesAndValuesBeyondAsciiAreWholeCodePoints)
{
    EXPECT_EQ(told("<größe länge='ä'><x 水='\xF0\x9F\x98\x80'/></größe>", {L"länge", L"水", L"läng"}),
              "<größe länge=[ä] 水=[] läng=[]><x länge=[] 水=[\xF0\x9F\x98\x80] läng=[]></x></größe> ok");
    const XmlReader reader = openDocument("<a x='a\xF0\x9F\x98\x80z'/>");
    reader->readNext();
    CStdStr<wchar_t> value;
    reader->attribute(L"x", value);
    EXPECT_EQ(value, std::wstring({L'a', static_cast<wchar_t>(0x1F600), L'z'}));
}

TEST_F(XmlReaderTest, NamesAreThoseWrittenPrefixIncluded)
{
    EXPECT_EQ(told("<p:a xmlns='urn:d' xmlns:p='urn:p' p:x='1' x='2'><b/></p:a>", {L"p:x", L"x", L"xmlns", L"xmlns:p"}),
              "<p:a p:x=[1] x=[2] xmlns=[urn:d] xmlns:p=[urn:p]><b p:x=[] x=[] xmlns=[] xmlns:p=[]></b></p:a> ok");
}

TEST_F(XmlReaderTest, PrefixThatNoNamespaceStandsBehindIsWellFormed)
{
    EXPECT_EQ(told("<p:a q:x='1'><p:b:c/></p:a>", {L"q:x"}), "<p:a q:x=[1]><p:b:c q:x=[]></p:b:c></p:a> ok");
    EXPECT_EQ(lastFault(), "");
}

TEST_F(XmlReaderTest, CharacterReferencesAndBuiltInEntitiesAreDecodedOnce)
{
    EXPECT_EQ(told("<a x='&lt;&gt;&amp;&quot;&apos;&#65;&#x42;' y='&amp;lt;' z='&#38;amp;&#38;' w='a;&amp;b;c'/>",
                   {L"x", L"y", L"z", L"w"}),
              "<a x=[<>&\"'AB] y=[&lt;] z=[&amp;&] w=[a;&b;c]></a> ok");
}

TEST_F(XmlReaderTest, LineEndsInValuesBecomeBlanksUnlessReferenced)
{
    EXPECT_EQ(told("<a x='1\n2\t3\r\n4' y='1&#10;2'/>", {L"x", L"y"}), "<a x=[1 2 3 4] y=[1\n2]></a> ok");
}

TEST_F(XmlReaderTest, DeclaredEntitiesAreExpandedInValues)
{
    EXPECT_EQ(told("<!DOCTYPE a [<!ENTITY inner 'two'><!ENTITY outer 'one &inner;\nthree &#38;amp; four'>]>"
                   "<a x='[&outer;]' y='&inner;&amp;&inner;'/>",
                   {L"x", L"y"}),
              "<a x=[[one two three & four]] y=[two&two]></a> ok");
}

TEST_F(XmlReaderTest, DefaultsDeclaredInTheDocumentCount)
{
    EXPECT_EQ(told("<!DOCTYPE a [<!ATTLIST a x CDATA 'usual &amp; old'>]><a><a x='own'/></a>", {L"x"}),
              "<a x=[usual & old]><a x=[own]></a></a> ok");
}

TEST_F(XmlReaderTest, ElementsInTheContentOfAnEntityGiveNoTokens)
{
    EXPECT_EQ(told("<!DOCTYPE a [<!ENTITY e '<hidden><deeper/></hidden>'>]><a>&e;<b/>&e;</a>"), "<a><b></b></a> ok");
}

TEST_F(XmlReaderTest, NoTokenIsAnsweredBeforeTheFirstReadAndAfterTheEnd)
{
    const XmlReader reader = openDocument("<a x='1'/>");
    CStdStr<wchar_t> name(L"before");
    const auto expectNoToken = [&] {
        EXPECT_NE(reader->checkStartElement(), 0);
        EXPECT_NE(reader->checkEndElement(), 0);
        name = L"before";
        reader->tokenName(name);
        EXPECT_EQ(name, L"");
        name = L"before";
        reader->attribute(L"x", name);
        EXPECT_EQ(name, L"");
    };
    expectNoToken();
    EXPECT_NE(reader->moreTokens(), 0);
    EXPECT_EQ(toldBy(*reader, {L"x"}), "<a x=[1]></a> ok");
    expectNoToken();
    reader->readNext();
    expectNoToken();
    EXPECT_EQ(reader->moreTokens(), 0);
    EXPECT_NE(reader->readOk(), 0);
}

TEST_F(XmlReaderTest, TwoReadersAtOnceDoNotDisturbEachOther)
{
    const XmlReader one = openDocument("<one a='1'><b/></one>");
    const XmlReader other = openDocument("<two a='2'><c/></two>");
    one->readNext();
    other->readNext();
    CStdStr<wchar_t> value;
    one->attribute(L"a", value);
    EXPECT_EQ(value, L"1");
    other->attribute(L"a", value);
    EXPECT_EQ(value, L"2");
    EXPECT_EQ(toldBy(*one, {}), "<b></b></one> ok");
    EXPECT_EQ(toldBy(*other, {}), "<c></c></two> ok");
}

TEST_F(XmlReaderTest, ReaderLeftInTheMiddleLeavesNothingToTheNext)
{
    {
        const XmlReader left = openDocument("<!DOCTYPE a [<!ENTITY e 'old'><!ATTLIST a y CDATA 'old'>]><a><b><c/>");
        left->readNext();
        left->readNext();
    }
    EXPECT_EQ(told("<a x='&amp;'/>", {L"x", L"y"}), "<a x=[&] y=[]></a> ok");
    EXPECT_EQ(told("<a x='&e;'/>"), " malformed");
}

TEST_F(XmlReaderTest, EachReadIsOneJournalEntry)
{
    told("<a/>");
    told("<a>");
    const auto reads = running->journal().only<ManifestRead>();
    ASSERT_EQ(reads.size(), 2U);
    EXPECT_EQ(reads[0].path, localetext::widen(folder / "document1.xml"));
    EXPECT_TRUE(reads[0].opened);
    EXPECT_FALSE(reads[0].malformed);
    EXPECT_EQ(reads[0].problem, "");
    EXPECT_EQ(reads[1].path, localetext::widen(folder / "document2.xml"));
    EXPECT_TRUE(reads[1].opened);
    EXPECT_TRUE(reads[1].malformed);
    EXPECT_EQ(running->journal().size(), 2U);
}

TEST_F(XmlReaderTest, FaultFoundAfterTheJournalWasClearedTouchesNoOtherEntry)
{
    const XmlReader reader = openDocument("<a>\n");
    running->journal().clear();
    running->notice("in its place");
    EXPECT_EQ(toldBy(*reader, {}), "<a> malformed");
    EXPECT_EQ(notices(), std::vector<std::string>{"in its place"});
}

TEST_F(XmlReaderTest, FaultFoundAfterTheJournalWasClearedHasNoPlaceToGo)
{
    const XmlReader reader = openDocument("<a>\n");
    running->journal().clear();
    EXPECT_EQ(toldBy(*reader, {}), "<a> malformed");
    EXPECT_EQ(running->journal().size(), 0U);
}

TEST_F(XmlReaderTest, ReaderMayOutliveItsHost)
{
    XmlReader reader = openDocument("<a>\n");
    running.reset();
    EXPECT_EQ(toldBy(*reader, {}), "<a> malformed");
    reader.reset();
}
