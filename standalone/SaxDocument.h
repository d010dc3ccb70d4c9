// XML documents through libxml2's SAX2 interface, piece by piece, strictly.
#pragma once

#include "standalone/TokenBatch.h"
#include "standalone/WideNames.h"

#include <string>
#include <string_view>

struct _xmlParserCtxt;

namespace standalone {

/// What is wrong with a document, and where.
struct XmlFault
{
    std::string problem; ///< UTF-8, one line
    int line = 0;        ///< from 1; 0 when there is none
    int column = 0;      ///< from 1; 0 when there is none
};

/// Parses one document after the other; the parser's memory is used again.
///
/// Judges by the letter: what is not well-formed is refused. Nothing outside the document is ever opened. Nesting and
/// the expansion of entities are bounded. Element content that an entity stands for gives no tokens; the values of
/// attributes are complete. Nothing is printed.
class SaxDocument
{
public:
    SaxDocument() = default;
    ~SaxDocument();
    SaxDocument(const SaxDocument&) = delete;
    SaxDocument& operator=(const SaxDocument&) = delete;

    /// Starts a new document.
    void begin();

    /// Takes the next `bytes` of the document (less than 2 GB); `isLast` when nothing follows. Forgets the tokens of
    /// the piece before. After a fault, or after the last piece, nothing more must be fed.
    void feed(std::string_view bytes, bool isLast);

    /// The tokens of the piece that was fed last, those before the fault when there is one.
    const TokenBatch& tokens() const noexcept { return batch; }

    /// Whether the document is not well-formed; `fault` then says why.
    bool isMalformed() const noexcept { return malformed; }
    const XmlFault& fault() const noexcept { return firstFault; }

    /// Gives back the memory that belongs to the document.
    void end();

private:
    struct Callbacks;

    void prepareParser();
    void noteFault(std::string_view problem);
    void refuse();
    const std::wstring* qualifiedName(const unsigned char* prefix, const unsigned char* local);
    bool appendValue(std::string_view value);
    bool appendValueWithReferences(std::string_view value);
    bool appendReference(std::string_view reference);

    _xmlParserCtxt* context = nullptr;
    WideNames names; ///< of the parser's names that were met as one of an element or attribute
    TokenBatch batch;
    XmlFault firstFault;
    std::size_t expandedBytes = 0; ///< text that came out of entities
    int depth = 0;
    bool isFresh = false; ///< begun, and nothing fed yet
    bool malformed = false;
    bool isComplete = false; ///< the parser has seen the end of a whole document
    bool outOfMemory = false;
};

} // namespace standalone
