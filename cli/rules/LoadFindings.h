// Findings about how a component's file loads: whether a loader takes it, and what comes of that.
#pragma once

#include "cli/rules/RuleInput.h"
#include "cli/rules/RuleTexts.h"

#include <optional>
#include <string>
#include <utility>

namespace cli {

/// One component of a bundle.
struct ComponentInput
{
    const BundleInput& input;
    std::size_t index;

    const ExaminedComponent& facts() const { return input.bundle.components[index]; }
    const KestComponentEntry& record() const { return facts().record; }
    std::optional<std::wstring> text(std::wstring_view attribute) const
    {
        return input.places.componentText(index, attribute);
    }
    /// A finding about the component, at its attribute `attribute` or at its beginning.
    Finding finding(const Rule& rule, std::wstring_view attribute, std::string what) const
    {
        Finding one = findingOf(rule, input.bundle, input.places.ofComponent(index, attribute), std::move(what));
        one.subject = record().moduleName;
        one.component = index;
        return one;
    }
};

void addLoadFindings(const ComponentInput& component, Findings& findings);

} // namespace cli
