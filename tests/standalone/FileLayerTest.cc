#include "tests/standalone/HostFixture.h"
#include "tests/standalone/WorkingDirectoryKept.h"

#include "host/FileLayer.h"
#include "host/LocaleText.h"

#include <array>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace standalonetest;
using localetext::widen;

namespace {

class FileLayerTest : public HostFixture
{
protected:
    FileLayerTest() { std::setlocale(LC_ALL, "C.UTF-8"); }

    static std::size_t openDescriptors() { return namesIn("/proc/self/fd").size(); }

    static std::string workingDirectory() { return std::filesystem::current_path().string(); }
};

std::wstring programPath()
{
    std::array<wchar_t, 1024> buffer{};
    GetKestProgramPath(buffer.data());
    return buffer.data();
}

} // namespace

TEST_F(FileLayerTest, ProgramPathEndsWithExactlyOneSlash)
{
    for (const char* program : {"/opt/größe", "/opt/größe/", "/opt/größe///"}) {
        settings.programFolder = program;
        running.reset();
        startHost();
        EXPECT_EQ(programPath(), L"/opt/größe/");
    }
    settings.programFolder = "/";
    running.reset();
    startHost();
    EXPECT_EQ(programPath(), L"/");
}

TEST_F(FileLayerTest, ProgramPathThatDoesNotFitIsLeftEmptyAndNoticed)
{
    settings.programFolder = "/" + std::string(1021, 'x');
    startHost();
    EXPECT_EQ(programPath(), widen(settings.programFolder + "/")) << "1023 characters fit";
    EXPECT_EQ(notices(), std::vector<std::string>{});
    running.reset();
    settings.programFolder += "x";
    startHost();
    EXPECT_EQ(programPath(), L"");
    EXPECT_EQ(notices(),
              std::vector<std::string>{"The program folder is not searched: its path is longer than 1023 characters"});
}

TEST_F(FileLayerTest, FileIsMadeAndWritten)
{
    std::FILE* const stream = _wfopen(widen(folder / "größe.txt").c_str(), L"w");
    ASSERT_NE(stream, nullptr);
    std::fputs("text", stream);
    std::fclose(stream);
    EXPECT_EQ(fileContent(folder / "größe.txt"), "text");
}

TEST_F(FileLayerTest, ModesCutAppendAndRead)
{
    const std::wstring path = widen(folder / "file");
    const auto with = [&](const wchar_t* mode, const auto& use) {
        std::FILE* const stream = _wfopen(path.c_str(), mode);
        ASSERT_NE(stream, nullptr);
        use(stream);
        std::fclose(stream);
    };
    writeFile(folder / "file", "a longer text");
    with(L"w", [](std::FILE* stream) { std::fputs("one", stream); });
    EXPECT_EQ(fileContent(folder / "file"), "one");
    with(L"ab", [](std::FILE* stream) { std::fputs("two", stream); });
    EXPECT_EQ(fileContent(folder / "file"), "onetwo");
    with(L"rb", [](std::FILE* stream) {
        std::array<char, 16> text{};
        EXPECT_EQ(std::fread(text.data(), 1, text.size(), stream), 6U);
        EXPECT_STREQ(text.data(), "onetwo");
        EXPECT_EQ(std::fputs("three", stream), EOF);
    });
    EXPECT_EQ(fileContent(folder / "file"), "onetwo");
}

TEST_F(FileLayerTest, UnknownModeOpensNothing)
{
    startHost();
    for (const wchar_t* mode : {L"", L"x", L"w+", L"wx", L"rw", L"bw"}) {
        EXPECT_EQ(_wfopen(widen(folder / "file").c_str(), mode), nullptr);
    }
    EXPECT_EQ(namesIn(folder.path), std::vector<std::string>{"configuration"});
}

TEST_F(FileLayerTest, StreamIsNotLeftToProgramsThatAreStarted)
{
    std::FILE* const stream = _wfopen(widen(folder / "file").c_str(), L"w");
    ASSERT_NE(stream, nullptr);
    EXPECT_NE(::fcntl(::fileno(stream), F_GETFD) & FD_CLOEXEC, 0);
    std::fclose(stream);
}

