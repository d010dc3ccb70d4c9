#include "cli/rules/Reasons.h"

#include "cli/rules/CommandRules.h"
#include "cli/rules/ComponentRules.h"
#include "cli/rules/DependencyRules.h"
#include "cli/rules/FormRules.h"
#include "cli/rules/HostRules.h"
#include "cli/rules/MenuRules.h"
#include "cli/rules/RequirementRules.h"
#include "cli/rules/SearchRules.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cli {

namespace {

/// What is misspelt or misplaced is passed over without a word, and what it was to say is missed elsewhere. Names that
/// are merely unknown may be meant for others.
void addFormReasons(const BundleInput& input, Findings& findings)
{
    if (input.places.written().isMalformed) {
        return; // the rest of it has not even been read
    }
    Findings all;
    addFormFindings({input.bundle, input.places.written(), input.places.read()}, all);
    std::copy_if(std::make_move_iterator(all.begin()), std::make_move_iterator(all.end()), std::back_inserter(findings),
                 [](const Finding& one) { return one.rule->severity != Severity::kNote; });
}

} // namespace

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
    addFormReasons(input, findings);
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
