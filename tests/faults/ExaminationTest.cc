#include "tests/faults/EachAllocation.h"

#include "standalone/FolderListing.h"
#include "tests/standalone/HostFixture.h"

using namespace faults;
using namespace standalonetest;

namespace {

/// "name" or "name/" for each entry but "." and "..", when the call number `which` that examines one fails.
std::vector<std::string> listed(const std::string& folder, const Way& way, long which)
{
    standalone::FolderListing listing;
    Progress progress;
    arm(way, which, progress, false);
    const int error = listing.read(folder.c_str());
    disarm();
    EXPECT_EQ(error, 0);
    std::vector<std::string> names;
    for (std::size_t entry = 0; entry < listing.size(); ++entry) {
        const std::wstring name(listing.name(entry));
        if (name != L"." && name != L"..") {
            names.push_back(std::string(name.begin(), name.end()) + (listing.isFolder(entry) ? "/" : ""));
        }
    }
    return names;
}

TEST(ExaminationTest, ALinkThatCannotBeExaminedCountsAsAFolderSoThatListingItTellsWhy)
{
    const OwnFolder folder;
    writeFile(folder / "file", "");
    std::filesystem::create_symlink("file", folder / "link");
    const Way& refused = wayOf("stat", "EACCES");
    EXPECT_EQ(listed(folder.path, refused, 0), (std::vector<std::string>{"file", "link"}));
    EXPECT_EQ(listed(folder.path, refused, 1), (std::vector<std::string>{"file", "link/"}));
}

TEST(ExaminationTest, ALinkToNothingIsNoFolder)
{
    const OwnFolder folder;
    std::filesystem::create_symlink("nothing", folder / "link");
    std::filesystem::create_symlink("itself", folder / "itself");
    EXPECT_EQ(listed(folder.path, wayOf("stat", "EACCES"), 0), (std::vector<std::string>{"itself", "link"}));
}

} // namespace
