#include "standalone/SaxDocument.h"

#include "standalone/XmlMessages.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <memory>
#include <new>

namespace standalone {

namespace {

/// Deeper documents are refused, as the library does itself when it is not fed piece by piece.
constexpr int kDeepest = 256;
/// The library stops entities that grow out of proportion; this stops a large document of modest ones.
constexpr std::size_t kMostExpandedBytes = std::size_t{16} << 20;
/// A parser keeps every name it has met. One that has met more than any honest set of manifests has is not kept.
constexpr int kMostNames = 2000;
constexpr int kMostTableRoom = 4096;

const char* chars(const xmlChar* text)
{
    return reinterpret_cast<const char*>(text);
}

bool hasGrownTooLarge(xmlParserCtxtPtr context)
{
    return xmlDictSize(context->dict) > kMostNames || context->maxatts > kMostTableRoom ||
           context->nsMax > kMostTableRoom;
}

} // namespace

/// What the library calls. Each gets its own parser as first argument: for the content of an entity that is a second
/// one, whose tokens are none of ours. Nothing may be thrown through the library.
struct SaxDocument::Callbacks
{
    static SaxDocument* documentOf(void* target)
    {
        auto* const context = static_cast<xmlParserCtxtPtr>(target);
        auto* const document = static_cast<SaxDocument*>(context->_private);
        return document->context == context && !document->malformed ? document : nullptr;
    }

    /// Runs `add`, which returns whether the token is a good one, for the document behind `target`.
    template <typename Add>
    static void addToken(void* target, const Add& add) noexcept
    {
        SaxDocument* const document = documentOf(target);
        if (document == nullptr) {
            return;
        }
        try {
            if (!add(*document)) {
                document->refuse();
            }
        } catch (const std::bad_alloc&) {
            document->outOfMemory = true;
            document->refuse();
        }
    }

    static void startElement(void* target, const xmlChar* local, const xmlChar* prefix, const xmlChar* /*uri*/,
                             int namespaceCount, const xmlChar** namespaces, int attributeCount, int /*defaulted*/,
                             const xmlChar** attributes) noexcept
    {
        addToken(target, [&](SaxDocument& document) {
            if (++document.depth > kDeepest) {
                document.noteFault("The elements are nested deeper than " + std::to_string(kDeepest) + " levels");
                return false;
            }
            const std::wstring* const name = document.qualifiedName(prefix, local);
            if (name == nullptr) {
                return false;
            }
            document.batch.addStart(*name);
            const bool isGood = addAttributes(document, attributes, attributeCount) &&
                                addNamespaces(document, namespaces, namespaceCount);
            if (!isGood) {
                document.batch.dropNewest();
            }
            return isGood;
        });
    }

    /// `attributes` holds local name, prefix, namespace, begin and end of the value for each.
    static bool addAttributes(SaxDocument& document, const xmlChar** attributes, int count)
    {
        for (const xmlChar** one = attributes; one != attributes + 5 * std::ptrdiff_t{count}; one += 5) {
            const std::wstring* const name = document.qualifiedName(one[1], one[0]);
            if (name == nullptr || !document.appendValue({chars(one[3]), static_cast<std::size_t>(one[4] - one[3])})) {
                return false;
            }
            document.batch.addAttribute(*name);
        }
        return true;
    }

    /// Declarations of namespaces are attributes as well, to who reads names as they are written. `namespaces` holds
    /// prefix and value for each.
    static bool addNamespaces(SaxDocument& document, const xmlChar** namespaces, int count)
    {
        static const auto* const xmlns = reinterpret_cast<const xmlChar*>("xmlns");
        for (const xmlChar** one = namespaces; one != namespaces + 2 * std::ptrdiff_t{count}; one += 2) {
            const std::wstring* const name =
                one[0] == nullptr ? document.qualifiedName(nullptr, xmlns) : document.qualifiedName(xmlns, one[0]);
            if (name == nullptr || !document.appendValue(one[1] == nullptr ? "" : chars(one[1]))) {
                return false;
            }
            document.batch.addAttribute(*name);
        }
        return true;
    }

