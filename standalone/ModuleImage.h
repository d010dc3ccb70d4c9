// What the dynamic linker would make of a native module, told without loading it.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace standalone {

/// All texts are UTF-8, safe to show on one line.
struct ModuleImage
{
    std::string problem;                       ///< why it is no module at all; empty when it is one
    std::vector<std::string> missingLibraries; ///< needed, by it or by what it needs, and not found
    std::vector<std::string> undefinedSymbols; ///< asked for, and offered neither by the host nor by what it needs
    bool hasEntry = false;                     ///< it exports kestModuleEntry itself
};

/// Modules that would be in memory by then. A module may need another one by the name that it gives itself, and finds
/// it when that was loaded before.
class ModulesInMemory
{
public:
    /// Adds the module at the narrow `path`.
    void add(const std::string& path);

    /// The path of the module that calls itself `name`; null when there is none.
    const std::string* find(const std::string& name) const;

private:
    std::unordered_map<std::string, std::string> byName;
};

/// Examines the file at the narrow `path`, which names a folder. Nothing of it or of a library that it needs is
/// executed. The host is this process; versions of symbols are not compared, and weak symbols may stay undefined.
ModuleImage examineModule(const std::string& path, const ModulesInMemory& others = {});

/// The first thing that keeps the module from loading, as one sentence without a full stop; empty when nothing does.
std::string problemOf(const ModuleImage& image);

} // namespace standalone
