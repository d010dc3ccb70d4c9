// In which order loadBundle() loads the bundles, and when it ends.
#include "tests/AutoloaderTest.h"

#include <stdexcept>

namespace {

using Lines = std::vector<std::string>;
using Identities = std::vector<std::wstring>;

class LoadOrderTest : public AutoloaderTest
{
protected:
    /// Adds a bundle with one LISP file, "<upgradeCode>.lsp", whose queuing shows that the bundle was loaded.
    KestBundle& addLisp(const std::wstring& upgradeCode, const Identities& dependencies = {})
    {
        KestBundle& bundle = addBundle(upgradeCode, dependencies);
        addComponent(bundle, upgradeCode + L".lsp");
        return bundle;
    }

    /// Runs loadBundle(); what was loaded, in order, as the identities joined by blanks.
    std::string load()
    {
        host.calls.clear();
        manager().loadBundle();
        std::string order;
        for (const std::string& call : host.calls) {
            const std::size_t begin = call.find('"') + 1;
            EXPECT_EQ(call, "kds_queueexpr((LOAD " + call.substr(begin - 1, call.find('"', begin) - begin + 2) +
                                ")) -> 5100");
            order += (order.empty() ? "" : " ") + call.substr(begin, call.find(".lsp") - begin);
        }
        return order;
    }

    Identities loaded()
    {
        Identities identities;
        for (const KestBundleStatus& status : manager().loadedStatus) {
            identities.push_back(status.upgradeCode);
        }
        return identities;
    }

