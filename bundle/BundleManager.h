// The process-wide manager of all bundles. Chief header of bundle/.
#pragma once

#include "host/StdString.h"

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <vector>

class KestBundle;

/// The identity of a bundle that counts as loaded.
struct KestBundleStatus
{
    CStdStr<wchar_t> upgradeCode;
};

/// Finds the bundles, owns them, loads them in the order of their dependencies, keeps the host's menu list in step and
/// loads components when their commands are first used. There is one in a process; it lives from its first use until
/// the library is unloaded. Nothing in it is ever removed. Everything runs on the thread that calls the entry points.
///
/// An exception of the host passes through every operation to the caller of the entry point.
class KestBundleManager
{
public:
    /// The one manager, made at the first call. Throws std::logic_error when HOME is not set; the next call tries
    /// again.
    static KestBundleManager* getInstance();

    /// Empties the error log and writes the time into it. Throws std::logic_error when HOME is not set.
    KestBundleManager();
    ~KestBundleManager();
    KestBundleManager(const KestBundleManager&) = delete;
    KestBundleManager& operator=(const KestBundleManager&) = delete;

    // Discovery.

    /// Scans the three search roots and appends what it finds to the two path lists.
    void fetchAllBundlePath();
    /// Scans one root: a folder, without "/" at its end.
    void fetchBundlePath(const CStdStr<wchar_t>& root);
    /// Whether `folder` holds a manifest; then its path has been appended to `manifestPaths`.
    bool fetchXmlPath(const CStdStr<wchar_t>& folder);
    /// Reads the manifest of every path found, keeps the sound bundles and drops the others. False when there is no
    /// path, or the lists disagree in length.
    bool collectBundle();

    // Loading.

    /// Loads every bundle that is not loaded yet and whose dependencies are.
    void loadBundle();
    /// Merges the maps of all bundles into `commandMap` and `pythonVersionMap`; of two bundles with the same key the
    /// one earlier in the list wins.
    void collectLoadCommand();
    /// Loads the component that declares the command `name`, in any letter case; null, empty and unknown names are
    /// ignored.
    void loadCommandBundle(const wchar_t* name);

    // Menus.

    /// Gathers the menus of the bundles in the order of their dependencies and registers them with the host.
    void loadBundleCuix();
    /// Replaces the menus registered on the last run by `menuList`, paths joined by ";", in the host's list.
    void writeCuixToConfig(const CStdStr<wchar_t>& menuList);

    // Shared by the above.

    /// Splits `source` at each `delimiter`, one character, into `output`, which is emptied first and never left empty.
    void divString(const CStdStr<wchar_t>& source, const CStdStr<wchar_t>& delimiter, CStringArray& output);

    /// Attempts bundles in passes over the list, each only after all that it depends on are satisfied: at first the
    /// identities `satisfied`, then also those of the bundles for which `attempt` returns true. A bundle for which
    /// `isDone` holds when its turn comes is passed over; one whose attempt returns false is attempted again in the
    /// next pass. Ends after a pass without an attempt, and after the pass in which the number of attempts in all
    /// passes reaches the number of bundles.
    void attemptInDependencyOrder(const std::vector<std::wstring_view>& satisfied,
                                  const std::function<bool(KestBundle&)>& isDone,
                                  const std::function<bool(KestBundle&)>& attempt);

    // The error log.

    /// Writes `text` to the log and flushes it. `text` is a format without arguments: two percent signs are written
    /// as one, every other conversion writes nothing. Null, empty text and a log that is not open are ignored.
    void writeLogLine(const wchar_t* text);
    /// Sets `out` to the local time as "%Y-%m-%d %H:%M:%S".
    void getCurTime(CStdStr<wchar_t>& out);

    struct CloseFile
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::vector<CStdStr<wchar_t>> bundlePaths;               ///< full paths of the bundle folders, in the order found
    std::vector<CStdStr<wchar_t>> manifestPaths;             ///< element i is the manifest of element i of bundlePaths
    std::vector<KestBundle*> bundles;                        ///< owned, made with new; in the order found
    std::vector<KestBundleStatus> loadedStatus;              ///< in the order in which they came to count as loaded
    std::map<CStdStr<wchar_t>, CStdStr<wchar_t>> commandMap; ///< upper-case command name to module path
    std::map<CStdStr<wchar_t>, CStdStr<wchar_t>> pythonVersionMap; ///< path of a ".py" module to its Python version
    std::unique_ptr<std::FILE, CloseFile> logFile;                 ///< null when the log could not be opened
};
