// What the autoloader takes the elements of a manifest for: which element became which of its records.
#pragma once

#include "cli/ManifestDocument.h"

#include <cstddef>
#include <vector>

namespace cli {

/// Elements are told by their index in the document.
struct ComponentElements
{
    std::size_t entry = ManifestElement::kNone; ///< of several in one another, the last that was read
    std::vector<std::size_t> commands;          ///< of all its groups, in the order of the record
};

struct ManifestReading
{
    std::vector<std::size_t> packages;         ///< the last one counts
    std::vector<std::size_t> companies;        ///< the last one counts
    std::vector<std::size_t> requirements;     ///< all count
    std::vector<std::size_t> dependencies;     ///< one for each record
    std::vector<ComponentElements> components; ///< one for each record
    std::vector<bool> isRead;                  ///< by element: whether the autoloader reads attributes of it
};

/// Lets the autoloader's reader walk `document` and notes what it asks for. Unlike in a start, requirements are not
/// judged, so that it comes to the end; a manifest that was not read to its end in a start has fewer records. May be
/// called on several threads, which take turns.
ManifestReading readingOf(const ManifestDocument& document);

} // namespace cli
