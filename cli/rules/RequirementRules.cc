#include "cli/rules/RequirementRules.h"

#include "cli/RequirementComparison.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "host/TextLayer.h"
#include "manifest/BundleStrConst.h"

namespace cli {

namespace {

const Rule& ruleOf(Requirement requirement)
{
    switch (requirement) {
    case Requirement::kProductVersion:
        return kWrongProductVersion;
    case Requirement::kOS:
        return kWrongOS;
    case Requirement::kArchitecture:
        return kWrongArchitecture;
    case Requirement::kPlatform:
        break;
    }
    return kWrongPlatform;
}

/// The attribute that the mismatch `comparison` is about.
std::wstring attributeOf(const RequirementComparison& comparison, const KestRuntimeRequirements& required)
{
    switch (comparison.requirement) {
    case Requirement::kProductVersion: {
        const double min = _wtof(required.seriesMin.c_str());
        const bool isBelow = min != 0.0 && _wtof(comparison.found.c_str()) < min;
        return isBelow ? BundleStrConst::run_SeriesMin : BundleStrConst::run_SeriesMax;
    }
    case Requirement::kOS:
        return BundleStrConst::run_OS;
    case Requirement::kArchitecture:
        return BundleStrConst::run_Arc;
    case Requirement::kPlatform:
        break;
    }
    return BundleStrConst::run_Platform;
}

std::string whatOf(const RequirementComparison& comparison)
{
    if (comparison.requirement == Requirement::kProductVersion) {
        return "The bundle requires a product version " + abridged(comparison.required) + ", and this host is " +
               abridged(comparison.found) + ".";
    }
    if (comparison.required.empty()) {
        return "The bundle names no architecture in its RuntimeRequirements, and this host has one: " +
               named(comparison.found) + ". An architecture that is not named is compared all the same.";
    }
    return "The bundle requires the " + std::string(nameOf(comparison.requirement)) + " " + named(comparison.required) +
           ", and this host is " + named(comparison.found) + ".";
}

/// Whether no bound of the range alone is at fault: the host is below the one and above the other.
bool isOutsideBoth(const RequirementComparison& comparison, const KestRuntimeRequirements& required)
{
    const double found = _wtof(comparison.found.c_str());
    const double max = _wtof(required.seriesMax.c_str());
    return max != 0.0 && max < found && found < _wtof(required.seriesMin.c_str());
}

std::string mendOf(const RequirementComparison& comparison, const KestRuntimeRequirements& required,
                   const std::string& attribute)
{
    if (comparison.requirement == Requirement::kProductVersion) {
        return isOutsideBoth(comparison, required)
                   ? "Change SeriesMin and SeriesMax if the bundle works with this host, or remove both."
                   : "Change " + attribute + " if the bundle works with this host, or remove it.";
    }
    if (localetext::equalIgnoringCase(comparison.required, comparison.found)) {
        return "Write " + attribute + "=" + named(comparison.found) + ": letter case counts.";
    }
    if (comparison.requirement == Requirement::kArchitecture) {
        return "Write Architecture=" + named(comparison.found) +
               " if the bundle works with this host; to require nothing, leave the whole element out.";
    }
    return "Write " + attribute + "=" + named(comparison.found) +
           " if the bundle works with this host, or leave the attribute out to require nothing.";
}

void addMismatch(const BundleInput& input, const RequirementComparison& comparison, Findings& findings)
{
    const std::wstring attribute = attributeOf(comparison, input.bundle.records.runtime);
    Finding finding = findingOf(ruleOf(comparison.requirement), input.bundle, input.places.ofRequirements(attribute),
                                whatOf(comparison));
    const bool isRange = comparison.requirement == Requirement::kProductVersion;
    finding.expected = isRange ? abridged(comparison.required) : named(comparison.required);
    finding.found = isRange ? abridged(comparison.found) : named(comparison.found);
    finding.mend = mendOf(comparison, input.bundle.records.runtime, abridged(attribute));
    findings.push_back(std::move(finding));
}

/// `bound` reads as no number, or as zero, which is no bound.
void addBound(const BundleInput& input, const std::wstring& attribute, const std::wstring& bound, Findings& findings)
{
    if (bound.empty() || _wtof(bound.c_str()) != 0.0) {
        return;
    }
    Finding finding =
        findingOf(kBoundWithoutNumber, input.bundle, input.places.ofRequirements(attribute),
                  abridged(attribute) + "=" + named(bound) + " is no number other than zero, so it bounds nothing.");
    finding.expected = "a product version such as \"26.0\"";
    finding.found = named(bound);
    finding.mend = "Write a number, or leave the attribute out.";
    findings.push_back(std::move(finding));
}

void addVernum(const BundleInput& input, const RequirementComparison& comparison, Findings& findings)
{
    const std::wstring attribute = attributeOf(comparison, input.bundle.records.runtime);
    Finding finding =
        findingOf(kVernumTooShort, input.bundle, input.places.ofRequirements(attribute),
                  "The required " + std::string(nameOf(comparison.requirement)) + " " + named(comparison.required) +
                      " is not compared: the host's VERNUM does not say what the host runs on.");
    finding.expected = "four parts or more, joined by \"_\"";
    finding.found = named(input.all.examination.host.vernum);
    finding.mend = "Nothing in the bundle; the host's VERNUM decides.";
    findings.push_back(std::move(finding));
}

} // namespace

std::vector<const Rule*> requirementRules()
{
    return {&kWrongProductVersion, &kWrongOS,           &kWrongArchitecture,  &kWrongPlatform,
            &kVernumTooShort,      &kArchitectureParts, &kBoundWithoutNumber, &kUnreadRequirements};
}

void addRequirementFindings(const BundleInput& input, Findings& findings)
{
    const KestRuntimeRequirements& required = input.bundle.records.runtime;
    for (const RequirementComparison& comparison : comparisonsOf(input.all.examination, input.bundle)) {
        const bool needsVernum =
            comparison.requirement == Requirement::kOS || comparison.requirement == Requirement::kArchitecture;
        if (!comparison.isMet) {
            addMismatch(input, comparison, findings);
        } else if (needsVernum && !comparison.required.empty() && !isVernumCompared(input.all.examination)) {
            addVernum(input, comparison, findings);
        }
    }
    addBound(input, BundleStrConst::run_SeriesMin, required.seriesMin, findings);
    addBound(input, BundleStrConst::run_SeriesMax, required.seriesMax, findings);
    if (const std::size_t end = required.architecture.find(L'_'); end != std::wstring::npos) {
        Finding finding =
            findingOf(kArchitectureParts, input.bundle, input.places.ofRequirements(BundleStrConst::run_Arc),
                      "Of Architecture=" + named(required.architecture) + " only the part " +
                          named(required.architecture.substr(0, end)) + " is compared.");
        finding.mend = "Nothing, if that part is meant.";
        findings.push_back(std::move(finding));
    }
    for (const Place& place : input.places.unreadRequirements()) {
        Finding finding = findingOf(kUnreadRequirements, input.bundle, place,
                                    "RuntimeRequirements inside Components or DependentBundles are never looked at.");
        finding.mend = "Move the element out, so that it stands directly in ApplicationPackage; then it counts.";
        findings.push_back(std::move(finding));
    }
}

} // namespace cli
