// The order in which bundles are attempted. Its rules are those of passes over the whole list; visiting every bundle
// in every pass would cost the square of the number of bundles, so that only those are visited whose dependencies are
// satisfied: a bundle waits under the identities that it still needs.
#include "bundle/BundleManager.h"
#include "manifest/Bundle.h"

#include <cstdint>
#include <queue>
#include <string_view>
#include <unordered_map>

namespace {

/// Positions in the list, the lowest first.
using Turns = std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>>;

/// Which bundles wait for which identities.
class WaitingBundles
{
public:
    explicit WaitingBundles(const std::vector<KestBundle*>& bundles) : unsatisfied(bundles.size())
    {
        for (std::size_t position = 0; position < bundles.size(); ++position) {
            unsatisfied[position] = bundles[position]->dependentBundles.size();
            for (const KestDependentBundle& dependency : bundles[position]->dependentBundles) {
                const auto [last, isFirst] = lastWaiter.try_emplace(dependency.upgradeCode, waiters.size());
                waiters.push_back({position, isFirst ? kNobody : last->second});
                last->second = waiters.size() - 1;
            }
        }
    }

    bool isReady(std::size_t position) const { return unsatisfied[position] == 0; }

    /// Notes that `identity` is satisfied and calls `onReady` for each bundle that has nothing more to wait for.
    template <typename OnReady>
    void satisfy(std::wstring_view identity, OnReady onReady)
    {
        const auto last = lastWaiter.find(identity);
        if (last == lastWaiter.end()) {
            return; // nobody waits, or it was satisfied before
        }
        for (std::size_t waiter = last->second; waiter != kNobody; waiter = waiters[waiter].next) {
            const std::size_t position = waiters[waiter].position;
            if (--unsatisfied[position] == 0) {
                onReady(position);
            }
        }
        lastWaiter.erase(last);
    }

private:
    static constexpr std::size_t kNobody = SIZE_MAX;

    struct Waiter
    {
        std::size_t position;
        std::size_t next; ///< of those that wait for the same identity; kNobody at the end
    };

    std::vector<std::size_t> unsatisfied; ///< dependency records of each bundle that are not satisfied yet
    std::vector<Waiter> waiters;          ///< one for each dependency record
    std::unordered_map<std::wstring_view, std::size_t> lastWaiter;
};

} // namespace

void KestBundleManager::attemptInDependencyOrder(const std::vector<std::wstring_view>& satisfied,
                                                 const std::function<bool(KestBundle&)>& isDone,
                                                 const std::function<bool(KestBundle&)>& attempt)
{
    WaitingBundles waiting(bundles);
    for (const std::wstring_view identity : satisfied) {
        waiting.satisfy(identity, [](std::size_t) {});
    }
    Turns thisPass;
    Turns nextPass;
    for (std::size_t position = 0; position < bundles.size(); ++position) {
        if (waiting.isReady(position)) {
            thisPass.push(position);
        }
    }

    auto remaining = static_cast<std::int64_t>(bundles.size());
    while (true) {
        std::int64_t left = remaining;
        while (!thisPass.empty()) {
            const std::size_t position = thisPass.top();
            thisPass.pop();
            KestBundle& bundle = *bundles[position];
            if (isDone(bundle)) {
                continue;
            }
            --left;
            if (attempt(bundle)) {
                waiting.satisfy(bundle.package.upgradeCode, [&](std::size_t ready) {
                    (ready > position ? thisPass : nextPass).push(ready); // the pass has gone by those before
                });
            } else {
                nextPass.push(position);
            }
        }
        if (left == remaining || left <= 0) {
            return; // meant: attempts count, not successes, so that fruitless ones end the loop as well
        }
        remaining = left;
        std::swap(thisPass, nextPass);
    }
}
