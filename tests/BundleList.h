// Lists of bundles for tests, made by hand, at random or by a rule.
#pragma once

#include "bundle/BundleManager.h"
#include "manifest/Bundle.h"

#include <random>
#include <string>
#include <vector>

/// A list of bundles, from which as many managers as wished are filled.
struct BundleList
{
    struct Row
    {
        std::wstring identity;
        std::vector<std::wstring> dependencies;
        std::vector<std::wstring> modules; ///< none: such a bundle never counts as loaded
        bool isLoaded = false;
        int fruitlessAttempts = 0; ///< before one succeeds, where the test itself attempts
    };
    std::vector<Row> rows;
    std::vector<std::wstring> loadedBefore;

    void fill(KestBundleManager& manager) const
    {
        for (const Row& row : rows) {
            auto* bundle = new KestBundle(L"/f", L"/f/PackageContents.xml");
            manager.bundles.push_back(bundle);
            bundle->package.upgradeCode = row.identity;
            bundle->isLoad = row.isLoaded;
            for (const std::wstring& dependency : row.dependencies) {
                bundle->dependentBundles.emplace_back().upgradeCode = dependency;
            }
            for (const std::wstring& module : row.modules) {
                KestComponentEntry& entry = bundle->components.emplace_back();
                entry.moduleName = module;
                entry.loadCtrlFlag = 1;
                entry.loadFlags = KestComponentEntry::kLoadStartup;
            }
        }
        for (const std::wstring& identity : loadedBefore) {
            manager.loadedStatus.push_back({identity});
        }
    }
};

/// Draws lists that have every shape that matters; the same for the same seed, on every machine.
class Randomness
{
public:
    explicit Randomness(unsigned seed) : engine(seed) {}

    /// From 0 to `bound` - 1. The engine's numbers are the same everywhere, a distribution's are not.
    unsigned below(unsigned bound) { return static_cast<unsigned>(engine() % bound); }
    bool oneIn(unsigned chances) { return below(chances) == 0; }

    /// Cycles, missing and own identities, repeated and empty ones, and records given twice come about by themselves:
    /// identities and dependencies are drawn from few texts.
    BundleList bundleList()
    {
        BundleList list;
        const unsigned size = oneIn(100) ? 40 + below(40) : below(13);
        const bool hasDistinctIdentities = oneIn(2);
        const unsigned density = 1 + below(4);
        const unsigned emptyIn = 2 + below(6); // how rarely a bundle has no components
        for (unsigned i = 0; i < size; ++i) {
            BundleList::Row row;
            row.identity = hasDistinctIdentities ? std::to_wstring(i) : identity(size);
            for (unsigned left = below(density); left > 0; --left) {
                row.dependencies.push_back(identity(size));
                if (oneIn(8)) {
                    row.dependencies.push_back(row.dependencies.back());
                }
            }
            for (unsigned left = oneIn(emptyIn) ? 0 : 1 + below(2); left > 0; --left) {
                row.modules.push_back(L"/" + std::to_wstring(i) + (oneIn(2) ? L".lsp" : L".cuix"));
            }
            row.isLoaded = oneIn(10);
            row.fruitlessAttempts = oneIn(3) ? static_cast<int>(below(4)) : 0;
            list.rows.push_back(std::move(row));
        }
        for (unsigned left = oneIn(4) ? below(4) : 0; left > 0; --left) {
            list.loadedBefore.push_back(identity(size));
        }
        return list;
    }

private:
    std::wstring identity(unsigned size)
    {
        const unsigned number = below(size + 2); // two of them missing at least
        return oneIn(20) ? L"" : std::to_wstring(number);
    }

    std::mt19937 engine;
};

/// Bundle i depends on bundle i + 1: a pass loads one bundle.
inline BundleList chainAgainstTheListOrder(std::size_t length)
{
    BundleList list;
    for (std::size_t i = 0; i < length; ++i) {
        list.rows.push_back({std::to_wstring(i), {}, {L"/m.lsp"}});
        if (i + 1 < length) {
            list.rows.back().dependencies = {std::to_wstring(i + 1)};
        }
    }
    return list;
}
