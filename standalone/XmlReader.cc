#include "host/XmlReader.h"

#include "standalone/Host.h"
#include "standalone/RegularFile.h"
#include "standalone/SaxDocument.h"
#include "standalone/Utf8.h"

#include "host/LocaleText.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace standalone {

namespace {

/// Smaller files are read whole and parsed at once; larger ones piece by piece, in memory that does not grow
/// with them.
constexpr std::uint64_t kLargestWhole = std::uint64_t{256} * 1024;
constexpr std::size_t kPiece = std::size_t{64} * 1024;

/// Who asks for the name of one token asks for others, into the same buffer.
constexpr std::size_t kUsualName = 31;

/// What reading takes beside the reader itself; a reader has it while it is at work.
struct Parser
{
    SaxDocument document;
    std::vector<char> bytes;
};

/// The parser that nobody uses now, kept for the next manifest.
constinit Parser* idleParser = nullptr;
/// The process is ending: parsers that still come back are not kept.
constinit bool isEnding = false;

struct AtProcessEnd
{
    ~AtProcessEnd()
    {
        isEnding = true;
        delete std::exchange(idleParser, nullptr);
    }
};

struct GiveBack
{
    void operator()(Parser* parser) const noexcept
    {
        if (idleParser != nullptr || isEnding) {
            delete parser;
            return;
        }
        parser->document.end();
        if (parser->bytes.capacity() > kPiece) {
            std::vector<char>().swap(parser->bytes);
        }
        idleParser = parser;
    }
};

using LentParser = std::unique_ptr<Parser, GiveBack>;

/// The idle parser, or a new one while another reader is still at work with it.
LentParser lendParser()
{
    static const AtProcessEnd ending;
    LentParser parser(idleParser != nullptr ? std::exchange(idleParser, nullptr) : new Parser);
    parser->document.begin();
    return parser;
}

/// Reads nothing until the first token is asked for, and keeps nothing but a few words once the end was reached: the
/// autoloader keeps its readers.
class ManifestReader final : public XmlFilerReader
{
public:
    int checkStartElement() override { return isOnToken() && tokens().isStart(current) ? 0 : 1; }
    int checkEndElement() override { return isOnToken() && !tokens().isStart(current) ? 0 : 1; }

    void attribute(const CStdStr<wchar_t>& name, CStdStr<wchar_t>& value) override
    {
        if (isOnToken()) {
            tokens().value(current, name, value);
        } else {
            value.clear();
        }
    }

    void tokenName(CStdStr<wchar_t>& name) override
    {
        if (isOnToken()) {
            name.reserve(kUsualName);
            name = tokens().name(current);
        } else {
            name.clear();
        }
    }

    int moreTokens() override { return isAtEnd ? 0 : 1; }
    int readOk() override { return isMalformed ? 0 : 1; }

    void readNext() override
    {
        if (isAtEnd) {
            return;
        }
        if (parser == nullptr) {
            parser = lendParser();
        } else if (++current < tokens().size()) {
            return;
        }
        readPieces();
    }

    /// Returns an empty text, or why the file cannot be read. `entry` is the journal entry to amend.
    std::string open(const wchar_t* path, std::size_t entry)
    {
        journalEntry = entry;
        return file.open(localetext::narrow(path).c_str());
    }

private:
    bool isOnToken() const { return parser != nullptr && current < tokens().size(); }
    const TokenBatch& tokens() const { return parser->document.tokens(); }

    /// Parses on until there are tokens, or the document is over.
    void readPieces()
    {
        current = 0;
        while (file.isOpen() && !parser->document.isMalformed()) {
            // One byte more than a small file has: that it does not come says that this was all. The first piece of a
            // large one is large as well: the library is not good at a document type that comes in two.
            const std::uint64_t wanted = hasBegun ? kPiece : std::min(file.size() + 1, kLargestWhole);
            hasBegun = true;
            parser->bytes.resize(static_cast<std::size_t>(wanted));
            std::size_t length = 0;
            if (const std::string problem = file.read(parser->bytes.data(), parser->bytes.size(), length);
                !problem.empty()) {
                finish({problem, 0, 0});
                return;
            }
            parser->document.feed({parser->bytes.data(), length}, !file.isOpen());
            if (tokens().size() > 0) {
                return; // a fault behind them is met when they have been read
            }
        }
        parser->document.isMalformed() ? finish(parser->document.fault()) : finish();
    }

    void finish(const XmlFault& fault)
    {
        isMalformed = true;
        noteInJournal(fault);
        finish();
    }

    void finish()
    {
        isAtEnd = true;
        parser.reset();
        file.close();
    }

    void noteInJournal(const XmlFault& fault) const
    {
        Host* const host = Host::living();
        // A journal that was cleared meanwhile has other entries, or none, at that place.
        if (auto* const read = host != nullptr ? host->journal().amend<ManifestRead>(journalEntry) : nullptr) {
            read->malformed = true;
            read->problem = fault.problem;
            read->line = fault.line;
            read->column = fault.column;
        }
    }

    LentParser parser; ///< while tokens are read
    RegularFile file;
    std::size_t journalEntry = 0;
    std::size_t current = 0; ///< in the tokens of the parser
    bool hasBegun = false;
    bool isAtEnd = false;
    bool isMalformed = false;
};

} // namespace

} // namespace standalone

XmlFilerReader* kestCreateXmlFilerReader(const wchar_t* path)
{
    using namespace standalone;
    Journal& journal = Host::current().journal();
    auto reader = std::make_unique<ManifestReader>();
    std::string problem = reader->open(path, journal.size());
    if (!problem.empty()) {
        journal.add(ManifestRead{path, false, false, std::move(problem), 0, 0});
        return nullptr;
    }
    journal.addRead(path);
    return reader.release();
}
