#include "tests/standalone/XmlReaderFixture.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace standalonetest;

namespace {

class XmlReaderFileTest : public XmlReaderFixture
{
protected:
    static std::size_t openDescriptors() { return namesIn("/proc/self/fd").size(); }

    /// Expects that no reader is made for `path`, for the reason `problem`.
    void expectNoReader(const std::string& path, const std::string& problem)
    {
        EXPECT_EQ(open(path), nullptr) << path;
        const ManifestRead read = lastRead();
        EXPECT_EQ(read.path, localetext::widen(path));
        EXPECT_FALSE(read.opened);
        EXPECT_FALSE(read.malformed);
        EXPECT_EQ(read.problem, problem) << path;
        EXPECT_EQ(read.line, 0);
        EXPECT_EQ(read.column, 0);
    }

    /// A document of about `bytes` bytes whose elements are numbered.
    static std::string largeDocument(std::size_t bytes)
    {
        std::string document = "<a>\n";
        for (int i = 0; document.size() < bytes; ++i) {
            document += "<b x='" + std::to_string(i) + "'/>\n";
        }
        return document + "</a>";
    }
};

} // namespace

TEST_F(XmlReaderFileTest, FileThatIsNotThereGivesNoReader)
{
    expectNoReader(folder / "absent.xml", std::strerror(ENOENT));
}

TEST_F(XmlReaderFileTest, LinkToNothingGivesNoReader)
{
    std::filesystem::create_symlink("absent.xml", folder / "link.xml");
    expectNoReader(folder / "link.xml", std::strerror(ENOENT));
}

TEST_F(XmlReaderFileTest, FolderGivesNoReader)
{
    expectNoReader(folder.path, std::strerror(EISDIR));
}

TEST_F(XmlReaderFileTest, PipesAndDevicesGiveNoReaderAndDoNotHoldTheHost)
{
    ASSERT_EQ(::mkfifo((folder / "pipe.xml").c_str(), 0600), 0);
    const std::size_t before = openDescriptors();
    expectNoReader(folder / "pipe.xml", "Not a regular file");
    expectNoReader("/dev/zero", "Not a regular file");
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(XmlReaderFileTest, UnreadableFileGivesNoReader)
{
    writeFile(folder / "closed.xml", "<a/>");
    std::filesystem::permissions(folder / "closed.xml", std::filesystem::perms::none);
    std::filesystem::permissions(folder.path, std::filesystem::perms(0755));
    const uid_t user = ::geteuid();
    constexpr uid_t kNobody = 65534;
    if (user == 0) { // who may read everything
        ASSERT_EQ(::seteuid(kNobody), 0);
    }
    expectNoReader(folder / "closed.xml", std::strerror(EACCES));
    ASSERT_EQ(::seteuid(user), 0);
}

TEST_F(XmlReaderFileTest, LinkToADocumentIsFollowed)
{
    writeFile(folder / "document.xml", "<a/>");
    std::filesystem::create_symlink("document.xml", folder / "link.xml");
    EXPECT_EQ(toldBy(*open(folder / "link.xml"), {}), "<a></a> ok");
}

TEST_F(XmlReaderFileTest, FileNameThatTheLocaleCannotDecodeIsOpened)
{
    writeFile(folder / "gr\xF6\xDF"
                       "e.xml",
              "<a/>");
    EXPECT_EQ(toldBy(*open(folder / "gr\xF6\xDF"
                                    "e.xml"),
                     {}),
              "<a></a> ok");
}

TEST_F(XmlReaderFileTest, FileIsReadWhenTheFirstTokenIsAskedFor)
{
    writeFile(folder / "document.xml", "<old/>");
    const XmlReader reader = open(folder / "document.xml");
    writeFile(folder / "document.xml", "<new/>");
    EXPECT_EQ(toldBy(*reader, {}), "<new></new> ok");
}

TEST_F(XmlReaderFileTest, FileThatGrewAfterItWasOpenedIsReadToItsEnd)
{
    writeFile(folder / "document.xml", "<a/>");
    const XmlReader reader = open(folder / "document.xml");
    const std::string grown = largeDocument(500 * 1000);
    writeFile(folder / "document.xml", grown);
    std::string expected = toldBy(*reader, {});
    EXPECT_EQ(expected.substr(expected.size() - 14), "<b></b></a> ok");
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '/'), std::count(grown.begin(), grown.end(), '/'));
}

TEST_F(XmlReaderFileTest, FileThatShrankAfterItWasOpenedIsJudgedByWhatIsLeft)
{
    for (const std::size_t size : {std::size_t{1000}, std::size_t{400 * 1000}}) {
        writeFile(folder / "document.xml", largeDocument(size));
        const XmlReader shrunk = open(folder / "document.xml");
        writeFile(folder / "document.xml", "<a/>");
        EXPECT_EQ(toldBy(*shrunk, {}), "<a></a> ok");
        writeFile(folder / "document.xml", largeDocument(size));
        const XmlReader emptied = open(folder / "document.xml");
        writeFile(folder / "document.xml", "");
        EXPECT_EQ(toldBy(*emptied, {}), " malformed");
    }
}

TEST_F(XmlReaderFileTest, FileThatIsTakenAwayIsStillReadByItsReader)
{
    writeFile(folder / "document.xml", "<a/>");
    const XmlReader reader = open(folder / "document.xml");
    std::filesystem::remove(folder / "document.xml");
    EXPECT_EQ(toldBy(*reader, {}), "<a></a> ok");
}

TEST_F(XmlReaderFileTest, FailureToReadIsAFaultThatNamesTheReason)
{
    // The first page of a process's memory is never there: a regular file, to look at, whose reading fails.
    const XmlReader reader = open("/proc/self/mem");
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(toldBy(*reader, {}), " malformed");
    EXPECT_EQ(lastFault(), std::string("0:0 ") + std::strerror(EIO));
}

