#include "cli/rules/ManifestPlaces.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"

#include <algorithm>

namespace cli {

namespace {

constexpr std::size_t kNoElement = ManifestElement::kNone;

std::wstring valueOf(const ManifestElement& element, std::wstring_view attribute)
{
    const ManifestAttribute* const found = element.find(attribute);
    return found != nullptr ? found->value : std::wstring();
}

/// Whether `records` were read from `element`.
bool isSourceOf(const ManifestElement& element, const KestRuntimeRequirements& records)
{
    return valueOf(element, BundleStrConst::run_Arc) == records.architecture &&
           valueOf(element, BundleStrConst::run_OS) == records.os &&
           valueOf(element, BundleStrConst::run_Platform) == records.platform &&
           valueOf(element, BundleStrConst::run_SeriesMin) == records.seriesMin &&
           valueOf(element, BundleStrConst::run_SeriesMax) == records.seriesMax;
}

} // namespace

ManifestPlaces::ManifestPlaces(const ExaminedBundle& bundle) : file(bundle.manifest)
{
    if (file.empty() || bundle.state == BundleState::kUnreadable) {
        return;
    }
    document = readManifestDocument(localetext::narrow(file));
    reading = readingOf(document);
    const auto found = std::find_if(reading.requirements.begin(), reading.requirements.end(), [&](std::size_t element) {
        return isSourceOf(document.elements[element], bundle.records.runtime);
    });
    judged = found != reading.requirements.end() ? *found : kNoElement;
}

Place ManifestPlaces::placeOf(std::size_t element, std::wstring_view attribute) const
{
    Place place{file, 0, 0};
    if (element < document.elements.size()) {
        const ManifestElement& one = document.elements[element];
        const ManifestAttribute* const found = attribute.empty() ? nullptr : one.find(attribute);
        const TextPosition& position = found != nullptr ? found->position : one.position;
        place.line = position.line;
        place.column = position.column;
    }
    return place;
}

Place ManifestPlaces::ofFile() const
{
    return {file, 0, 0};
}

Place ManifestPlaces::ofPackage(std::wstring_view attribute) const
{
    return placeOf(hasPackage() ? reading.packages.back() : kNoElement, attribute);
}

Place ManifestPlaces::ofRequirements(std::wstring_view attribute) const
{
    return placeOf(judged, attribute);
}

Place ManifestPlaces::ofDependency(std::size_t index, std::wstring_view attribute) const
{
    return placeOf(index < reading.dependencies.size() ? reading.dependencies[index] : kNoElement, attribute);
}

Place ManifestPlaces::ofComponent(std::size_t index, std::wstring_view attribute) const
{
    return placeOf(index < reading.components.size() ? reading.components[index].entry : kNoElement, attribute);
}

Place ManifestPlaces::ofCommand(std::size_t component, std::size_t command, std::wstring_view attribute) const
{
    const bool isKnown =
        component < reading.components.size() && command < reading.components[component].commands.size();
    return isKnown ? placeOf(reading.components[component].commands[command], attribute) : ofComponent(component);
}

std::optional<std::wstring> ManifestPlaces::componentText(std::size_t index, std::wstring_view attribute) const
{
    const std::size_t entry = index < reading.components.size() ? reading.components[index].entry : kNoElement;
    const ManifestAttribute* const found =
        entry < document.elements.size() ? document.elements[entry].find(attribute) : nullptr;
    return found != nullptr ? std::optional(found->value) : std::nullopt;
}

std::vector<Place> ManifestPlaces::unreadRequirements() const
{
    std::vector<Place> places;
    for (std::size_t element = 0; element < document.elements.size(); ++element) {
        if (document.elements[element].name == BundleStrConst::xml_RuntimeRequirements && !reading.isRead[element]) {
            places.push_back(placeOf(element, L""));
        }
    }
    return places;
}

std::vector<Place> ManifestPlaces::dependenciesWithoutCode() const
{
    std::vector<Place> places;
    for (std::size_t element = 0; element < document.elements.size(); ++element) {
        const bool isRecord = std::binary_search(reading.dependencies.begin(), reading.dependencies.end(), element);
        if (document.elements[element].name == BundleStrConst::xml_DependentBundle && reading.isRead[element] &&
            !isRecord) {
            places.push_back(placeOf(element, L""));
        }
    }
    return places;
}

} // namespace cli
