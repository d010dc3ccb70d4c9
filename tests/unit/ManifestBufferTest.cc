// The value buffer: one for each element, empty at first, never cleared. What a missing attribute reads as is the
// host's choice, so that it shows here what the host finds in the buffer at each attribute.
#include "tests/AutoloaderTest.h"
#include "tests/RecordText.h"

namespace {

using hostdouble::Element;
using hostdouble::MissingAttribute;
using hostdouble::Token;
using Lines = std::vector<std::string>;
using Attributes = std::vector<std::pair<std::wstring, std::wstring>>;

/// Stands on a start tag with `attributes`, notes what is in the buffer at each, and leaves it alone when missing.
class BufferReader : public XmlFilerReader
{
public:
    BufferReader(const Attributes& values, Lines& lines) : attributes(values), found(lines) {}
    BufferReader(const BufferReader&) = delete;
    BufferReader& operator=(const BufferReader&) = delete;

    int checkStartElement() override { return 0; }
    int checkEndElement() override { return 1; }
    void attribute(const CStdStr<wchar_t>& name, CStdStr<wchar_t>& value) override
    {
        found.push_back(hostdouble::utf8(name) + " [" + hostdouble::utf8(value) + "]");
        for (const auto& [key, text] : attributes) {
            if (key == name) {
                value = text;
            }
        }
    }
    void tokenName(CStdStr<wchar_t>&) override {}
    int moreTokens() override { return 0; }
    int readOk() override { return 1; }
    void readNext() override {}

private:
    Attributes attributes;
    Lines& found;
};

class ManifestBufferTest : public AutoloaderTest
{
protected:
    ManifestBufferTest() { host.missingAttribute = MissingAttribute::kLeavesBufferAlone; }

    void standOn(const Attributes& attributes)
    {
        found.clear();
        bundle.xmlReader = std::make_unique<BufferReader>(attributes, found);
    }

    /// The line of the entry that is read from these attributes.
    std::string readEntry(const Attributes& attributes)
    {
        standOn(attributes);
        KestComponentEntry entry;
        bundle.readXmlAttributeEntry(entry);
        Lines lines;
        recordtext::appendEntry(lines, entry);
        return lines.at(0);
    }

