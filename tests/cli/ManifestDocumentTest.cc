#include "cli/ManifestDocument.h"

#include "host/LocaleText.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using namespace cli;

class ManifestDocumentTest : public ::testing::Test
{
protected:
    ~ManifestDocumentTest() override { std::filesystem::remove(path); }

    ManifestDocument read(const std::string& content) const
    {
        std::ofstream(path, std::ios::binary) << content;
        return readManifestDocument(path);
    }

    /// One line an element: depth as blanks, name, line and column, then its attributes in the same way.
    static std::string shown(const ManifestDocument& document)
    {
        const auto text = [](const std::wstring& name, TextPosition position) {
            return localetext::utf8(name) + "@" + std::to_string(position.line) + ":" + std::to_string(position.column);
        };
        std::string lines;
        for (const ManifestElement& element : document.elements) {
            for (std::size_t above = element.parent; above != ManifestElement::kNone;
                 above = document.elements[above].parent) {
                lines += " ";
            }
            lines += text(element.name, element.position);
            for (const ManifestAttribute& attribute : element.attributes) {
                lines += " " + text(attribute.name, attribute.position) + "=" + localetext::utf8(attribute.value);
            }
            lines += "\n";
        }
        return lines + (document.isMalformed ? "malformed\n" : "") + document.unreadable;
    }

    std::string path =
        std::filesystem::temp_directory_path().string() + "/kest-document-" + std::to_string(::getpid()) + ".xml";
};

/// `text`, ASCII and Latin-1, in UTF-16 with a byte order mark.
std::string utf16(std::string_view text)
{
    std::string bytes = "\xFF\xFE";
    for (const char byte : text) {
        bytes += {byte, '\0'};
    }
    return bytes;
}

TEST_F(ManifestDocumentTest, ElementsAndAttributesHaveTheirLinesAndColumns)
{
    EXPECT_EQ(shown(read("<?xml version='1.0'?>\n"
                         "<A one='1'\n"
                         "   two = \"a > b &amp; c\"><B/>\n"
                         "\t<C x='2'\r\ny='3'></C ></A>")),
              "A@2:1 one@2:4=1 two@3:4=a > b & c\n"
              " B@3:26\n"
              " C@4:2 x@4:5=2 y@5:1=3\n");
}

TEST_F(ManifestDocumentTest, WhatOnlyLooksLikeATagIsNone)
{
    EXPECT_EQ(shown(read("<!DOCTYPE A [ <!-- <X> ' --> <!ENTITY e \"<X a='1'>]\"> <?p <X> ?> ]>\n"
                         "<!-- <A> --><?x <A> ?><A t='&lt;X&gt;'><![CDATA[<X>]]>&lt;X&gt;<B/></A>")),
              "A@2:23 t@2:26=<X>\n B@2:64\n");
}

TEST_F(ManifestDocumentTest, ColumnsCountCharactersInEveryEncoding)
{
    EXPECT_EQ(shown(read("\xEF\xBB\xBF<A n='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80'><B/></A>")),
              "A@1:1 n@1:4=\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\n B@1:12\n");
    EXPECT_EQ(shown(read("<?xml version='1.0' encoding='latin1'?>\n<A n='\xE4\xF6'><B/></A>")),
              "A@2:1 n@2:4=\xC3\xA4\xC3\xB6\n B@2:11\n");
    EXPECT_EQ(shown(read(utf16("<A n='ab'>\n <B/></A>"))), "A@1:1 n@1:4=ab\n B@2:2\n");
}

TEST_F(ManifestDocumentTest, WhatStandsBeforeAFaultIsKept)
{
    const ManifestDocument document = read("<A>\n <B x='1'/>\n <C></D></A>");
    EXPECT_EQ(shown(document), "A@1:1\n B@2:2 x@2:5=1\n C@3:2\nmalformed\n");
    EXPECT_EQ(document.fault.line, 3);
}

TEST_F(ManifestDocumentTest, ADocumentThatComesInManyPiecesKeepsItsPlaces)
{
    std::string content = "<A>\n";
    for (int line = 2; line < 20'000; ++line) {
        content += "  <B value='one of many, each on a line of its own'/>\n";
    }
    const ManifestDocument document = read(content + "</A>");
    ASSERT_EQ(document.elements.size(), 19'999U);
    EXPECT_EQ(document.elements.back().position, (TextPosition{19'999, 3}));
    EXPECT_FALSE(document.isMalformed);
}

TEST_F(ManifestDocumentTest, ADocumentWithoutMeasureIsCut)
{
    std::string content = "<A>";
    for (int count = 0; count < 1'100'000; ++count) {
        content += "<B/>";
    }
    const ManifestDocument document = read(content + "</A>");
    EXPECT_TRUE(document.isCut);
    EXPECT_EQ(document.elements.size(), 1'000'001U);
    EXPECT_TRUE(document.isInside(77, 0));
    EXPECT_FALSE(document.isInside(77, 76));
}

TEST_F(ManifestDocumentTest, AFileThatIsNotThereIsUnreadable)
{
    EXPECT_EQ(readManifestDocument(path + ".none").unreadable, "the file cannot be opened: No such file or directory");
}

} // namespace
