// One rehearsed start of the autoloader, and what is seen of it.
#pragma once

#include "cli/Examination.h"

#include "bundle/BundleManager.h"
#include "standalone/Host.h"

#include <functional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

class KestBundle;

namespace cli {

/// Runs the start and fills an examination, step by step. For one examination.
class Examiner
{
public:
    explicit Examiner(standalone::HostSettings settings);

    /// `bringMenusInStep` has the manager find its bundles, and register their menus. The manager is made anew before
    /// it, and left without bundles.
    Examination examine(const std::function<void(KestBundleManager&)>& bringMenusInStep);

private:
    /// What became of a module, script or assembly, by its path.
    struct Seen
    {
        bool isLoaded = false;
        std::string problem; ///< UTF-8, one line
    };
    using SeenByPath = std::unordered_map<std::wstring, Seen>;

    void start(KestBundleManager& manager, const std::function<void(KestBundleManager&)>& bringMenusInStep);
    void rehearseAnotherUpdate(KestBundleManager& manager);
    void takeMenus();
    void takeReadings();
    void takeLog();
    void takeBundles(KestBundleManager& manager);
    void take(ExaminedBundle& bundle, const KestBundle& read);
    BundleState stateOf(const ExaminedBundle& bundle, const KestBundle& kept) const;
    void judge(ExaminedComponent& component, bool isReached);
    bool isRegistered(const std::wstring& menu) const;
    ComponentOutcome startupOutcome(const ExaminedComponent& component) const;
    void rehearseCommands(KestBundleManager& manager);
    OnDemandLoad rehearseCommand(KestBundleManager& manager, const std::wstring& name, const KestComponentEntry& entry);
    SeenByPath seenSince(std::size_t position);
    std::string problemOf(const KestComponentEntry& entry, const SeenByPath& seen);

    standalone::Host host;
    Examination facts;
    std::set<const KestBundle*> menusOnly;
    std::unordered_map<std::wstring, standalone::ManifestRead> readings; ///< by manifest
    std::set<std::wstring> registeredMenus;
    std::unordered_map<std::wstring, standalone::MenuConversion> conversions; ///< by source
    SeenByPath atStartup;
    std::set<std::string> failedPaths;                                ///< of components, as the log shows them
    std::unordered_map<std::string, std::vector<std::string>> logged; ///< messages by path, as the log shows it
};

} // namespace cli
