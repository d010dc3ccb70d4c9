// What the texts of findings tell an author to change, done for real.
#pragma once

#include "cli/Finding.h"

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace rehearsal {

/// A finding as it is read. All texts are UTF-8.
struct Told
{
    std::string code;
    std::string bundle;
    std::string subject;
    std::string file;
    int line = 0;
    int column = 0;
    std::string expected;
    std::string found;
    std::string mend;
};

/// What is said of a tree.
struct Looked
{
    std::vector<Told> findings;
    std::map<std::string, std::string> states; ///< by bundle folder

    bool isLoaded(const std::string& folder) const;
};

/// The tree that mends are applied to. One mend, then it is made anew.
struct MendTree
{
    std::filesystem::path top;           ///< nothing outside it is touched
    std::filesystem::path plugins;       ///< where new bundles go
    std::filesystem::path configuration; ///< of the host
    std::filesystem::path soundModule;   ///< a native module that loads
    std::function<void()> installEngines = [] {};
    std::function<Looked()> look;

    // Notes of the mend that is being made; the tree itself lies on the disk.
    mutable std::map<std::string, std::string> moved; ///< bundle folders that it gave another path
    mutable std::set<std::string> removed;            ///< bundle folders that it took away

    /// Makes the file at `path` one that its loader takes, told by its name.
    void writeSound(const std::filesystem::path& path) const;
    /// Makes a bundle that loads, with that UpgradeCode.
    void installBundle(const std::string& upgradeCode) const;
};

/// One of the things that a mend's text offers.
struct Mend
{
    const cli::Rule* rule;
    std::string_view text; ///< the part of the text that offers it
    /// False: it cannot be done here, and nothing was changed.
    bool (*apply)(const Told& told, const MendTree& tree);
    bool hasLinesMoved = false; ///< findings may stand on other lines afterwards
    bool mayUnload = false;     ///< it makes something count that was passed over
};

/// All that is offered for rules whose findings tell why something does not load.
const std::vector<Mend>& allMends();

/// Rules whose mends lie outside of every tree, or that have none, with the reason.
const std::map<std::string, std::string>& rulesWithoutMend();

} // namespace rehearsal
