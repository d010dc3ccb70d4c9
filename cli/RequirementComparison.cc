#include "cli/RequirementComparison.h"

#include "loading/ProductVersion.h"
#include "manifest/BundleLogText.h"

#include <algorithm>

namespace cli {

namespace {

constexpr std::size_t kOSField = 2;
constexpr std::size_t kArchitectureField = 3;

std::vector<std::wstring> partsOf(const std::wstring& text)
{
    std::vector<std::wstring> parts;
    std::size_t begin = 0;
    for (std::size_t end = text.find(L'_'); end != std::wstring::npos; end = text.find(L'_', begin)) {
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    parts.push_back(text.substr(begin));
    return parts;
}

std::wstring rangeOf(const KestRuntimeRequirements& required)
{
    if (required.seriesMin.empty() && required.seriesMax.empty()) {
        return L"";
    }
    if (required.seriesMin.empty()) {
        return L"up to " + required.seriesMax;
    }
    return required.seriesMax.empty() ? L"from " + required.seriesMin
                                      : L"from " + required.seriesMin + L" to " + required.seriesMax;
}

/// Whether the error log has `message`, which joins itself to the path by ": ", about the bundle's manifest.
bool isLogged(const ExaminedBundle& bundle, std::string_view message)
{
    message.remove_prefix(message.find_first_not_of(": "));
    message.remove_suffix(1);
    return std::find(bundle.logged.begin(), bundle.logged.end(), message) != bundle.logged.end();
}

} // namespace

const char* nameOf(Requirement requirement)
{
    switch (requirement) {
    case Requirement::kProductVersion:
        return "product version";
    case Requirement::kOS:
        return "OS";
    case Requirement::kArchitecture:
        return "architecture";
    case Requirement::kPlatform:
        break;
    }
    return "platform";
}

std::vector<std::wstring> vernumFields(const Examination& examination)
{
    return partsOf(examination.host.vernum);
}

bool isVernumCompared(const Examination& examination)
{
    return vernumFields(examination).size() > kArchitectureField;
}

std::vector<RequirementComparison> comparisonsOf(const Examination& examination, const ExaminedBundle& bundle)
{
    const KestRuntimeRequirements& required = bundle.records.runtime;
    const bool isEmpty = required.architecture.empty() && required.os.empty() && required.platform.empty() &&
                         required.seriesMin.empty() && required.seriesMax.empty();
    if (isEmpty && bundle.state != BundleState::kRequirementNotMet) {
        return {};
    }
    const std::wstring range = rangeOf(required);
    std::vector<RequirementComparison> all{
        {Requirement::kProductVersion, range, loading::productVersion, !range.empty(),
         !isLogged(bundle, bundlelogtext::kWrongProductVersion)},
        {Requirement::kOS, required.os, L"", false, !isLogged(bundle, bundlelogtext::kWrongOS)},
        {Requirement::kArchitecture, partsOf(required.architecture).front(), L"", false,
         !isLogged(bundle, bundlelogtext::kWrongArchitecture)},
        {Requirement::kPlatform, required.platform, examination.host.productName, !required.platform.empty(),
         !isLogged(bundle, bundlelogtext::kWrongPlatform)},
    };
    if (isVernumCompared(examination)) {
        const std::vector<std::wstring> fields = vernumFields(examination);
        all[1].found = fields[kOSField];
        all[1].isMade = !required.os.empty();
        all[2].found = fields[kArchitectureField];
        all[2].isMade = true;
    }
    return all;
}

} // namespace cli