    void TearDown() override { EXPECT_EQ(problems(), "") << "the order writes nothing to the log"; }
};

TEST_F(LoadOrderTest, WithoutBundlesNothingHappens)
{
    manager().loadedStatus.push_back({L"earlier"});
    EXPECT_EQ(load(), "");
    EXPECT_EQ(loaded(), (Identities{L"earlier"}));
}

TEST_F(LoadOrderTest, BundlesWithoutDependenciesAreLoadedInListOrder)
{
    addLisp(L"c");
    addLisp(L"a");
    addLisp(L"b");
    EXPECT_EQ(load(), "c a b");
    EXPECT_EQ(loaded(), (Identities{L"c", L"a", L"b"}));
}

TEST_F(LoadOrderTest, ADependencyLaterInTheListIsLoadedFirstAndItsDependentInTheNextPass)
{
    addLisp(L"A", {L"B"});
    addLisp(L"B");
    addLisp(L"C");
    EXPECT_EQ(load(), "B C A");
    EXPECT_EQ(loaded(), (Identities{L"B", L"C", L"A"}));
}

TEST_F(LoadOrderTest, ADependencyEarlierInTheListIsSeenInTheSamePass)
{
    addLisp(L"B");
    addLisp(L"A", {L"B"});
    addLisp(L"C");
    EXPECT_EQ(load(), "B A C");
}

TEST_F(LoadOrderTest, AllDependenciesMustBeLoaded)
{
    addLisp(L"D", {L"A", L"B", L"C"});
    addLisp(L"C", {L"B"});
    addLisp(L"A");
    addLisp(L"B");
    EXPECT_EQ(load(), "A B C D");
}

TEST_F(LoadOrderTest, ADependencyRecordGivenTwiceIsSatisfiedTwice)
{
    addLisp(L"A", {L"B", L"B"});
    addLisp(L"B");
    EXPECT_EQ(load(), "B A");
}

TEST_F(LoadOrderTest, ADependencyThatTwoBundlesSatisfyCountsOnce)
{
    addLisp(L"B");
    addLisp(L"B");
    addLisp(L"A", {L"B", L"missing"});
    EXPECT_EQ(load(), "B B");
}

TEST_F(LoadOrderTest, ABundleWithAMissingDependencyIsNeverLoadedAndNotReported)
{
    KestBundle& bundle = addLisp(L"A", {L"missing"});
    EXPECT_EQ(load(), "");
    EXPECT_FALSE(bundle.getIsLoad());
    EXPECT_EQ(loaded(), Identities());
}

TEST_F(LoadOrderTest, ABundleThatDependsOnItselfIsNeverLoaded)
{
    addLisp(L"A", {L"A"});
    addLisp(L"B");
    EXPECT_EQ(load(), "B");
}

TEST_F(LoadOrderTest, TwoBundlesThatDependOnEachOtherAreNeverLoadedAndNotReported)
{
    addLisp(L"A", {L"B"});
    addLisp(L"B", {L"A"});
    EXPECT_EQ(load(), "");
    EXPECT_EQ(loaded(), Identities());
}

TEST_F(LoadOrderTest, TheInnocentAreLoadedBesideACycle)
{
    addLisp(L"A", {L"B"});
    addLisp(L"D", {L"C"});
    addLisp(L"B", {L"A"});
    addLisp(L"C");
    addLisp(L"E", {L"A"});
    EXPECT_EQ(load(), "C D");
}

TEST_F(LoadOrderTest, IdentitiesAreComparedExactly)
{
    addLisp(L"b");
    addLisp(L"B ");
    addLisp(L"Bx");
    addLisp(L"A", {L"B"});
    EXPECT_EQ(load(), "b B  Bx");
}

TEST_F(LoadOrderTest, VersionBoundsOfADependencyPlayNoPart)
{
    KestBundle& bundle = addLisp(L"A", {L"B"});
    bundle.dependentBundles[0].versionMin = L"9";
    bundle.dependentBundles[0].versionMax = L"1";
    addLisp(L"B").package.appVersion = L"5";
    EXPECT_EQ(load(), "B A");
}

TEST_F(LoadOrderTest, ALoadedBundleIsPassedOverAndCountsOnlyByItsRecord)
{
    addLisp(L"A").isLoad = true;
    addLisp(L"B").isLoad = true;
    manager().loadedStatus.push_back({L"B"});
    addLisp(L"C", {L"A"});
    addLisp(L"D", {L"B"});
    EXPECT_EQ(load(), "D");
    EXPECT_EQ(loaded(), (Identities{L"B", L"D"}));
}

TEST_F(LoadOrderTest, RecordsOfAnEarlierCallStayAndSatisfy)
{
    addLisp(L"A");
    EXPECT_EQ(load(), "A");
    addLisp(L"B", {L"A"});
    EXPECT_EQ(load(), "B") << "A is loaded and not loaded again";
    EXPECT_EQ(loaded(), (Identities{L"A", L"B"}));
    EXPECT_EQ(load(), "");
    EXPECT_EQ(loaded(), (Identities{L"A", L"B"}));
}

TEST_F(LoadOrderTest, AFailedComponentDoesNotKeepItsBundleFromCountingAsLoaded)
{
    KestBundle& bundle = addBundle(L"A");
    addComponent(bundle, L"/a.dll"); // no library for it
    addLisp(L"B", {L"A"});

    manager().loadBundle();

    EXPECT_EQ(loaded(), (Identities{L"A", L"B"}));
    EXPECT_EQ(problems(), "\n---------------------------------------\n/a.dll loading failed\n");
    restartManager();
}

// Bundles without components never count as loaded, yet every attempt on them is counted.

TEST_F(LoadOrderTest, ABundleWithoutComponentsNeverCountsAsLoaded)
{
    KestBundle& bundle = addBundle(L"A");
    EXPECT_EQ(load(), "");
    EXPECT_FALSE(bundle.getIsLoad());
    EXPECT_EQ(loaded(), Identities());
}

TEST_F(LoadOrderTest, ABundleThatDependsOnOneWithoutComponentsIsNeverLoaded)
{
    addBundle(L"X");
    addBundle(L"Y");
    addLisp(L"Z", {L"X"});
    EXPECT_EQ(load(), "");
    EXPECT_EQ(loaded(), Identities());
}

TEST_F(LoadOrderTest, FruitlessAttemptsOfTheSecondPassEndTheLoadBeforeTheThird)
{
    addLisp(L"C", {L"B"});
    addLisp(L"B", {L"A"});
    addLisp(L"A");
    addBundle(L"X");
    // Attempts: A and X, then B and X: four, as many as there are bundles.
    EXPECT_EQ(load(), "A B");
    EXPECT_EQ(load(), "C") << "the next call counts anew";
}

TEST_F(LoadOrderTest, TheLoadGoesOnWhileFewerAttemptsWereMadeThanThereAreBundles)
{
    addLisp(L"C", {L"B"});
    addLisp(L"B", {L"A"});
    addLisp(L"A");
    addBundle(L"X");
    addLisp(L"never", {L"missing"}); // one bundle more: a third pass
    EXPECT_EQ(load(), "A B C");
}

TEST_F(LoadOrderTest, APassRunsToItsEndWhenTheNumberOfAttemptsIsReachedWithinIt)
{
    addLisp(L"B", {L"A"});
    addLisp(L"A");
    addBundle(L"X");
    addLisp(L"C", {L"B"}); // attempts: A, X, then B, X, C: five of four
    EXPECT_EQ(load(), "A B C");
}

TEST_F(LoadOrderTest, LoadedBundlesCountForTheNumberOfBundles)
{
    addLisp(L"C", {L"B"});
    addLisp(L"B", {L"A"});
    addLisp(L"A");
    addBundle(L"X");
    addLisp(L"loaded").isLoad = true;
    EXPECT_EQ(load(), "A B C") << "five bundles, so that four attempts are no end";
}

bool throwingNetLoad(const CStdStr<wchar_t>& /*path*/, int /*reserved*/)
{
    throw std::runtime_error("the host's own error");
}

TEST_F(LoadOrderTest, AnErrorOfTheHostPassesThroughAndWhatWasLoadedStaysLoaded)
{
    addLisp(L"A");
    addComponent(addBundle(L"T"), L"/t.dll");
    addLisp(L"B");
    host.openLibraries[L"VxManagedCommand.dll"]["netLoad"] = reinterpret_cast<void (*)()>(&throwingNetLoad);

    EXPECT_THROW(manager().loadBundle(), std::runtime_error);
    EXPECT_EQ(loaded(), (Identities{L"A"}));

    host.openLibraries[L"VxManagedCommand.dll"]["netLoad"] = hostdouble::netLoadAddress();
    manager().loadBundle();
    EXPECT_EQ(loaded(), (Identities{L"A", L"T", L"B"}));
}

} // namespace
