#include "cli/rules/AllRules.h"

#include "cli/rules/CommandRules.h"
#include "cli/rules/ComponentRules.h"
#include "cli/rules/DependencyRules.h"
#include "cli/rules/HostRules.h"
#include "cli/rules/MenuRules.h"
#include "cli/rules/RequirementRules.h"
#include "cli/rules/SearchRules.h"

namespace cli {

std::vector<const Rule*> allRules()
{
    std::vector<const Rule*> all;
    for (const auto group : {
             searchRules,
             requirementRules,
             dependencyRules,
             componentRules,
             commandRules,
             menuRules,
             hostRules,
         }) {
        const std::vector<const Rule*> rules = group();
        all.insert(all.end(), rules.begin(), rules.end());
    }
    return all;
}

} // namespace cli
