#include "standalone/ModuleImage.h"

#include "standalone/ElfFile.h"
#include "standalone/LibrarySearch.h"
#include "standalone/ModuleFile.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <deque>
#include <unordered_set>

namespace standalone {

namespace {

constexpr std::string_view kEntry = "kestModuleEntry";

/// No honest module needs more libraries than this, each with its own.
constexpr std::size_t kMostLibraries = 500;

std::string shown(const std::string& name)
{
    return displayable(std::string_view(name));
}

/// A module with all that it needs: the objects among which the linker looks for a symbol.
class ModuleScope
{
public:
    ModuleScope(const std::string& path, const ModulesInMemory& loaded) : others(loaded)
    {
        Object& module = objects.emplace_back();
        problem = module.file.open(path);
        module.paths = runPathOf(module.file, path, {});
        for (std::size_t index = 0; problem.empty() && index < objects.size(); ++index) {
            addNeeded(index);
        }
    }

    ModuleImage image() const
    {
        ModuleImage image;
        image.problem = problem;
        if (!problem.empty()) {
            return image;
        }
        image.missingLibraries = missing;
        const auto& own = objects.front().file.symbols();
        image.hasEntry = std::any_of(own.begin(), own.end(),
                                     [](const ElfSymbol& one) { return one.isDefined && one.name == kEntry; });
        image.undefinedSymbols = missing.empty() ? undefined() : std::vector<std::string>();
        return image;
    }

private:
    struct Object
    {
        ElfFile file;
        RunPath paths;
    };

    void addNeeded(std::size_t index)
    {
        const Object& needing = objects[index]; // a deque: it stays where it is
        for (const std::string& name : needing.file.neededLibraries()) {
            if (!known.insert(name).second || isLibraryOpen(name) || objects.size() > kMostLibraries) {
                continue;
            }
            const std::string* const other = others.find(name);
            const std::string path = other != nullptr ? *other : findLibrary(name, needing.paths);
            Object library;
            if (path.empty() || !library.file.open(path).empty()) {
                missing.push_back(shown(name));
                continue;
            }
            library.paths = runPathOf(library.file, path, needing.paths);
            objects.push_back(std::move(library));
        }
    }

    std::vector<std::string> undefined() const
    {
        std::unordered_set<std::string_view> offered;
        for (const Object& object : objects) {
            for (const ElfSymbol& symbol : object.file.symbols()) {
                if (symbol.isDefined) {
                    offered.insert(symbol.name);
                }
            }
        }
        std::vector<std::string> names;
        for (const Object& object : objects) {
            for (const ElfSymbol& symbol : object.file.symbols()) {
                const bool isAskedFor = !symbol.isDefined && !symbol.isWeak;
                if (isAskedFor && !offered.contains(symbol.name) && !hostOffers(std::string(symbol.name).c_str())) {
                    names.push_back(shown(std::string(symbol.name)));
                }
            }
        }
        return names;
    }

    const ModulesInMemory& others;
    std::string problem;
    std::deque<Object> objects; ///< the module first, then what it needs, breadth first
    std::unordered_set<std::string> known;
    std::vector<std::string> missing;
};

std::string listed(const std::vector<std::string>& names)
{
    constexpr std::size_t kMostListed = 3;
    std::string text;
    for (std::size_t index = 0; index < std::min(names.size(), kMostListed); ++index) {
        text += (index == 0 ? "" : ", ") + names[index];
    }
    const std::size_t more = names.size() > kMostListed ? names.size() - kMostListed : 0;
    return text + (more > 0 ? " and " + std::to_string(more) + " more" : "");
}

} // namespace

void ModulesInMemory::add(const std::string& path)
{
    ElfFile file;
    if (file.open(path).empty() && !file.ownName().empty()) {
        byName.try_emplace(file.ownName(), path);
    }
}

const std::string* ModulesInMemory::find(const std::string& name) const
{
    const auto found = byName.find(name);
    return found != byName.end() ? &found->second : nullptr;
}

ModuleImage examineModule(const std::string& path, const ModulesInMemory& others)
{
    ModuleImage image;
    image.problem = problemOfModuleFile(path);
    return image.problem.empty() ? ModuleScope(path, others).image() : image;
}

std::string problemOf(const ModuleImage& image)
{
    if (!image.problem.empty()) {
        return image.problem;
    }
    if (!image.missingLibraries.empty()) {
        return "it needs " + listed(image.missingLibraries) + ", which cannot be found";
    }
    if (!image.undefinedSymbols.empty()) {
        return "it asks for " + listed(image.undefinedSymbols) +
               ", which neither the host nor the libraries that it needs offer";
    }
    return image.hasEntry ? "" : "it does not export kestModuleEntry";
}

} // namespace standalone
