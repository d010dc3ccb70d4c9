// The fixture of the unit tests: a fresh manager over a fresh recording host for every test.
#pragma once

#include "bundle/BundleManager.h"
#include "manifest/Bundle.h"
#include "tests/HostDouble.h"

#include <gtest/gtest.h>

class AutoloaderTest : public ::testing::Test
{
protected:
    /// HOME is "/home/user"; the one manager has just been made; no call is recorded yet.
    AutoloaderTest();
    ~AutoloaderTest() override;

    hostdouble::State& host = hostdouble::state();

    /// The one manager.
    KestBundleManager& manager() { return *KestBundleManager::getInstance(); }

    /// Ends the manager and makes it anew, as if the library had been closed and opened again.
    void restartManager();

    /// What the log holds behind the time line.
    std::string problems() const;

    /// Puts a bundle folder `name` with the manifest `root` under the search root `searchRoot` of the recording host.
    void install(const std::wstring& searchRoot, const std::wstring& name, const hostdouble::Document& manifest);

    /// Adds a bundle with the identity `upgradeCode` that depends on `dependencies` to the manager's list.
    KestBundle& addBundle(const std::wstring& upgradeCode, const std::vector<std::wstring>& dependencies = {});

    /// Adds a component to `bundle`: a module at `path`, by default one that loads at start-up.
    static KestComponentEntry& addComponent(KestBundle& bundle, const std::wstring& path,
                                            int loadFlags = KestComponentEntry::kLoadStartup, int loadCtrlFlag = 1);
};

/// What each record of the log begins with.
inline const std::string kSplit = "\n---------------------------------------\n";

inline const std::wstring kAllUsersRoot = L"/usr/local/ORRELIN/ApplicationPlugins";
inline const std::wstring kUserRoot = L"/home/user/.config/ORRELIN/ApplicationPlugins";
inline const std::wstring kProgramRoot = L"/program/ApplicationPlugins";
