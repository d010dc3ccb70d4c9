// Trees of bundles for measurements: the same for the same description, on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace bench {

enum class Dependencies
{
    kNone,
    kMixed, ///< up to three for each bundle, on bundles before and behind it in the list, without circles
    kChain, ///< each on the next in the list, so that the last is the first to be loaded
};

struct TreeDescription
{
    std::size_t bundles = 0;
    Dependencies dependencies = Dependencies::kMixed;
    std::size_t manifestBytes = 2048;  ///< filled up by a comment; more when the rest takes more
    std::size_t commandsPerBundle = 4; ///< each loads its component when it is first used
    bool hasMenus = false;             ///< each bundle brings a menu as well
    bool hasBroken = false;            ///< every tenth manifest is cut off in its middle
    std::uint32_t seed = 1;
};

/// Bundle number `bundle` of the tree, from 0. Names sort by number.
std::string bundleName(std::size_t bundle);
std::string manifestOf(const TreeDescription& tree, std::size_t bundle);

/// The same bundles as other systems of this kind describe their plug-ins.
std::string keyFileOf(const TreeDescription& tree, std::size_t bundle);
std::string jsonOf(const TreeDescription& tree, std::size_t bundle);

/// Where the bundles of the home folder `home` lie.
std::filesystem::path bundleFolder(const std::filesystem::path& home);

/// Writes the tree into `folder`: "home" with the bundles, and with `forOthers` also "keyfiles" and "json".
void writeTree(const TreeDescription& tree, const std::filesystem::path& folder, bool forOthers);

} // namespace bench
