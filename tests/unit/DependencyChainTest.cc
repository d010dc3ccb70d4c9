// What the order of attempts costs when bundles and dependencies are many. Work is counted, never timed.
#include "tests/AutoloaderTest.h"
#include "tests/BundleList.h"

#include <pthread.h>

namespace {

using Identities = std::vector<std::wstring>;
using DependencyChainTest = AutoloaderTest;

TEST_F(DependencyChainTest, TenThousandBundlesAgainstTheListOrderAreEachLookedAtOnce)
{
    constexpr std::size_t kLength = 10'000;
    KestBundleManager own;
    chainAgainstTheListOrder(kLength).fill(own);
    Identities attempts;
    std::size_t questions = 0;

    own.attemptInDependencyOrder(
        {},
        [&](const KestBundle& /*bundle*/) {
            ++questions;
            return false;
        },
        [&](const KestBundle& bundle) {
            attempts.push_back(bundle.package.upgradeCode);
            return true;
        });

    Identities expected;
    for (std::size_t i = kLength; i > 0; --i) {
        expected.push_back(std::to_wstring(i - 1));
    }
    EXPECT_TRUE(attempts == expected);
    EXPECT_EQ(questions, kLength);
}

TEST_F(DependencyChainTest, TenThousandBundlesAgainstTheListOrderAreAllLoaded)
{
    constexpr std::size_t kLength = 10'000;
    KestBundleManager own;
    chainAgainstTheListOrder(kLength).fill(own);

    own.loadBundle();

    ASSERT_EQ(own.loadedStatus.size(), kLength);
    for (std::size_t i = 0; i < kLength; ++i) {
        ASSERT_EQ(own.loadedStatus[i].upgradeCode, std::to_wstring(kLength - 1 - i));
    }
    EXPECT_EQ(hostdouble::callsTo({"kds_queueexpr"}).size(), kLength) << "none is loaded twice";
}

TEST_F(DependencyChainTest, AVeryLongChainNeedsNoDeepStack)
{
    constexpr std::size_t kLength = 100'000;
    KestBundleManager own;
    chainAgainstTheListOrder(kLength).fill(own);

    pthread_attr_t attributes{};
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread{};
    const auto run = [](void* manager) -> void* {
        static_cast<KestBundleManager*>(manager)->loadBundle();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &own), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);

    ASSERT_EQ(own.loadedStatus.size(), kLength);
    EXPECT_EQ(own.loadedStatus.front().upgradeCode, std::to_wstring(kLength - 1));
    EXPECT_EQ(own.loadedStatus.back().upgradeCode, L"0");
}

TEST_F(DependencyChainTest, TenThousandBundlesThatWaitForOneAreAllFreedByIt)
{
    BundleList list;
    for (int i = 0; i < 10'000; ++i) {
        list.rows.push_back({std::to_wstring(i), {L"hub"}, {L"/m.lsp"}});
    }
    list.rows.push_back({L"hub", {}, {L"/m.lsp"}});
    KestBundleManager own;
    list.fill(own);

    own.loadBundle();

    ASSERT_EQ(own.loadedStatus.size(), list.rows.size());
    EXPECT_EQ(own.loadedStatus[0].upgradeCode, L"hub");
    for (std::size_t i = 1; i < own.loadedStatus.size(); ++i) {
        ASSERT_EQ(own.loadedStatus[i].upgradeCode, std::to_wstring(i - 1));
    }
}

} // namespace
