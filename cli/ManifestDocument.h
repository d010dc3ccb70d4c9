// A manifest as it is written: its elements with lines and columns, which the autoloader's own records do not keep.
#pragma once

#include "cli/TagPositions.h"
#include "standalone/SaxDocument.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

struct ManifestAttribute
{
    std::wstring name; ///< prefix included, like all names here
    std::wstring value;
    TextPosition position;
};

struct ManifestElement
{
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::wstring name;
    std::size_t parent = kNone;                ///< its index
    TextPosition position;                     ///< of its start tag's "<"
    std::vector<ManifestAttribute> attributes; ///< as written, but declarations of namespaces last

    /// The attribute of that name; null when there is none.
    const ManifestAttribute* find(std::wstring_view attribute) const;
};

/// What stands in a manifest before its first fault.
struct ManifestDocument
{
    std::string unreadable;   ///< UTF-8; why the file cannot be read; empty when it can
    bool isMalformed = false; ///< `fault` then says why
    standalone::XmlFault fault;
    std::string encoding;                  ///< as it is declared; empty: UTF-8
    bool isCut = false;                    ///< it has more elements and attributes than are kept here
    std::vector<ManifestElement> elements; ///< in document order

    /// Whether `element` stands somewhere inside `ancestor`.
    bool isInside(std::size_t element, std::size_t ancestor) const;
};

/// Reads the manifest at the narrow `path` with the parser of the stand-alone host, bounds included. Never fails: what
/// is wrong with it stands in the document. Documents may be read on several threads at once.
ManifestDocument readManifestDocument(const std::string& path);

} // namespace cli
