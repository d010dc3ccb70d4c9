// The recording host's XML reader: it walks the tokens of a document that a test has written down.
#include "tests/HostDoubleRecord.h"

#include "host/XmlReader.h"

namespace hostdouble {

namespace {

class Reader : public XmlFilerReader
{
public:
    explicit Reader(const Document& document) : tokens(document.tokens), isMalformed(document.isMalformed)
    {
        ++state().openReaders;
    }

    ~Reader() override
    {
        record("~XmlFilerReader", {});
        --state().openReaders;
    }

    int checkStartElement() override
    {
        recordCheck("checkStartElement");
        return isAt(Token::kStart) ? 0 : 1;
    }

    int checkEndElement() override
    {
        recordCheck("checkEndElement");
        return isAt(Token::kEnd) ? 0 : -1;
    }

    void attribute(const CStdStr<wchar_t>& name, CStdStr<wchar_t>& value) override
    {
        record("attribute", {utf8(name)});
        for (const auto& [key, text] : tokens.at(position).attributes) {
            if (key == name) {
                value = text;
                return;
            }
        }
        if (state().missingAttribute == MissingAttribute::kEmptiesBuffer) {
            value.clear();
        }
    }

    void tokenName(CStdStr<wchar_t>& name) override
    {
        recordCheck("tokenName");
        name = isOnToken() ? tokens[position].name : L"";
    }

    int moreTokens() override
    {
        recordCheck("moreTokens");
        return isOnToken() ? 7 : 0;
    }

    int readOk() override
    {
        recordCheck("readOk");
        return isMalformed && position >= tokens.size() ? 0 : 3;
    }

    void readNext() override
    {
        record("readNext", {});
        position += hasStarted ? 1 : 0;
        hasStarted = true;
    }

private:
    static void recordCheck(const char* name)
    {
        if (state().recordsReaderChecks) {
            record(name, {});
        }
    }

    bool isOnToken() const { return hasStarted && position < tokens.size(); }
    bool isAt(Token::Kind kind) const { return isOnToken() && tokens[position].kind == kind; }

    std::vector<Token> tokens;
    bool isMalformed;
    bool hasStarted = false;
    std::size_t position = 0;
};

void tokenize(const Element& element, std::vector<Token>& tokens)
{
    tokens.push_back({Token::kStart, element.name, element.attributes});
    tokens.push_back({Token::kOther, L""}); // white space
    for (const Element& child : element.children) {
        tokenize(child, tokens);
    }
    tokens.push_back({Token::kEnd, element.name});
}

} // namespace

std::vector<Token> tokensOf(const Element& element)
{
    std::vector<Token> tokens;
    tokenize(element, tokens);
    return tokens;
}

} // namespace hostdouble

using namespace hostdouble;

XmlFilerReader* kestCreateXmlFilerReader(const wchar_t* path)
{
    const bool fails = record("kestCreateXmlFilerReader", {utf8(path)});
    const auto found = state().documents.find(path);
    if (fails || found == state().documents.end()) {
        return result(static_cast<XmlFilerReader*>(nullptr), "null");
    }
    return result(new Reader(found->second), "reader");
}
