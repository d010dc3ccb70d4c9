// Which findings of the rules are about a menu, or about what a component leaves in the list of menus.
#pragma once

#include "cli/Finding.h"
#include "cli/rules/RuleInput.h"

#include <unordered_map>

namespace cli {

/// Judges each bundle when it is asked about the first time. The examination must outlive it.
class MenuFindings
{
public:
    explicit MenuFindings(const Examination& examination) : all(examination) {}

    /// Why the menu `component` of `bundle` is not registered, or not as itself: the chief finding first, then what it
    /// refers to.
    Findings against(const ExaminedBundle& bundle, const ExaminedComponent& component);

    /// What there is to say about `entry`, which `component` leaves in the list.
    Findings ofEntry(const ExaminedBundle& bundle, const ExaminedComponent& component, const std::wstring& entry);

private:
    const Findings& of(const ExaminedBundle& bundle);

    RuleInput all;
    std::unordered_map<const ExaminedBundle*, Findings> judged;
};

} // namespace cli