TEST_F(FileLayerTest, PipeIsRefusedWithAndWithoutAReader)
{
    startHost();
    const std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::size_t before = openDescriptors();
    EXPECT_EQ(_wfopen(widen(pipe).c_str(), L"w"), nullptr);
    EXPECT_EQ(_wfopen(widen(pipe).c_str(), L"r"), nullptr);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(_wfopen(widen(pipe).c_str(), L"w"), nullptr);
    ::close(reader);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(notices(), (std::vector<std::string>{"\"" + pipe + "\" cannot be opened: " + std::strerror(ENXIO),
                                                   "\"" + pipe + "\" cannot be opened: " + std::strerror(EINVAL),
                                                   "\"" + pipe + "\" cannot be opened: " + std::strerror(EINVAL)}));
}

TEST_F(FileLayerTest, FoldersAndPathsThatDoNotExistAreRefusedWithTheReason)
{
    startHost();
    const std::string absent = folder / "absent/file";
    EXPECT_EQ(_wfopen(widen(folder.path).c_str(), L"w"), nullptr);
    EXPECT_EQ(_wfopen(widen(folder.path).c_str(), L"r"), nullptr);
    errno = 0;
    EXPECT_EQ(_wfopen(widen(absent).c_str(), L"w"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(notices(), (std::vector<std::string>{"\"" + folder.path + "\" cannot be opened: " + std::strerror(EISDIR),
                                                   "\"" + folder.path + "\" cannot be opened: " + std::strerror(EISDIR),
                                                   "\"" + absent + "\" cannot be opened: " + std::strerror(ENOENT)}));
}

TEST_F(FileLayerTest, FullDeviceIsAFileWhoseWritingFails)
{
    std::FILE* const stream = _wfopen(L"/dev/full", L"w");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(::fcntl(::fileno(stream), F_GETFL) & O_NONBLOCK, 0);
    std::fputs("text", stream);
    EXPECT_EQ(std::fflush(stream), EOF);
    EXPECT_EQ(errno, ENOSPC);
    std::fclose(stream);
}

TEST_F(FileLayerTest, WorkingDirectoryIsSetAndRead)
{
    const WorkingDirectoryKept kept;
    std::filesystem::create_directory(folder / "größe-\xFF");
    const std::wstring path = widen(std::filesystem::canonical(folder.path).string() + "/größe-\xFF");
    EXPECT_NE(SetCurrentDirectoryW(path.c_str()), 0);
    EXPECT_EQ(widen(workingDirectory()), path);
    std::array<wchar_t, 2049> buffer{};
    EXPECT_EQ(GetCurrentDirectoryW(2049, buffer.data()), path.size());
    EXPECT_EQ(buffer.data(), path);
}

TEST_F(FileLayerTest, WorkingDirectoryThatDoesNotFitIsAFailure)
{
    const WorkingDirectoryKept kept;
    const std::wstring path = widen(std::filesystem::canonical(folder.path).string());
    ASSERT_NE(SetCurrentDirectoryW(path.c_str()), 0);
    std::wstring buffer(path.size() + 1, L'#');
    EXPECT_EQ(GetCurrentDirectoryW(static_cast<std::uint32_t>(path.size()), buffer.data()), 0U);
    EXPECT_EQ(buffer, std::wstring(path.size() + 1, L'#'));
    EXPECT_EQ(GetCurrentDirectoryW(static_cast<std::uint32_t>(path.size()) + 1, buffer.data()), path.size());
    EXPECT_EQ(buffer, path + L'\0');
    EXPECT_EQ(GetCurrentDirectoryW(0, nullptr), 0U);
}

TEST_F(FileLayerTest, WorkingDirectoryThatIsGoneCannotBeRead)
{
    const WorkingDirectoryKept kept;
    std::filesystem::create_directory(folder / "gone");
    std::filesystem::current_path(folder / "gone");
    std::filesystem::remove(folder / "gone");
    std::array<wchar_t, 2049> buffer{};
    EXPECT_EQ(GetCurrentDirectoryW(2049, buffer.data()), 0U);
}

TEST_F(FileLayerTest, WorkingDirectoryStaysWhenItCannotBeSet)
{
    const WorkingDirectoryKept kept;
    const std::string before = workingDirectory();
    writeFile(folder / "file", "");
    EXPECT_EQ(SetCurrentDirectoryW(widen(folder / "absent").c_str()), 0);
    EXPECT_EQ(SetCurrentDirectoryW(widen(folder / "file").c_str()), 0);
    EXPECT_EQ(SetCurrentDirectoryW(L""), 0);
    EXPECT_EQ(workingDirectory(), before);
}