TEST_F(XmlReaderFileTest, DocumentsOfEverySizeAroundTheLimitsAreReadWhole)
{
    for (const std::size_t size : {std::size_t{64 * 1024}, std::size_t{256 * 1024}, std::size_t{320 * 1024}}) {
        for (const std::size_t length : {size - 1, size, size + 1}) {
            std::string document = "<a><b x='";
            document += std::string(length - document.size() - 8, 'x') + "'/></a>\n";
            ASSERT_EQ(document.size(), length + 0);
            const XmlReader reader = openDocument(document);
            CStdStr<wchar_t> value;
            reader->readNext();
            reader->readNext();
            reader->attribute(L"x", value);
            EXPECT_EQ(value.size(), length - 17);
            EXPECT_EQ(toldBy(*reader, {}), "</b></a> ok");
        }
    }
}

TEST_F(XmlReaderFileTest, FaultInALargeDocumentHasItsPlace)
{
    std::string document = largeDocument(400 * 1000);
    const std::ptrdiff_t lines = std::count(document.begin(), document.end(), '\n');
    document.replace(document.size() - 4, 4, "<c></d></a>");
    const std::string outcome = told(document);
    EXPECT_EQ(outcome.substr(outcome.size() - 20), "<b></b><c> malformed");
    EXPECT_EQ(lastFault(), std::to_string(lines + 1) + ":8 Opening and ending tag mismatch: c line " +
                               std::to_string(lines + 1) + " and d");
}

TEST_F(XmlReaderFileTest, NoDescriptorIsKeptOnceTheEndWasReached)
{
    const std::size_t before = openDescriptors();
    std::vector<XmlReader> readers;
    for (const std::string& document : {std::string("<a/>"), std::string("<a>"), largeDocument(300 * 1000)}) {
        readers.push_back(openDocument(document));
        toldBy(*readers.back(), {});
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(XmlReaderFileTest, SmallFileIsClosedAtTheFirstTokenAndALargeOneWithItsReader)
{
    const std::size_t before = openDescriptors();
    XmlReader small = openDocument("<a><b/></a>");
    XmlReader large = openDocument(largeDocument(300 * 1000));
    EXPECT_EQ(openDescriptors(), before + 2);
    small->readNext();
    EXPECT_EQ(openDescriptors(), before + 1);
    large->readNext();
    EXPECT_EQ(openDescriptors(), before + 1);
    large.reset();
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(XmlReaderFileTest, TenThousandReadersAtTheirEndKeepLittle)
{
    const std::string document = largeDocument(20 * 1000);
    told(document);
    writeFile(folder / "document.xml", document);
    const std::string path = folder / "document.xml";
    std::vector<XmlReader> readers;
    readers.reserve(10000);
    toldBy(*open(path), {});
    running->journal().clear();
    const auto before = ::mallinfo2();
    for (int i = 0; i < 10000; ++i) {
        readers.push_back(open(path));
        while (readers.back()->moreTokens() != 0) {
            readers.back()->readNext();
        }
        running->journal().clear();
    }
    const auto after = ::mallinfo2();
    if (before.uordblks == 0) {
        GTEST_SKIP() << "the allocator does not count";
    }
    EXPECT_LT((after.uordblks - before.uordblks) / 10000, 128U);
}

TEST_F(XmlReaderFileTest, NamesOfManyDocumentsDoNotPileUp)
{
    const auto readOne = [this](int round) {
        std::string document = "<!DOCTYPE a [<!ENTITY e 'x'>]><a>";
        for (int i = 0; i < 300; ++i) {
            document += "<n" + std::to_string(round) + "-" + std::to_string(i) + std::string(40, 'x') + "/>";
        }
        writeFile(folder / "document.xml", document + "</a>");
        const XmlReader reader = open(folder / "document.xml");
        while (reader->moreTokens() != 0) {
            reader->readNext();
        }
        EXPECT_NE(reader->readOk(), 0);
        running->journal().clear();
    };
    readOne(0);
    const auto before = ::mallinfo2();
    for (int round = 1; round <= 500; ++round) {
        readOne(round);
    }
    const auto after = ::mallinfo2();
    if (before.uordblks == 0) {
        GTEST_SKIP() << "the allocator does not count";
    }
    EXPECT_LT(after.uordblks, before.uordblks + 1024 * 1024) << "the names alone are seven times as much";
}

TEST_F(XmlReaderFileTest, LargeDocumentIsReadInLittleMemory)
{
    const std::string path = folder / "document.xml";
    {
        std::ofstream file(path, std::ios::binary);
        file << "<a>";
        for (int i = 0; i < 400000; ++i) {
            file << "<ComponentEntry ModuleName='./Contents/module" << i << ".krx' AppName='application'/>\n";
        }
        file << "</a>";
    }
    ASSERT_GT(std::filesystem::file_size(path), 30U * 1024 * 1024);
    const auto before = ::mallinfo2();
    if (before.uordblks == 0) {
        GTEST_SKIP() << "the allocator does not count";
    }
    std::size_t most = 0;
    int starts = 0;
    const XmlReader reader = open(path);
    for (reader->readNext(); reader->moreTokens() != 0; reader->readNext()) {
        if (reader->checkStartElement() == 0 && ++starts % 1000 == 0) {
            most = std::max(most, ::mallinfo2().uordblks + ::mallinfo2().hblkhd);
        }
    }
    EXPECT_NE(reader->readOk(), 0);
    EXPECT_EQ(starts, 400001);
    EXPECT_LT(most, before.uordblks + before.hblkhd + 4 * 1024 * 1024);
}
