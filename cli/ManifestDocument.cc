#include "cli/ManifestDocument.h"

#include "cli/Shown.h"
#include "standalone/WholeFile.h"
#include "standalone/XmlEncoding.h"

#include <algorithm>
#include <unordered_map>

namespace cli {

namespace {

constexpr std::size_t kLargestFile = std::size_t{256} << 20;
/// Elements and attributes together: far more than anybody writes, and little enough to hold.
constexpr std::size_t kMostKept = 1'000'000;
/// In pieces as the host feeds its parser, so that both judge alike.
constexpr std::size_t kFirstPiece = std::size_t{256} << 10;
constexpr std::size_t kPiece = std::size_t{64} << 10;

/// Makes elements of the tokens of a document, each with its place in the document's text.
class ElementBuilder
{
public:
    ElementBuilder(ManifestDocument& made, std::string_view utf8) : document(made), positions(utf8) {}

    void take(const standalone::TokenBatch& tokens)
    {
        for (std::size_t token = 0; token < tokens.size() && !document.isCut; ++token) {
            if (tokens.isStart(token)) {
                begin(tokens, token);
            } else if (!open.empty()) {
                open.pop_back();
            }
        }
    }

private:
    void begin(const standalone::TokenBatch& tokens, std::size_t token)
    {
        ManifestElement element;
        element.name = tokens.name(token);
        element.parent = open.empty() ? ManifestElement::kNone : open.back();
        const bool isKnown = positions.step(written);
        element.position = isKnown ? written.tag.position : TextPosition{};
        std::unordered_map<std::string_view, TextPosition> places;
        if (isKnown) {
            for (const NamePosition& attribute : written.attributes) {
                places.try_emplace(attribute.name, attribute.position);
            }
        }
        tokens.forEachAttribute(token, [&](const std::wstring& name, std::wstring value) {
            const auto place = places.find(plainUtf8(name));
            element.attributes.push_back(
                {name, std::move(value), place != places.end() ? place->second : TextPosition{}});
        });
        kept += 1 + element.attributes.size();
        document.isCut = kept > kMostKept;
        open.push_back(document.elements.size());
        document.elements.push_back(std::move(element));
    }

    ManifestDocument& document;
    TagPositions positions;
    TagPosition written;
    std::vector<std::size_t> open;
    std::size_t kept = 0;
};

} // namespace

const ManifestAttribute* ManifestElement::find(std::wstring_view attribute) const
{
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const ManifestAttribute& one) { return one.name == attribute; });
    return found != attributes.end() ? &*found : nullptr;
}

bool ManifestDocument::isInside(std::size_t element, std::size_t ancestor) const
{
    while (element != ManifestElement::kNone && element > ancestor) { // what stands around it comes before it
        element = elements[element].parent;
        if (element == ancestor) {
            return true;
        }
    }
    return false;
}

ManifestDocument readManifestDocument(const std::string& path)
{
    ManifestDocument document;
    std::string content;
    document.unreadable = standalone::readWholeFile(path, kLargestFile, content);
    if (!document.unreadable.empty()) {
        return document;
    }
    document.encoding = standalone::encodingOfXml(content);
    const std::string utf8 = standalone::utf8OfXml(content);
    ElementBuilder builder(document, utf8);
    standalone::SaxDocument parser;
    parser.begin();
    std::string_view rest = content;
    for (std::size_t wanted = kFirstPiece; !parser.isMalformed() && !document.isCut; wanted = kPiece) {
        const std::string_view piece = rest.substr(0, wanted);
        rest.remove_prefix(piece.size());
        parser.feed(piece, rest.empty());
        builder.take(parser.tokens());
        if (rest.empty()) {
            break;
        }
    }
    document.isMalformed = parser.isMalformed();
    document.fault = parser.fault();
    return document;
}

} // namespace cli
