// Loading, gathering and the bare order of attempts for any list of bundles, against plain passes over the list.
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "tests/BundleList.h"
#include "tests/FreshManager.h"
#include "tests/PlainPasses.h"

namespace fuzz {

namespace {

constexpr unsigned kMostBundles = 40;

/// Few texts, so that they meet: the empty one, and some that nobody bears.
std::wstring identity(Input& input)
{
    const unsigned number = input.below(kMostBundles + 4);
    return number == 0 ? L"" : std::to_wstring(number);
}

BundleList bundleList(Input& input)
{
    static const std::wstring kModules[] = {L"/m.lsp", L"/m.cuix", L"/m.krx", L"/m.mnu", L"/m.txt", L"", L"/m.dll"};
    BundleList list;
    for (unsigned left = input.below(4); left > 0; --left) {
        list.loadedBefore.push_back(identity(input));
    }
    while (!input.isEmpty() && list.rows.size() < kMostBundles) {
        BundleList::Row row;
        const unsigned kind = input.below(64); // components, attempts, state
        row.identity = kind % 2 == 0 ? std::to_wstring(list.rows.size()) : identity(input);
        for (unsigned left = kind / 2 % 4; left > 0; --left) {
            row.modules.push_back(kModules[input.below(std::size(kModules))]);
        }
        row.isLoaded = kind / 8 % 8 == 7;
        row.fruitlessAttempts = kind / 8 % 4 == 1 ? 1 + static_cast<int>(input.below(4)) : 0;
        for (unsigned left = input.below(4); left > 0; --left) {
            row.dependencies.push_back(identity(input));
        }
        list.rows.push_back(std::move(row));
    }
    return list;
}

void orderBundles(std::string_view bytes)
{
    Input input(bytes);
    unsigned calls = input.below(64);
    const BundleList list = bundleList(input);
    restartManagerAndHost();
    hostdouble::State& host = hostdouble::state();
    host.brokenModules = {L"/m.krx"};
    host.convertedMenus = {{L"/m.mnu", L"/converted.cuix"}};

    KestBundleManager attempted;
    list.fill(attempted);
    plainpasses::Attempts expectedAttempts(list);
    expectedAttempts.inPasses(attempted);
    plainpasses::Attempts attempts(list);
    attempts.inDependencyOrder(attempted);
    require(attempts.positions == expectedAttempts.positions, "the order of the attempts");

    KestBundleManager tested;
    KestBundleManager plain;
    list.fill(tested);
    list.fill(plain);
    for (unsigned left = 1 + calls % 4; left > 0; --left) {
        calls /= 2;
        const bool gathers = calls % 2 == 0;
        const auto before = host.configuration;
        const std::string expected =
            plainpasses::outcome(plain, gathers ? plainpasses::gatherInPasses : plainpasses::loadInPasses);
        host.configuration = before;
        const std::string actual = plainpasses::outcome(
            tested, [&](KestBundleManager& own) { gathers ? own.loadBundleCuix() : own.loadBundle(); });
        requireEqual(actual, expected, gathers ? "what gathering menus does" : "what loading does");
    }
}

const Register kOrder("order", orderBundles);

} // namespace

} // namespace fuzz
