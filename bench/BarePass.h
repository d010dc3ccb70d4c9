// Parsers that parse and do nothing else: what a loader in XML cannot go below.
#pragma once

#include <string_view>

struct _xmlParserCtxt;
struct XML_ParserStruct;

namespace bench {

/// libxml2's SAX2 interface, as the stand-alone host uses it; the context is kept between documents.
class LibxmlPass
{
public:
    LibxmlPass();
    LibxmlPass(const LibxmlPass&) = delete;
    LibxmlPass& operator=(const LibxmlPass&) = delete;
    ~LibxmlPass();

    void parse(std::string_view document);

private:
    _xmlParserCtxt* context;
};

/// Expat; the parser is kept between documents.
class ExpatPass
{
public:
    ExpatPass();
    ExpatPass(const ExpatPass&) = delete;
    ExpatPass& operator=(const ExpatPass&) = delete;
    ~ExpatPass();

    void parse(std::string_view document);

private:
    XML_ParserStruct* parser;
};

} // namespace bench
