#include "cli/Explanation.h"

#include "cli/SubjectSearch.h"
#include "cli/rules/Reasons.h"

#include <algorithm>

namespace cli {

namespace {

ExplainedBundle explained(const RuleInput& all, const ExaminedBundle& bundle)
{
    const ManifestPlaces places(bundle);
    ExplainedBundle one{&bundle, findReasons(all, bundle, places), {}};
    one.components.reserve(bundle.components.size());
    for (std::size_t index = 0; index < bundle.components.size(); ++index) {
        one.components.push_back(places.ofComponent(index));
    }
    return one;
}

bool isProblem(const Finding& finding)
{
    return finding.rule->severity != Severity::kNote;
}

bool hasProblem(const Findings& findings)
{
    return std::any_of(findings.begin(), findings.end(), isProblem);
}

} // namespace

std::unique_ptr<Explanation> explain(const Examination& examination, const std::vector<std::string>& subjects)
{
    auto explanation = std::make_unique<Explanation>(examination);
    explanation->isOfAll = subjects.empty();
    std::vector<const ExaminedBundle*> bundles;
    for (const ExaminedBundle& bundle : examination.bundles) {
        if (explanation->isOfAll) {
            bundles.push_back(&bundle);
        }
    }
    for (const std::string& subject : subjects) {
        addSubject(*explanation, bundles, subject);
    }
    for (const ExaminedBundle* bundle : bundles) {
        explanation->bundles.push_back(explained(explanation->all, *bundle));
    }
    if (explanation->isOfAll) {
        explanation->general = findGeneralReasons(examination);
    }
    return explanation;
}

bool hasProblems(const Explanation& explanation)
{
    return hasProblem(explanation.general) ||
           std::any_of(explanation.bundles.begin(), explanation.bundles.end(),
                       [](const ExplainedBundle& one) { return hasProblem(one.findings); });
}

} // namespace cli
