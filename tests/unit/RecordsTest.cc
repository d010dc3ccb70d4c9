#include "manifest/Records.h"

#include "tests/HostDouble.h"
#include "tests/RecordText.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Text = CStdStr<wchar_t>;

/// The texts of each record, in their order in memory.
constexpr Text KestApplicationPackage::*kPackageTexts[] = {
    &KestApplicationPackage::schemaVersion, &KestApplicationPackage::appVersion,  &KestApplicationPackage::author,
    &KestApplicationPackage::name,          &KestApplicationPackage::description, &KestApplicationPackage::icon,
    &KestApplicationPackage::helpFile,      &KestApplicationPackage::productCode, &KestApplicationPackage::upgradeCode};
constexpr Text KestDependentBundle::*kDependencyTexts[] = {
    &KestDependentBundle::upgradeCode, &KestDependentBundle::versionMin, &KestDependentBundle::versionMax};
constexpr Text KestRuntimeRequirements::*kRuntimeTexts[] = {
    &KestRuntimeRequirements::architecture, &KestRuntimeRequirements::os, &KestRuntimeRequirements::platform,
    &KestRuntimeRequirements::seriesMin, &KestRuntimeRequirements::seriesMax};
constexpr Text KestCompanyDetails::*kCompanyTexts[] = {&KestCompanyDetails::name, &KestCompanyDetails::phone,
                                                       &KestCompanyDetails::url, &KestCompanyDetails::email};
constexpr Text KestCommand::*kCommandTexts[] = {&KestCommand::globalName, &KestCommand::localName};

/// A record of nothing but the texts `texts`: they are empty at first, follow each other directly in this order, and
/// a copy has all of them and reports each to the host.
template <typename Record, std::size_t Count>
void expectPlainTexts(Text Record::*const (&texts)[Count])
{
    static_assert(!std::is_polymorphic_v<Record>);
    static_assert(sizeof(Record) == Count * sizeof(Text), "no field but the texts");
    Record record;
    for (std::size_t i = 0; i < Count; ++i) {
        EXPECT_EQ(record.*texts[i], L"") << "text " << i;
        EXPECT_EQ(static_cast<const void*>(&(record.*texts[i])), reinterpret_cast<const Text*>(&record) + i);
        record.*texts[i] = std::to_wstring(i) + L" of a text that is too long to be kept inside the string itself";
    }

    hostdouble::state().stringCopies = 0;
    const Record copy = record;

    EXPECT_EQ(hostdouble::state().stringCopies, Count);
    for (std::size_t i = 0; i < Count; ++i) {
        EXPECT_EQ(copy.*texts[i],
                  std::to_wstring(i) + L" of a text that is too long to be kept inside the string itself");
    }
}

TEST(RecordsTest, ThePackageIsNineTextsInOrderThatCopyWhole)
{
    expectPlainTexts(kPackageTexts);
}

TEST(RecordsTest, ADependencyIsThreeTextsInOrderThatCopyWhole)
{
    expectPlainTexts(kDependencyTexts);
}

TEST(RecordsTest, TheRuntimeRequirementsAreFiveTextsInOrderThatCopyWhole)
{
    expectPlainTexts(kRuntimeTexts);
}

TEST(RecordsTest, TheCompanyIsFourTextsInOrderThatCopyWhole)
{
    expectPlainTexts(kCompanyTexts);
}

TEST(RecordsTest, ACommandIsTwoTextsInOrderThatCopyWhole)
{
    expectPlainTexts(kCommandTexts);
}

TEST(RecordsTest, AGroupIsEmptyAtFirstAndCopiesItsCommandsInOrder)
{
    static_assert(!std::is_polymorphic_v<KestCommands>);
    KestCommands group;
    EXPECT_EQ(group.groupName, L"");
    EXPECT_TRUE(group.commands.empty());
    EXPECT_LT(static_cast<const void*>(&group.groupName), static_cast<const void*>(&group.commands));
    group.groupName = L"Draw";
    group.commands.resize(2);
    group.commands[0].localName = L"kreis";
    group.commands[1].localName = L"linie";

    KestComponentEntry entry;
    entry.commands.push_back(group);
    std::vector<std::string> lines;
    recordtext::appendEntry(lines, entry);

    EXPECT_EQ(lines, (std::vector<std::string>{"entry ctrl=0 flags=0", "  group name=[Draw]",
                                               "    command local=[kreis]", "    command local=[linie]"}));
}

TEST(RecordsTest, AnEntryThatWasNotReadHasEmptyTextsAndNoFlagThatLoadsIt)
{
    static_assert(!std::is_polymorphic_v<KestComponentEntry>);
    const KestComponentEntry entry;

    EXPECT_EQ(entry.appName, L"");
    EXPECT_EQ(entry.moduleName, L"");
    EXPECT_EQ(entry.loadCtrlFlag, 0);
    EXPECT_EQ(entry.pythonVersion, "");
    EXPECT_EQ(entry.loadFlags, 0);
    EXPECT_TRUE(entry.commands.empty());
}

TEST(RecordsTest, AnEntrysFieldsFollowEachOtherInOrder)
{
    const KestComponentEntry entry;
    const void* const fields[] = {&entry.appName,       &entry.moduleName, &entry.loadCtrlFlag,
                                  &entry.pythonVersion, &entry.loadFlags,  &entry.commands};
    for (std::size_t i = 1; i < std::size(fields); ++i) {
        EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
    }
    static_assert(std::is_same_v<decltype(entry.pythonVersion), std::string>);
    static_assert(std::is_same_v<decltype(entry.loadCtrlFlag), std::int32_t>);
    static_assert(std::is_same_v<decltype(entry.loadFlags), std::int32_t>);
}

TEST(RecordsTest, AnEntryCopiesEveryField)
{
    KestComponentEntry entry;
    entry.appName = L"App";
    entry.moduleName = L"/p/X.bundle/app.krx";
    entry.loadCtrlFlag = 3;
    entry.pythonVersion = "python3.8";
    entry.loadFlags = 6;
    entry.commands.emplace_back().groupName = L"G";

    const std::vector<KestComponentEntry> copies = {entry};
    std::vector<std::string> lines;
    recordtext::appendEntry(lines, copies[0]);

    EXPECT_EQ(lines, (std::vector<std::string>{
                         "entry app=[App] module=[/p/X.bundle/app.krx] python=[python3.8] ctrl=3 flags=6",
                         "  group name=[G]"}));
}

TEST(RecordsTest, TheLoadFlagsAreTwoForStartupAndFourForCommands)
{
    EXPECT_EQ(KestComponentEntry::kLoadStartup, 2);
    EXPECT_EQ(KestComponentEntry::kLoadCommand, 4);
}

} // namespace
