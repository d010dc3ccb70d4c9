// What the rules look at.
#pragma once

#include "cli/DependencyStanding.h"
#include "cli/Examination.h"
#include "cli/rules/ManifestPlaces.h"

#include <unordered_map>
#include <vector>

namespace cli {

/// A component, and the bundle that it belongs to.
struct ComponentPlace
{
    const ExaminedBundle* bundle = nullptr;
    std::size_t component = 0;

    const ExaminedComponent& operator*() const { return bundle->components[component]; }
};

/// What is known about all bundles together. The examination must outlive it.
struct RuleInput
{
    explicit RuleInput(const Examination& facts);

    /// The component that the first use of the command `name`, upper case, loads; null: none.
    const ComponentPlace* loadedBy(const std::wstring& name) const;

    const Examination& examination;
    Dependencies dependencies;
    /// By upper-case command name: the components that declare it to be loaded for it, in the order found.
    std::unordered_map<std::wstring, std::vector<ComponentPlace>> declaredCommands;
    /// By module: the first component with it that declares a command to be loaded for.
    std::unordered_map<std::wstring, ComponentPlace> firstDeclaring;
    /// As declaredCommands, for components that are not to be loaded for it, and declare it nevertheless.
    std::unordered_map<std::wstring, std::vector<ComponentPlace>> idleCommands;
};

/// One bundle, and everything around it.
struct BundleInput
{
    const RuleInput& all;
    const ExaminedBundle& bundle;
    const ManifestPlaces& places;
};

} // namespace cli
