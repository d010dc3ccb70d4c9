#include "tests/growth/HeldBlocks.h"

#include "bundle/BundleManager.h"
#include "manifest/Bundle.h"

#include <map>
#include <string>
#include <vector>

namespace {

/// Adds up the blocks of one thing after the other.
class Sum
{
public:
    const Blocks& total() const { return blocks; }

    template <typename Char>
    void take(const std::basic_string<Char>& text)
    {
        const auto* const begin = reinterpret_cast<const char*>(&text);
        const auto* const characters = reinterpret_cast<const char*>(text.data());
        if (characters < begin || characters >= begin + sizeof text) { // short texts lie in the string itself
            blocks.add(characters);
        }
    }

    template <typename Element>
    void take(const std::vector<Element>& list)
    {
        blocks.add(list.capacity() > 0 ? list.data() : nullptr);
        for (const Element& element : list) {
            take(element);
        }
    }

    template <typename Key, typename Value>
    void take(const std::map<Key, Value>& map)
    {
        for (const auto& entry : map) {
            blocks.add(reinterpret_cast<const char*>(&entry) - kBeforeMapEntry);
            take(entry.first);
            take(entry.second);
        }
    }

    void take(const KestBundleStatus& status) { take(status.upgradeCode); }
    void take(const KestCommand& command) { takeAll(command.globalName, command.localName); }
    void take(const KestCommands& group) { takeAll(group.groupName, group.commands); }

    void take(const KestDependentBundle& dependent)
    {
        takeAll(dependent.upgradeCode, dependent.versionMin, dependent.versionMax);
    }

    void take(const KestComponentEntry& entry)
    {
        takeAll(entry.appName, entry.moduleName, entry.pythonVersion, entry.commands);
    }

    void take(const KestBundle* bundle)
    {
        blocks.add(bundle);
        blocks.add(bundle->xmlReader.get()); // it keeps a few words of its own when it is through
        const KestApplicationPackage& package = bundle->package;
        takeAll(package.schemaVersion, package.appVersion, package.author, package.name, package.description,
                package.icon, package.helpFile, package.productCode, package.upgradeCode);
        const KestRuntimeRequirements& runtime = bundle->runtime;
        takeAll(runtime.architecture, runtime.os, runtime.platform, runtime.seriesMin, runtime.seriesMax);
        const KestCompanyDetails& company = bundle->company;
        takeAll(company.name, company.phone, company.url, company.email);
        takeAll(bundle->dependentBundles, bundle->commandModuleMap, bundle->pythonVersionMap, bundle->components,
                bundle->xmlPath, bundle->bundlePath, bundle->pythonLoadLib, bundle->pythonVersion,
                bundle->pythonLibName, bundle->pythonLibNameM);
    }

    template <typename... Things>
    void takeAll(const Things&... things)
    {
        (take(things), ...);
    }

private:
    /// The standard library keeps the links of a map's node before the entry: a colour and three pointers.
    static constexpr std::size_t kBeforeMapEntry = 4 * sizeof(void*);

    Blocks blocks;
};

} // namespace

Blocks blocksHeldBy(const KestBundleManager& manager)
{
    Sum sum;
    sum.takeAll(manager.bundlePaths, manager.manifestPaths, manager.bundles, manager.loadedStatus, manager.commandMap,
                manager.pythonVersionMap);
    return sum.total();
}
