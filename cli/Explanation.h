// What "kestbundle explain" has to say: the bundles, commands and menus that were asked for, and what was found out
// about them.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"
#include "cli/rules/RuleInput.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cli {

struct ExplainedBundle
{
    const ExaminedBundle* bundle = nullptr;
    Findings findings;
    std::vector<Place> components; ///< of each component its element
};

struct ExplainedCommand
{
    std::wstring name;                      ///< upper case
    std::vector<ComponentPlace> declaredBy; ///< in the order found; last those that are not loaded for it
    std::optional<ComponentPlace> loads;    ///< what its first use loads; nothing: no bundle's component
};

struct ExplainedMenu
{
    std::wstring path;                       ///< as it is, or would be, in the host's list
    std::optional<ComponentPlace> component; ///< nothing: no bundle brings it
};

/// Pointers lead into the examination, which must outlive it.
struct Explanation
{
    explicit Explanation(const Examination& examination) : all(examination) {}

    const Examination& examination() const { return all.examination; }

    RuleInput all;
    bool isOfAll = true; ///< nothing particular was asked for
    std::vector<ExplainedCommand> commands;
    std::vector<ExplainedMenu> menus;
    std::vector<ExplainedBundle> bundles; ///< those asked for, and those behind the commands and menus
    Findings general;                     ///< about roots, menu list and host; only when isOfAll
};

/// Explains what `subjects` name, or everything when there are none. Throws WrongUse when one names nothing.
/// Subjects are narrow, as they came from the command line.
std::unique_ptr<Explanation> explain(const Examination& examination, const std::vector<std::string>& subjects);

/// Whether a finding is more than a note.
bool hasProblems(const Explanation& explanation);

} // namespace cli
