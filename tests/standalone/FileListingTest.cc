#include "tests/standalone/HostFixture.h"
#include "tests/standalone/WorkingDirectoryKept.h"

#include "host/FileLayer.h"
#include "host/LocaleText.h"
#include "standalone/FindHandles.h"

#include <cerrno>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <set>
#include <sys/stat.h>

using namespace standalonetest;
using localetext::widen;

namespace {

struct Listed
{
    std::wstring name;
    bool isFolder;
    bool operator==(const Listed&) const = default;
};

void PrintTo(const Listed& entry, std::ostream* out)
{
    *out << localetext::narrow(entry.name) << (entry.isFolder ? "/" : "");
}

class FileListingTest : public HostFixture
{
protected:
    FileListingTest() { std::setlocale(LC_ALL, "C.UTF-8"); }

    static FindHandle first(const std::string& pattern, WIN32_FIND_DATAW& data)
    {
        return FindFirstFileW(widen(pattern).c_str(), &data);
    }

    /// All that a listing of `path` yields.
    static std::vector<Listed> listed(const std::string& path)
    {
        std::vector<Listed> entries;
        WIN32_FIND_DATAW data;
        std::memset(&data, 0x5A, sizeof data);
        const FindHandle handle = first(path + "/*", data);
        if (handle == invalidFindHandle()) {
            ADD_FAILURE() << path << " cannot be listed";
            return entries;
        }
        do {
            entries.push_back({data.cFileName, (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
        } while (FindNextFileW(handle, &data) != 0);
        return entries;
    }

    static std::size_t openDescriptors() { return namesIn("/proc/self/fd").size(); }
};

} // namespace

TEST_F(FileListingTest, ListingIsSortedByCodeUnitsAndTellsFoldersFromFiles)
{
    std::filesystem::create_directory(folder / "b.bundle");
    std::filesystem::create_directory(folder / "B.bundle");
    for (const char* name : {"a", "größe", "水", "z", "-", "\xFF", "\xF0\x9F\x98\x80", ".hidden"}) {
        writeFile(folder / name, "");
    }
    EXPECT_EQ(listed(folder.path), (std::vector<Listed>{{L"-", false},
                                                        {L".", true},
                                                        {L"..", true},
                                                        {L".hidden", false},
                                                        {L"B.bundle", true},
                                                        {L"a", false},
                                                        {L"b.bundle", true},
                                                        {L"größe", false},
                                                        {L"z", false},
                                                        {L"水", false},
                                                        {widen("\xFF"), false},
                                                        {L"\U0001F600", false}}));
}

TEST_F(FileListingTest, EmptyFolderListsItselfAndItsParent)
{
    EXPECT_EQ(listed(folder.path), (std::vector<Listed>{{L".", true}, {L"..", true}}));
}

TEST_F(FileListingTest, LinkIsWhatItLeadsTo)
{
    std::filesystem::create_directory(folder / "folder");
    writeFile(folder / "file", "");
    std::filesystem::create_symlink("folder", folder / "to-folder");
    std::filesystem::create_symlink("file", folder / "to-file");
    std::filesystem::create_symlink("nothing", folder / "to-nothing");
    std::filesystem::create_symlink("to-itself", folder / "to-itself");
    EXPECT_EQ(listed(folder.path), (std::vector<Listed>{{L".", true},
                                                        {L"..", true},
                                                        {L"file", false},
                                                        {L"folder", true},
                                                        {L"to-file", false},
                                                        {L"to-folder", true},
                                                        {L"to-itself", false},
                                                        {L"to-nothing", false}}));
    EXPECT_EQ(listed(folder / "to-folder"), (std::vector<Listed>{{L".", true}, {L"..", true}}));
}

TEST_F(FileListingTest, FolderOfManyEntriesIsListedWhole)
{
    std::vector<Listed> expected = {{L".", true}, {L"..", true}};
    for (int i = 1000; i < 6000; ++i) {
        const std::string name = "entry-with-a-name-of-some-length-" + std::to_string(i);
        writeFile(folder / name, "");
        expected.push_back({widen(name), false});
    }
    EXPECT_TRUE(listed(folder.path) == expected);
}

TEST_F(FileListingTest, LongestNameOfTheSystemFits)
{
    const std::string name(255, 'n');
    writeFile(folder / name, "");
    EXPECT_EQ(listed(folder.path).back(), (Listed{widen(name), false}));
}

TEST_F(FileListingTest, WhatCannotBeListedGivesTheInvalidHandle)
{
    startHost();
    writeFile(folder / "file", "");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    WIN32_FIND_DATAW data;
    EXPECT_EQ(first(folder / "absent/*", data), invalidFindHandle());
    EXPECT_EQ(notices(), std::vector<std::string>{}) << "a folder may be absent";
    EXPECT_EQ(first(folder / "file/*", data), invalidFindHandle());
    EXPECT_EQ(first(folder / "pipe/*", data), invalidFindHandle());
    EXPECT_EQ(notices(),
              (std::vector<std::string>{"\"" + folder / "file/" + "\" cannot be listed: " + std::strerror(ENOTDIR),
                                        "\"" + folder / "pipe/" + "\" cannot be listed: " + std::strerror(ENOTDIR)}));
}

TEST_F(FileListingTest, PatternThatIsNoFolderAndStarGivesTheInvalidHandle)
{
    const WorkingDirectoryKept kept;
    std::filesystem::current_path(folder.path);
    std::filesystem::create_directory(folder / "inside");
    WIN32_FIND_DATAW data;
    for (const std::string& pattern : std::vector<std::string>{"", "*", "/", "inside/*", "./*", folder.path,
                                                               folder / "*.xml", folder / "", folder.path + "*"}) {
        EXPECT_EQ(first(pattern, data), invalidFindHandle()) << pattern;
    }
    const FindHandle root = first("/*", data);
    EXPECT_NE(root, invalidFindHandle()) << "the root folder is a folder";
}

TEST_F(FileListingTest, FindDataHasNoLeftovers)
{
    WIN32_FIND_DATAW data;
    std::memset(&data, 0x5A, sizeof data);
    ASSERT_NE(first(folder / "*", data), invalidFindHandle());
    EXPECT_EQ(data.dwFileAttributes, FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(data.ftLastWriteTime.dwLowDateTime, 0U);
    EXPECT_EQ(data.nFileSizeLow, 0U);
    EXPECT_EQ(data.dwReserved1, 0U);
    EXPECT_STREQ(data.cFileName, L".");
    EXPECT_STREQ(data.cAlternateFileName, L"");
}

TEST_F(FileListingTest, ListingHoldsNoDescriptorBetweenCalls)
{
    const std::size_t before = openDescriptors();
    WIN32_FIND_DATAW data;
    const FindHandle handle = first(folder / "*", data);
    EXPECT_EQ(openDescriptors(), before);
    while (FindNextFileW(handle, &data) != 0) {
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(FileListingTest, ListingIsWhatWasThereWhenItBegan)
{
    writeFile(folder / "a", "");
    WIN32_FIND_DATAW data;
    const FindHandle handle = first(folder / "*", data);
    writeFile(folder / "b", "");
    std::filesystem::remove(folder / "a");
    std::vector<std::wstring> names;
    while (FindNextFileW(handle, &data) != 0) {
        names.push_back(data.cFileName);
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"..", L"a"}));
}

TEST_F(FileListingTest, OuterListingOutlivesTenThousandInnerOnesThatAreAbandoned)
{
    std::set<std::wstring> expected = {L"..", L"."};
    for (int i = 0; i < 1000; ++i) {
        std::filesystem::create_directory(folder / ("bundle" + std::to_string(i)));
        expected.insert(L"bundle" + std::to_wstring(i));
    }
    std::set<std::wstring> seen;
    std::set<FindHandle> handles;
    WIN32_FIND_DATAW outer;
    const FindHandle handle = first(folder / "*", outer);
    do {
        seen.insert(outer.cFileName);
        for (int i = 0; i < 10; ++i) {
            WIN32_FIND_DATAW inner;
            const FindHandle begun = first(folder / localetext::narrow(outer.cFileName) + "/*", inner);
            EXPECT_NE(begun, invalidFindHandle());
            EXPECT_TRUE(handles.insert(begun).second) << "a handle stands for one listing for ever";
        }
    } while (FindNextFileW(handle, &outer) != 0);
    EXPECT_EQ(seen, expected);
}

TEST_F(FileListingTest, HandleOfAListingThatIsGoneReadsAsItsEnd)
{
    WIN32_FIND_DATAW data;
    const FindHandle old = first(folder / "*", data);
    for (int i = 0; i < 1000; ++i) {
        first(folder / "*", data);
    }
    std::wcscpy(data.cFileName, L"untouched");
    EXPECT_EQ(FindNextFileW(old, &data), 0);
    EXPECT_EQ(FindNextFileW(invalidFindHandle(), &data), 0);
    EXPECT_EQ(FindNextFileW(nullptr, &data), 0);
    EXPECT_STREQ(data.cFileName, L"untouched");
}

TEST_F(FileListingTest, EndOfAListingStaysTheEnd)
{
    WIN32_FIND_DATAW data;
    const FindHandle handle = first(folder / "*", data);
    EXPECT_NE(FindNextFileW(handle, &data), 0);
    EXPECT_EQ(FindNextFileW(handle, &data), 0);
    EXPECT_EQ(FindNextFileW(handle, &data), 0);
}

TEST_F(FileListingTest, AbandonedListingsAreBoundedInNumber)
{
    standalone::FindHandles handles;
    int error = 0;
    for (int i = 0; i < 1000; ++i) {
        handles.begin(folder.path.c_str(), error);
    }
    EXPECT_EQ(handles.count(), 32U);
}

TEST_F(FileListingTest, AbandonedListingsAreBoundedInMemory)
{
    for (int i = 0; i < 2000; ++i) {
        writeFile(folder / (std::to_string(i) + std::string(240, 'n')), "");
    }
    standalone::FindHandles handles;
    int error = 0;
    std::size_t one = 0;
    for (int i = 0; i < 40; ++i) {
        handles.begin(folder.path.c_str(), error);
        one = i == 0 ? handles.bytes() : one;
    }
    EXPECT_GT(one, std::size_t{1} << 20);
    EXPECT_EQ(handles.count(), 8U) << "what a walk inside a walk needs is kept, whatever it takes";
}
