#include "cli/rules/AllRules.h"

#include "cli/rules/CommandRules.h"
#include "cli/rules/ComponentRules.h"
#include "cli/rules/DependencyRules.h"
#include "cli/rules/FileRules.h"
#include "cli/rules/FormRules.h"
#include "cli/rules/HostRules.h"
#include "cli/rules/MenuRules.h"
#include "cli/rules/ModuleRules.h"
#include "cli/rules/RequirementRules.h"
#include "cli/rules/SearchRules.h"
#include "cli/rules/ValueRules.h"

namespace cli {

std::vector<const Rule*> allRules()
{
    std::vector<const Rule*> all;
    for (const auto group : {
             searchRules,
             formRules,
             valueRules,
             requirementRules,
             dependencyRules,
             componentRules,
             commandRules,
             menuRules,
             fileRules,
             moduleRules,
             hostRules,
         }) {
        const std::vector<const Rule*> rules = group();
        all.insert(all.end(), rules.begin(), rules.end());
    }
    return all;
}

} // namespace cli
