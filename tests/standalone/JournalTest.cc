// The journal: what goes in comes out, packed in between or not.
#include "standalone/Journal.h"

#include <gtest/gtest.h>

namespace {

using standalone::CommandAnnounced;
using standalone::HostNotice;
using standalone::Journal;
using standalone::JournalEntry;
using standalone::ManifestRead;
using standalone::ModuleLoad;

class JournalTest : public testing::Test
{
protected:
    JournalTest()
    {
        journal.addRead(L"/b/Stra\u00DFe.bundle/PackageContents.xml");
        journal.addAnnouncement(L"DRAWGEAR", 3);
        journal.add(HostNotice{"a notice"});
        journal.add(ManifestRead{L"/b/X.bundle/PackageContents.xml", false, false, "No such file or directory", 0, 0});
    }

    /// One line for each of `entries`; what cannot be told apart is "other".
    static std::vector<std::wstring> lines(const std::vector<JournalEntry>& entries)
    {
        std::vector<std::wstring> told;
        for (const JournalEntry& entry : entries) {
            std::wstring& line = told.emplace_back(L"other");
            if (const auto* read = std::get_if<ManifestRead>(&entry)) {
                line = L"read " + read->path + (read->opened ? L" opened" : L"") +
                       (read->malformed ? L" malformed " : L" ") +
                       std::wstring(read->problem.begin(), read->problem.end()) + L" " + std::to_wstring(read->line) +
                       L":" + std::to_wstring(read->column);
            } else if (const auto* announced = std::get_if<CommandAnnounced>(&entry)) {
                line = L"announced " + announced->name + L" " + std::to_wstring(announced->kind);
            } else if (const auto* notice = std::get_if<HostNotice>(&entry)) {
                line = L"notice " + std::wstring(notice->text.begin(), notice->text.end());
            }
        }
        return told;
    }

    const std::vector<std::wstring> added = {L"read /b/Stra\u00DFe.bundle/PackageContents.xml opened  0:0",
                                             L"announced DRAWGEAR 3", L"notice a notice",
                                             L"read /b/X.bundle/PackageContents.xml No such file or directory 0:0"};
    Journal journal;
};

TEST_F(JournalTest, EntriesComeOutAsTheyWentInAndInOrder)
{
    EXPECT_EQ(lines(journal.since(0)), added);
    EXPECT_EQ(lines(journal.since(2)), std::vector<std::wstring>(added.begin() + 2, added.end()));
    EXPECT_EQ(lines(journal.since(4)), std::vector<std::wstring>());
    ASSERT_EQ(journal.size(), added.size());
    for (std::size_t index = 0; index < journal.size(); ++index) {
        EXPECT_EQ(lines({journal.at(index)}).at(0), added[index]);
    }
}

TEST_F(JournalTest, EntriesOfOneKindAreFoundHoweverTheyAreKept)
{
    const auto reads = journal.only<ManifestRead>();
    EXPECT_EQ(lines({reads.begin(), reads.end()}), (std::vector<std::wstring>{added[0], added[3]}));
    EXPECT_EQ(journal.count<ManifestRead>(), 2U);
    EXPECT_EQ(journal.count<CommandAnnounced>(), 1U);
    EXPECT_EQ(journal.count<HostNotice>(), 1U);
    EXPECT_EQ(journal.count<ModuleLoad>(), 0U);
}

TEST_F(JournalTest, AReadThatIsAmendedStaysAmended)
{
    auto* const read = journal.amend<ManifestRead>(0);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(lines({*read}).at(0), added[0]);
    read->malformed = true;
    read->problem = "cut short";
    read->line = 7;
    read->column = 2;
    EXPECT_EQ(lines({journal.at(0)}).at(0),
              L"read /b/Stra\u00DFe.bundle/PackageContents.xml opened malformed cut short 7:2");
    EXPECT_EQ(journal.amend<ManifestRead>(0), read);
}

TEST_F(JournalTest, AnEntryOfAnotherKindOrNoneIsNotAmended)
{
    EXPECT_EQ(journal.amend<ModuleLoad>(0), nullptr);
    EXPECT_EQ(journal.amend<ManifestRead>(1), nullptr);
    EXPECT_EQ(journal.amend<ManifestRead>(2), nullptr);
    EXPECT_EQ(journal.amend<ManifestRead>(4), nullptr);
    EXPECT_EQ(lines(journal.since(0)), added);
}

TEST_F(JournalTest, AClearedJournalStartsAnew)
{
    journal.clear();
    EXPECT_EQ(journal.size(), 0U);
    EXPECT_EQ(journal.amend<ManifestRead>(0), nullptr);
    EXPECT_EQ(journal.addAnnouncement(L"AGAIN", 4), 0U);
    EXPECT_EQ(lines(journal.since(0)), std::vector<std::wstring>{L"announced AGAIN 4"});
}

} // namespace
