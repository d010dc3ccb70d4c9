#include "cli/ErrorLog.h"

#include "tests/cli/ToolTest.h"

#include <clocale>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace cli {

std::ostream& operator<<(std::ostream& stream, const ErrorLogText& log);

std::ostream& operator<<(std::ostream& stream, const ErrorLogText& log)
{
    stream << "time " << log.time << (log.isComplete ? ", complete" : ", not complete");
    for (const ErrorLogRecord& record : log.records) {
        stream << "\n[" << record.path << "] [" << record.message << "]";
    }
    return stream;
}

} // namespace cli

namespace {

using cli::ErrorLogText;

const std::string kSplit = "\n---------------------------------------\n";

TEST(ErrorLogTest, ALogWithoutProblemsHoldsItsTime)
{
    EXPECT_EQ(cli::parseErrorLog("2024-03-07 14:05:09\n"), (ErrorLogText{"2024-03-07 14:05:09", {}, true}));
}

TEST(ErrorLogTest, EachProblemIsAPathAndAMessage)
{
    const std::string log = "T\n" + kSplit + "/a/PackageContents.xml  File format error\n" + kSplit +
                            "/b/P.xml: The product version number of the RuntimeRequirements element is incorrect\n" +
                            kSplit + "/b/P.xml: The OS of the RuntimeRequirements element is incorrect\n" + kSplit +
                            "/b/P.xml: The architecture of the RuntimeRequirements element is incorrect\n" + kSplit +
                            "/b/P.xml: The platform of the RuntimeRequirements element is incorrect\n" + kSplit +
                            "/c/d.krx loading failed\n";
    EXPECT_EQ(cli::parseErrorLog(log),
              (ErrorLogText{"T",
                            {{"/a/PackageContents.xml", "File format error"},
                             {"/b/P.xml", "The product version number of the RuntimeRequirements element is incorrect"},
                             {"/b/P.xml", "The OS of the RuntimeRequirements element is incorrect"},
                             {"/b/P.xml", "The architecture of the RuntimeRequirements element is incorrect"},
                             {"/b/P.xml", "The platform of the RuntimeRequirements element is incorrect"},
                             {"/c/d.krx", "loading failed"}},
                            true}));
}

TEST(ErrorLogTest, APathMayHoldLineEndsAndWhatLooksLikeAMessage)
{
    const std::string log =
        "T\n" + kSplit + "/x\ny: z loading failed\n  File format error\n" + kSplit + "/p loading failed\n";
    EXPECT_EQ(
        cli::parseErrorLog(log),
        (ErrorLogText{"T", {{"/x\ny: z loading failed\n", "File format error"}, {"/p", "loading failed"}}, true}));
}

TEST(ErrorLogTest, AnUnknownMessageIsHandedOnAsItStands)
{
    EXPECT_EQ(cli::parseErrorLog("T\n" + kSplit + "/p something else\n"),
              (ErrorLogText{"T", {{"/p something else", ""}}, true}));
}

TEST(ErrorLogTest, ALogThatIsCutOffIsNotComplete)
{
    EXPECT_EQ(cli::parseErrorLog(""), (ErrorLogText{"", {}, false}));
    EXPECT_EQ(cli::parseErrorLog("2024"), (ErrorLogText{"2024", {}, false}));
    EXPECT_EQ(cli::parseErrorLog("T\n" + kSplit), (ErrorLogText{"T", {{"", ""}}, true}));
    EXPECT_EQ(cli::parseErrorLog("T\n" + kSplit + "/p loading fa"),
              (ErrorLogText{"T", {{"/p loading fa", ""}}, false}));
}

TEST(ErrorLogTest, PercentSignsOfAPathAreAsTheLogWritesThem)
{
    EXPECT_EQ(cli::pathInErrorLog(L"/a%%b/%d%s/100%/c"), "/a%b//100/c");
}

class ErrorLogFileTest : public ToolTest
{
protected:
    ErrorLogFileTest() { std::setlocale(LC_ALL, "C.UTF-8"); }

    struct Closer
    {
        void operator()(std::FILE* stream) const { std::fclose(stream); }
    };
    using File = std::unique_ptr<std::FILE, Closer>;

    std::string file = path("log.txt");
};

TEST_F(ErrorLogFileTest, TheLogOfThisRunIsRead)
{
    write(file, "T\n" + kSplit + "/p loading failed\n");
    const File writer(std::fopen(file.c_str(), "a"));
    const cli::ErrorLogFile log = cli::readErrorLog(file);
    EXPECT_EQ(log.path, file);
    EXPECT_EQ(log.problem, "");
    EXPECT_EQ(log.text, (ErrorLogText{"T", {{"/p", "loading failed"}}, true}));
}

TEST_F(ErrorLogFileTest, TheLogOfAnEarlierRunIsLeftAlone)
{
    write(file, "T\n" + kSplit + "/p loading failed\n");
    const cli::ErrorLogFile log = cli::readErrorLog(file);
    EXPECT_EQ(log.problem, "it could not be opened: the system gives no reason");
    EXPECT_EQ(log.text, ErrorLogText());
}

TEST_F(ErrorLogFileTest, WhyALogIsMissingIsSaid)
{
    EXPECT_EQ(cli::readErrorLog(path("none/log.txt")).problem, "it could not be opened: No such file or directory");
    std::filesystem::create_directory(path("folder"));
    EXPECT_EQ(cli::readErrorLog(path("folder")).problem, "it could not be opened: Is a directory");
    EXPECT_EQ(cli::readErrorLog(path("input/log.txt")).problem, "it could not be opened: No such file or directory");
}

TEST_F(ErrorLogFileTest, ADeviceIsNotReadBack)
{
    std::filesystem::create_symlink("/dev/full", file);
    const File writer(std::fopen(file.c_str(), "w"));
    EXPECT_EQ(cli::readErrorLog(file).problem,
              "it is not a regular file, so what was written there cannot be read back");
}

TEST_F(ErrorLogFileTest, ALogThatIsCutOffIsNotReliedOn)
{
    write(file, "T\n" + kSplit + "/p loading failed\n" + kSplit + "/q load");
    const File writer(std::fopen(file.c_str(), "a"));
    const cli::ErrorLogFile log = cli::readErrorLog(file);
    EXPECT_EQ(log.problem, "it is cut off: the disk may be full, or another run has emptied it meanwhile");
    EXPECT_EQ(log.text, (ErrorLogText{"T", {{"/p", "loading failed"}, {"/q load", ""}}, false}));
}

} // namespace
