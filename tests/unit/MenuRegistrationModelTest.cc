// The stored lists against a telling of the rules that is as plain and slow as can be.
#include "tests/AutoloaderTest.h"
#include "tests/MenuListModel.h"
#include "tests/unit/MenuKeys.h"

#include <random>

namespace {

class MenuRegistrationModelTest : public AutoloaderTest
{
protected:
    std::mt19937 random{20240317};

    std::size_t pick(std::size_t below) { return random() % below; }

    /// A list of few different short entries, empty ones among them, so that they meet and contain each other.
    std::wstring anyList()
    {
        static const std::wstring kEntries[] = {L"", L"a", L"b", L"aa", L"ab", L"a/b", L"b/a/b", L"h.cuix", L"A"};
        std::wstring list;
        for (std::size_t count = pick(7); count > 0; --count) {
            list += (pick(4) == 0 ? L"" : L";") + kEntries[pick(std::size(kEntries))];
        }
        return list;
    }
};

TEST_F(MenuRegistrationModelTest, ThousandsOfRandomListsAreStoredAsTheRulesTell)
{
    std::size_t changed = 0;
    for (int round = 0; round < 20000; ++round) {
        const std::wstring hostList = anyList();
        const std::wstring previous = anyList();
        const std::wstring added = anyList();
        host.configuration = {{kHostKey, {hostList}}, {kBundleKey, {previous}}};
        host.calls.clear();

        manager().writeCuixToConfig(added);

        const bool isWritten = !previous.empty() || !added.empty();
        const std::wstring expected = isWritten ? menulistmodel::hostListAfter(hostList, previous, added) : hostList;
        ASSERT_EQ(host.configuration[kHostKey].text, expected)
            << "host " << hostdouble::utf8(hostList) << ", previous " << hostdouble::utf8(previous) << ", added "
            << hostdouble::utf8(added);
        ASSERT_EQ(host.configuration[kBundleKey].text, isWritten ? added : previous);
        ASSERT_EQ(hostdouble::callsTo({"setValue"}).size(), isWritten ? 2U : 0U);
        if (isWritten && !expected.starts_with(hostList)) {
            ++changed;
        }
    }
    EXPECT_GT(changed, 5000U) << "the lists are such that something is taken out often";
}

} // namespace
