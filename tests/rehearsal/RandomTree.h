// Bundle trees made up by a random number generator: sound ones, and broken in every way that the autoloader is silent
// about.
#pragma once

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace rehearsal {

/// Writes trees into a home and a program folder. The same seed makes the same tree.
class RandomTree
{
public:
    /// `module` is a native module that loads; bundles get links to it.
    RandomTree(std::uint64_t seed, std::filesystem::path homeFolder, std::filesystem::path programFolder,
               std::filesystem::path soundModule);

    /// Makes up to eight bundles, and other things that lie among bundles.
    void write();

private:
    std::size_t below(std::size_t limit);
    bool oneIn(std::size_t chances) { return below(chances) == 0; }
    const char* oneOf(const std::vector<const char*>& choices) { return choices[below(choices.size())]; }

    void writeBundle(const std::filesystem::path& root, std::size_t number);
    std::string manifest(const std::filesystem::path& folder);
    std::string misspelt(std::string text);
    std::string requirements();
    std::string dependencies();
    std::string component(const std::filesystem::path& folder, std::size_t number);
    std::string commandsOf();
    void writeModule(const std::filesystem::path& file, const std::string& extension);

    std::mt19937_64 random;
    std::filesystem::path home;
    std::filesystem::path program;
    std::filesystem::path module;
    // Of the bundle that is being written:
    bool bringsMenusOnly = false;
    std::string previousModule; ///< of its last component
};

} // namespace rehearsal
