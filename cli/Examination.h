// What the autoloader makes of the installed bundles, found out without loading anything: its own code runs in a host
// that rehearses, and this is what it was seen to do. Nothing here knows a rule of the autoloader's.
#pragma once

#include "cli/ErrorLog.h"
#include "manifest/Records.h"
#include "standalone/Host.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// What would become of a component.
enum class ComponentOutcome
{
    kNotReached, ///< its bundle is dropped, or the autoloader never gets to its components
    kLoaded,     ///< at start-up; a LISP file is queued, its evaluation comes later
    kFailed,     ///< at start-up, and the error log says so
    kPassedOver, ///< it is to be loaded at start-up, but no loader takes it, and nobody says so
    kMenu,       ///< its menu is registered
    kMenuFailed, ///< its menu cannot be converted, and nobody says so
    kOnDemand,   ///< it waits for the first use of one of its commands
    kNeither,    ///< it loads neither at start-up nor on demand
};

/// What the first use of a command of an on-demand component would bring.
struct OnDemandLoad
{
    bool isLoaded = false;
    std::string problem; ///< UTF-8, one line; empty when it is loaded, or nobody gives a reason
};

struct ExaminedComponent
{
    KestComponentEntry record; ///< commands have their local names in upper case once the bundle is loaded
    ComponentOutcome outcome = ComponentOutcome::kNotReached;
    std::string problem;                  ///< of kFailed and kMenuFailed: UTF-8, one line
    std::wstring menu;                    ///< of kMenu: the path that is registered
    std::vector<std::wstring> commands;   ///< of kOnDemand: names that it is loaded for, upper case
    std::optional<OnDemandLoad> onDemand; ///< of kOnDemand with such a command
};

/// The one final state of what lies in a root.
enum class BundleState
{
    kNotABundle,         ///< looks like one, and the autoloader does not take it for one
    kUnreadable,         ///< its manifest cannot be opened: it is kept, and counts as empty
    kMalformed,          ///< dropped: its manifest is no well-formed XML
    kRequirementNotMet,  ///< dropped: this host is not what it requires
    kWaiting,            ///< kept, but what it depends on is never loaded
    kKept,               ///< kept, but there is nothing in it to load
    kLoadedWithFailures, ///< loaded; a start-up component failed
    kLoaded,             ///< all start-up components loaded
    kMenusOnly,          ///< has nothing but menus, and they are registered
};

/// The word for `state` in all reports; stable, since scripts read it.
const char* nameOf(BundleState state);

/// What was read of a manifest, as far as the autoloader read it.
struct ManifestRecords
{
    KestApplicationPackage package;
    KestCompanyDetails company;
    KestRuntimeRequirements runtime;
    std::vector<KestDependentBundle> dependencies;
};

struct ExaminedBundle
{
    std::wstring folder;
    std::wstring manifest; ///< empty for kNotABundle
    BundleState state = BundleState::kNotABundle;
    standalone::ManifestRead read;
    ManifestRecords records;
    std::vector<ExaminedComponent> components;
    bool hadMenuTurn = false;        ///< its menus were asked for, if it has any
    std::vector<std::string> logged; ///< the error log's messages about its manifest, as in ErrorLogRecord

    bool isKept() const
    {
        return state != BundleState::kNotABundle && state != BundleState::kMalformed &&
               state != BundleState::kRequirementNotMet;
    }
    bool isLoaded() const
    {
        return state == BundleState::kLoaded || state == BundleState::kLoadedWithFailures ||
               state == BundleState::kMenusOnly;
    }
};

/// A folder in which bundles are searched for.
struct ExaminedRoot
{
    std::wstring path;
    bool exists = false;
    std::string problem; ///< UTF-8; why it cannot be listed
};

/// One of the two stored lists of menus; nothing when it is not stored.
struct ExaminedList
{
    std::optional<std::wstring> before;
    std::optional<std::wstring> after;
    std::optional<std::wstring> afterAnother; ///< after one more start with the same bundles
};

struct Examination
{
    standalone::HostSettings host; ///< completed
    std::string home;              ///< narrow
    std::vector<ExaminedRoot> roots;
    std::vector<ExaminedBundle> bundles;           ///< in the order found; those that are none behind all others
    ExaminedList hostMenus;                        ///< all menus that the host loads
    ExaminedList bundleMenus;                      ///< those of them that the autoloader has registered
    std::map<std::wstring, std::wstring> commands; ///< upper-case name to the module that it loads
    std::vector<std::string> notices;              ///< what the host itself had to say; UTF-8
    ErrorLogText log;                              ///< what the error log would hold
    std::string failure;                           ///< UTF-8; the error that ended an entry point, empty when none did
};

/// Examines what is installed for the host of `settings`. HOME is set already. Once in a process: the autoloader's
/// manager lives as long as that does. The working directory is what it was afterwards.
Examination examineInstalled(standalone::HostSettings settings);

/// What is taken for granted about bundles that others depend on and that are not there.
enum class OtherBundles
{
    kMissing,
    kLoaded, ///< they are installed where the bundles are going to be, and load
};

/// Examines the bundle folders `folders`, absolute paths, as if they were installed, and no others but `others`. As
/// above.
Examination examineFolders(standalone::HostSettings settings, const std::vector<std::wstring>& folders,
                           OtherBundles others = OtherBundles::kMissing);

} // namespace cli