    static void endElement(void* target, const xmlChar* local, const xmlChar* prefix, const xmlChar* /*uri*/) noexcept
    {
        addToken(target, [&](SaxDocument& document) {
            --document.depth;
            const std::wstring* const name = document.qualifiedName(prefix, local);
            if (name != nullptr) {
                document.batch.addEnd(*name);
            }
            return name != nullptr;
        });
    }

    static void endDocument(void* target) noexcept
    {
        addToken(target, [](SaxDocument& document) {
            // A character that the end of the file cuts in two stays behind, undecoded and without a word.
            const xmlParserInputBufferPtr bytes = document.context->input->buf;
            if (bytes != nullptr && bytes->raw != nullptr && xmlBufUse(bytes->raw) > 0) {
                document.noteFault("The last character is incomplete");
                return false;
            }
            document.isComplete = true;
            return true;
        });
    }

    /// A tree is made for documents with a document type only: the library keeps the declared entities in it.
    static void internalSubset(void* target, const xmlChar* name, const xmlChar* externalId,
                               const xmlChar* systemId) noexcept
    {
        if (static_cast<xmlParserCtxtPtr>(target)->myDoc == nullptr) {
            xmlSAX2StartDocument(target);
        }
        xmlSAX2InternalSubset(target, name, externalId, systemId);
    }

    static void message(void* target, xmlErrorPtr error) noexcept
    {
        auto* const document = static_cast<SaxDocument*>(target);
        if (error->level != XML_ERR_FATAL) {
            return; // names that no namespace stands behind, and the like: the document is well-formed
        }
        try {
            const std::string_view text(error->message != nullptr ? error->message : "The document is not well-formed");
            document->noteFault(text.substr(0, text.find('\n')));
        } catch (const std::bad_alloc&) {
            document->outOfMemory = true;
        }
    }

