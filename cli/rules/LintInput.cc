#include "cli/rules/LintInput.h"

#include "cli/rules/RuleTexts.h"

#include <utility>

namespace cli {

Finding findingAt(const Rule& rule, const ManifestInput& input, std::size_t element, std::wstring_view attribute,
                  std::string what)
{
    Place place{input.bundle.manifest, 0, 0};
    if (element < input.document.elements.size()) {
        const ManifestElement& found = input.document.elements[element];
        const ManifestAttribute* const written = found.find(attribute);
        const TextPosition& position = written != nullptr ? written->position : found.position;
        place.line = position.line;
        place.column = position.column;
    }
    return findingOf(rule, input.bundle, std::move(place), std::move(what));
}

} // namespace cli
