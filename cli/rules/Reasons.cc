#include "cli/rules/Reasons.h"

#include "cli/rules/CommandRules.h"
#include "cli/rules/ComponentRules.h"
#include "cli/rules/DependencyRules.h"
#include "cli/rules/HostRules.h"
#include "cli/rules/MenuRules.h"
#include "cli/rules/RequirementRules.h"
#include "cli/rules/SearchRules.h"

#include <iterator>
#include <utility>

namespace cli {

Findings findReasons(const RuleInput& all, const ExaminedBundle& bundle, const ManifestPlaces& places)
{
    Findings findings;
    const BundleInput input{all, bundle, places};
    addSearchFindings(input, findings);
    addRequirementFindings(input, findings);
    addDependencyFindings(input, findings);
    addComponentFindings(input, findings);
    addCommandFindings(input, findings);
    addMenuFindings(input, findings);
    return findings;
}

Findings findGeneralReasons(const Examination& examination)
{
    Findings findings;
    addRootFindings(examination, findings);
    addMenuListFindings(examination, findings);
    addHostFindings(examination, findings);
    return findings;
}

Findings findReasons(const Examination& examination)
{
    const RuleInput all(examination);
    Findings findings = findGeneralReasons(examination);
    for (const ExaminedBundle& bundle : examination.bundles) {
        Findings ofBundle = findReasons(all, bundle, ManifestPlaces(bundle));
        findings.insert(findings.end(), std::make_move_iterator(ofBundle.begin()),
                        std::make_move_iterator(ofBundle.end()));
    }
    return findings;
}

} // namespace cli