    Lines found; ///< what the host found in the buffer, attribute by attribute
    KestBundle bundle{L"/p/X", L"/p/X/PackageContents.xml"};
};

TEST_F(ManifestBufferTest, AMissingAttributeOfThePackageReadsLikeTheOneBefore)
{
    standOn({{L"UpgradeCode", L"U"}, {L"Author", L"A"}, {L"HelpFile", L"H"}});

    bundle.readXmlAttributePackage();

    EXPECT_EQ(found, (Lines{"UpgradeCode []", "SchemaVersion [U]", "AppVersion [U]", "Author [U]", "Name [A]",
                            "Description [A]", "Icon [A]", "HelpFile [A]", "ProductCode [H]"}));
    EXPECT_EQ(recordtext::of(bundle),
              Lines{"package schema=[U] version=[U] author=[A] name=[A] description=[A] icon=[A] help=[H] product=[H] "
                    "upgrade=[U]"});
}

TEST_F(ManifestBufferTest, AMissingAttributeOfTheCompanyReadsLikeTheOneBefore)
{
    standOn({{L"Name", L"N"}, {L"URL", L"W"}});

    bundle.readXmlAttributeCompany();

    EXPECT_EQ(found, (Lines{"Name []", "Phone [N]", "URL [N]", "Email [W]"}));
    EXPECT_EQ(recordtext::of(bundle), Lines{"company name=[N] phone=[N] url=[W] email=[W]"});
}

TEST_F(ManifestBufferTest, AMissingRequirementReadsLikeTheOneBefore)
{
    standOn({{L"Architecture", L"x86_64"}, {L"Platform", L"TARVIX"}});

    bundle.readXmlAttributeRuntime();

    EXPECT_EQ(found, (Lines{"Architecture []", "OS [x86_64]", "Platform [x86_64]", "SeriesMin [TARVIX]",
                            "SeriesMax [TARVIX]"}));
    EXPECT_EQ(recordtext::of(bundle),
              Lines{"runtime architecture=[x86_64] os=[x86_64] platform=[TARVIX] min=[TARVIX] max=[TARVIX]"});
}

TEST_F(ManifestBufferTest, AMissingAttributeOfADependencyReadsLikeTheOneBefore)
{
    standOn({{L"UpgradeCode", L"U"}});
    bundle.readXmlAttributeDep();
    EXPECT_EQ(found, (Lines{"UpgradeCode []", "VersionMin [U]", "VersionMax [U]"}));

    standOn({{L"UpgradeCode", L"U"}, {L"VersionMin", L"1"}});
    bundle.readXmlAttributeDep();
    EXPECT_EQ(found, (Lines{"UpgradeCode []", "VersionMin [U]", "VersionMax [1]"}));

    EXPECT_EQ(recordtext::of(bundle),
              (Lines{"dependency upgrade=[U] min=[U] max=[U]", "dependency upgrade=[U] min=[1] max=[1]"}));
}

TEST_F(ManifestBufferTest, AMissingLocalNameOfACommandReadsLikeTheGlobalOne)
{
    KestCommands group;
    standOn({{L"Global", L"G"}});

    bundle.readXmlAttributeCommand(group);

    EXPECT_EQ(found, (Lines{"Global []", "Local [G]"}));
    EXPECT_EQ(group.commands.at(0).localName, L"G");
}

TEST_F(ManifestBufferTest, AMissingGroupNameReadsEmptyAsItsBufferIsItsOwn)
{
    for (const auto missing : {MissingAttribute::kEmptiesBuffer, MissingAttribute::kLeavesBufferAlone}) {
        host.missingAttribute = missing;
        hostdouble::Document document;
        document.tokens = {{Token::kStart, L"Commands", {{L"GroupName", L"G"}}}, {Token::kStart, L"Commands"}};
        host.documents[bundle.xmlPath] = document;
        bundle.xmlReader.reset(kestCreateXmlFilerReader(bundle.xmlPath.c_str()));
        bundle.xmlReader->readNext();
        KestComponentEntry entry;

        bundle.readXmlNodeCommands(entry);

        EXPECT_EQ(entry.commands.at(0).groupName, L"");
    }
}

TEST_F(ManifestBufferTest, EachElementStartsWithAnEmptyBuffer)
{
    host.documents[bundle.xmlPath] = Element{L"ApplicationPackage",
                                             {{L"ProductCode", L"P"}},
                                             {{L"CompanyDetails"}, {L"DependentBundles", {}, {{L"DependentBundle"}}}}};

    bundle.parseXml();

    EXPECT_EQ(recordtext::of(bundle), Lines{"package product=[P]"});
}

/// Notes the room of the buffer at each attribute, then makes it `wanted`.
class RoomReader : public BufferReader
{
public:
    RoomReader(std::size_t wantedRoom, std::vector<std::size_t>& roomsFound, Lines& lines)
        : BufferReader({}, lines), wanted(wantedRoom), rooms(roomsFound)
    {
    }
    void attribute(const CStdStr<wchar_t>& /*name*/, CStdStr<wchar_t>& value) override
    {
        rooms.push_back(value.capacity());
        value.reserve(wanted);
    }

private:
    std::size_t wanted;
    std::vector<std::size_t>& rooms;
};

TEST_F(ManifestBufferTest, TheNextElementFindsTheRoomOfTheBufferUnlessItIsMuch)
{
    std::vector<std::size_t> rooms;
    for (const std::size_t wanted : {4097U, 4096U, 0U, 0U}) {
        KestCommands group;
        bundle.xmlReader = std::make_unique<RoomReader>(wanted, rooms, found);
        bundle.readXmlAttributeCommand(group);
    }
    const std::size_t own = std::wstring().capacity();
    EXPECT_EQ(std::vector<std::size_t>(rooms.begin() + 1, rooms.end()),
              (std::vector<std::size_t>{4097, own, 4096, 4096, 4096, 4096, 4096}));
}

TEST_F(ManifestBufferTest, AMissingAppNameReadsLikeTheModuleNameWithoutItsDot)
{
    EXPECT_EQ(readEntry({{L"ModuleName", L"./a.krx"}, {L"LoadCtrlFlag", L"1"}, {L"PythonVersion", L"3"}}),
              "entry app=[/a.krx] module=[/p/X/a.krx] python=[3] ctrl=1 flags=2");
    EXPECT_EQ(found, (Lines{"ModuleName []", "AppName [/a.krx]", "LoadCtrlFlag [/a.krx]", "PythonVersion [1]",
                            "LoadOnTARVIXStartup [3]", "LoadOnCommandInvocation [3]"}));
}

TEST_F(ManifestBufferTest, AMissingAppNameReadsLikeAModuleNameThatIsNotTakenAsAWhole)
{
    EXPECT_EQ(readEntry({{L"ModuleName", L"a.krx"}, {L"LoadCtrlFlag", L"1"}}),
              "entry app=[a.krx] python=[1] ctrl=1 flags=2");
}

TEST_F(ManifestBufferTest, AMissingLoadCtrlFlagIsTheNumberThatTheAppNameBeginsWith)
{
    EXPECT_EQ(readEntry({{L"ModuleName", L"./a"}, {L"AppName", L"9lives"}}),
              "entry app=[9lives] module=[/p/X/a] python=[9lives] ctrl=9 flags=2");
    EXPECT_EQ(readEntry({{L"ModuleName", L"./a"}, {L"AppName", L""}}), "entry module=[/p/X/a] ctrl=1 flags=2");
}

TEST_F(ManifestBufferTest, AMissingLoadOnCommandInvocationBehindAStartupOfTrueReadsAsTrue)
{
    EXPECT_EQ(readEntry({{L"ModuleName", L"./a"}, {L"AppName", L"A"}, {L"LoadOnTARVIXStartup", L"true"}}),
              "entry app=[A] module=[/p/X/a] python=[A] ctrl=0 flags=6");
    EXPECT_EQ(found.back(), "LoadOnCommandInvocation [TRUE]");
}

TEST_F(ManifestBufferTest, AMissingLoadOnCommandInvocationBehindAStartupOfFalseStaysFalse)
{
    EXPECT_EQ(readEntry({{L"ModuleName", L"./a"}, {L"AppName", L"A"}, {L"LoadOnTARVIXStartup", L"False"}}),
              "entry app=[A] module=[/p/X/a] python=[A] ctrl=0 flags=0");
    EXPECT_EQ(found.back(), "LoadOnCommandInvocation [FALSE]");
}

TEST_F(ManifestBufferTest, AMissingLoadOnStartupReadsLikeThePythonVersionAndIsUpperCasedToo)
{
    EXPECT_EQ(readEntry({{L"ModuleName", L"./a"}, {L"PythonVersion", L"false"}}),
              "entry app=[/a] module=[/p/X/a] python=[false] ctrl=0 flags=0");
    EXPECT_EQ(found.at(4), "LoadOnTARVIXStartup [false]");
    EXPECT_EQ(found.at(5), "LoadOnCommandInvocation [FALSE]");
}

TEST_F(ManifestBufferTest, AHostThatEmptiesTheBufferGivesThePlainReading)
{
    host.missingAttribute = MissingAttribute::kEmptiesBuffer;
    host.documents[bundle.xmlPath] =
        Element{L"ApplicationPackage",
                {{L"UpgradeCode", L"U"}},
                {{L"CompanyDetails", {{L"Name", L"N"}}},
                 {L"RuntimeRequirements", {{L"Architecture", L"x86_64"}}},
                 {L"DependentBundles", {}, {{L"DependentBundle", {{L"UpgradeCode", L"D"}}}}},
                 {L"Components",
                  {},
                  {{L"ComponentEntry",
                    {{L"ModuleName", L"./a"}, {L"LoadOnTARVIXStartup", L"true"}},
                    {{L"Commands", {{L"GroupName", L"G"}}, {{L"Command", {{L"Global", L"C"}}}}}}}}}}};

    bundle.parseXml();

    EXPECT_EQ(recordtext::of(bundle), (Lines{"package upgrade=[U]", "company name=[N]", "runtime architecture=[x86_64]",
                                             "dependency upgrade=[D]", "entry module=[/p/X/a] ctrl=1 flags=2",
                                             "  group name=[G]", "    command global=[C]"}));
}

} // namespace