    static xmlSAXHandler* table()
    {
        static xmlSAXHandler handlers = [] {
            xmlSAXHandler made{};
            made.initialized = XML_SAX2_MAGIC;
            made.startElementNs = startElement;
            made.endElementNs = endElement;
            made.endDocument = endDocument;
            made.internalSubset = internalSubset;
            made.entityDecl = xmlSAX2EntityDecl;
            made.unparsedEntityDecl = xmlSAX2UnparsedEntityDecl;
            made.getEntity = xmlSAX2GetEntity;
            made.getParameterEntity = xmlSAX2GetParameterEntity;
            made.isStandalone = xmlSAX2IsStandalone;
            made.hasInternalSubset = xmlSAX2HasInternalSubset;
            made.hasExternalSubset = xmlSAX2HasExternalSubset;
            // No externalSubset and no resolveEntity: what they would open is not wanted.
            return made;
        }();
        return &handlers;
    }
};

SaxDocument::~SaxDocument()
{
    end();
    xmlFreeParserCtxt(context);
}

void SaxDocument::begin()
{
    isFresh = true;
    firstFault = {};
    expandedBytes = 0;
    depth = 0;
    malformed = false;
    isComplete = false;
    outOfMemory = false;
}

/// Makes the parser ready for a document.
void SaxDocument::prepareParser()
{
    if (context == nullptr) {
        context = xmlCreatePushParserCtxt(Callbacks::table(), nullptr, nullptr, 0, nullptr);
        if (context == nullptr) {
            throw std::bad_alloc();
        }
    } else if (xmlCtxtResetPush(context, nullptr, 0, nullptr, nullptr) != 0) {
        throw std::bad_alloc();
    }
    // Two things that a reset leaves behind: where the last document stood, and that the encoding is known.
    context->progressive = 0;
    context->charset = XML_CHAR_ENCODING_NONE;
    context->_private = this;
    // No network and the library's limits. Every other option would substitute entities, load a document type or
    // forgive faults.
    xmlCtxtUseOptions(context, XML_PARSE_NONET);
    isFresh = false;
}

void SaxDocument::feed(std::string_view bytes, bool isLast)
{
    batch.clear();
    const XmlMessages messages(Callbacks::message, this);
    if (isFresh) {
        prepareParser();
    }
    xmlParseChunk(context, bytes.data(), static_cast<int>(bytes.size()), isLast ? 1 : 0);
    if (outOfMemory) {
        throw std::bad_alloc();
    }
    // Not every fault has a message of its own: a decoder that gives up just ends the document.
    const bool endedEarly = !isComplete && (isLast || context->instate == XML_PARSER_EOF);
    if (context->wellFormed == 0 || endedEarly) {
        noteFault("The document is not well-formed");
    }
}

void SaxDocument::end()
{
    batch.clear();
    if (context == nullptr) {
        return;
    }
    xmlCtxtReset(context); // before all: the tree is no part of what freeing the parser frees
    if (hasGrownTooLarge(context)) {
        names.clear();
        xmlFreeParserCtxt(context);
        context = nullptr;
    }
}

/// Keeps the first fault: what else the library has to say follows from it.
void SaxDocument::noteFault(std::string_view problem)
{
    if (malformed) {
        return;
    }
    malformed = true;
    // The document's own position, also for a fault in the text of an entity, which has lines of its own.
    if (context != nullptr && context->inputNr > 0) {
        firstFault.line = context->inputTab[0]->line;
        firstFault.column = context->inputTab[0]->col;
    }
    firstFault.problem = problem;
}

/// Puts the parser into the state in which a fault of its own leaves it: no more callbacks. Stopping it outright would
/// free the input under code that is still at work on it.
void SaxDocument::refuse()
{
    context->wellFormed = 0;
    context->disableSAX = 1;
    context->errNo = XML_ERR_USER_STOP;
}

/// `prefix:local` as it was written; null, with a fault noted, when the parser keeps too many names.
const std::wstring* SaxDocument::qualifiedName(const unsigned char* prefix, const unsigned char* local)
{
    const xmlChar* const name = prefix == nullptr ? local : xmlDictQLookup(context->dict, prefix, local);
    if (name == nullptr) {
        noteFault("There are too many names");
        return nullptr;
    }
    return &names.of(chars(name));
}

/// Appends the text of a value.
bool SaxDocument::appendValue(std::string_view value)
{
    if (value.find('&') != std::string_view::npos) {
        return appendValueWithReferences(value);
    }
    batch.appendText(value);
    return true;
}

/// The library leaves references to declared entities in a value as they are, and writes every "&" that is text as
/// "&#38;".
bool SaxDocument::appendValueWithReferences(std::string_view value)
{
    for (std::size_t ampersand = 0; (ampersand = value.find('&')) != std::string_view::npos;) {
        const std::size_t length = std::min(value.find(';', ampersand), value.size() - 1) + 1 - ampersand;
        batch.appendText(value.substr(0, ampersand));
        if (!appendReference(value.substr(ampersand, length))) {
            return false;
        }
        value.remove_prefix(ampersand + length);
    }
    batch.appendText(value);
    return true;
}

bool SaxDocument::appendReference(std::string_view reference)
{
    if (reference == "&#38;") {
        batch.appendText("&");
        return true;
    }
    const std::unique_ptr<xmlChar, void (*)(void*)> expanded(
        xmlStringLenDecodeEntities(context, reinterpret_cast<const xmlChar*>(reference.data()),
                                   static_cast<int>(reference.size()), XML_SUBSTITUTE_REF, 0, 0, 0),
        [](void* text) { xmlFree(text); });
    if (expanded == nullptr || context->wellFormed == 0) {
        noteFault("An entity cannot be expanded");
        return false;
    }
    const std::string_view text(chars(expanded.get()));
    expandedBytes += text.size();
    if (expandedBytes > kMostExpandedBytes) {
        noteFault("The entities stand for more than " + std::to_string(kMostExpandedBytes >> 20) + " MB of text");
        return false;
    }
    std::replace_if(
        expanded.get(), expanded.get() + text.size(),
        [](xmlChar one) { return one == '\t' || one == '\n' || one == '\r'; }, xmlChar{' '});
    batch.appendText(text);
    return true;
}

} // namespace standalone
