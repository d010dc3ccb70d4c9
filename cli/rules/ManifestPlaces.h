// Where in a manifest the records of a bundle were read, and what stands there as it is written.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"
#include "cli/ManifestDocument.h"
#include "cli/ManifestReading.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Places of one bundle's manifest, which is read again. An attribute that is not there has the place of its element,
/// an element that is not there has that of the file.
class ManifestPlaces
{
public:
    explicit ManifestPlaces(const ExaminedBundle& bundle);

    Place ofFile() const;
    Place ofPackage(std::wstring_view attribute = L"") const;
    Place ofRequirements(std::wstring_view attribute = L"") const;
    Place ofDependency(std::size_t index, std::wstring_view attribute = L"") const;
    Place ofComponent(std::size_t index, std::wstring_view attribute = L"") const;
    /// The command at this position among all commands of the component, whatever group they stand in.
    Place ofCommand(std::size_t component, std::size_t command, std::wstring_view attribute = L"") const;

    /// The value of a component's attribute as written; nothing when it is not there.
    std::optional<std::wstring> componentText(std::size_t index, std::wstring_view attribute) const;

    const ManifestDocument& written() const { return document; }
    const ManifestReading& read() const { return reading; }
    bool hasPackage() const { return !reading.packages.empty(); }
    /// RuntimeRequirements where nobody looks for them.
    std::vector<Place> unreadRequirements() const;
    /// DependentBundle elements that give no record.
    std::vector<Place> dependenciesWithoutCode() const;

private:
    Place placeOf(std::size_t element, std::wstring_view attribute) const;

    std::wstring file;
    ManifestDocument document;
    ManifestReading reading;
    std::size_t judged = ManifestElement::kNone; ///< the RuntimeRequirements that the records hold
};

} // namespace cli
