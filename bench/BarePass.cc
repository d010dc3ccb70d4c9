#include "bench/BarePass.h"

#include <expat.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

namespace bench {

namespace {

void startLibxml(void*, const xmlChar*, const xmlChar*, const xmlChar*, int, const xmlChar**, int, int, const xmlChar**)
{
}

void endLibxml(void*, const xmlChar*, const xmlChar*, const xmlChar*) {}

xmlSAXHandler* emptyHandlers()
{
    static xmlSAXHandler handlers = [] {
        xmlSAXHandler made{};
        made.initialized = XML_SAX2_MAGIC;
        made.startElementNs = startLibxml;
        made.endElementNs = endLibxml;
        return made;
    }();
    return &handlers;
}

void startExpat(void*, const XML_Char*, const XML_Char**) {}
void endExpat(void*, const XML_Char*) {}

} // namespace

LibxmlPass::LibxmlPass() : context(xmlCreatePushParserCtxt(emptyHandlers(), nullptr, nullptr, 0, nullptr)) {}

LibxmlPass::~LibxmlPass()
{
    xmlFreeParserCtxt(context);
}

void LibxmlPass::parse(std::string_view document)
{
    xmlCtxtResetPush(context, nullptr, 0, nullptr, nullptr);
    context->progressive = 0;
    context->charset = XML_CHAR_ENCODING_NONE;
    xmlCtxtUseOptions(context, XML_PARSE_NONET);
    xmlParseChunk(context, document.data(), static_cast<int>(document.size()), 1);
}

ExpatPass::ExpatPass() : parser(XML_ParserCreate(nullptr)) {}

ExpatPass::~ExpatPass()
{
    XML_ParserFree(parser);
}

void ExpatPass::parse(std::string_view document)
{
    XML_ParserReset(parser, nullptr);
    XML_SetElementHandler(parser, startExpat, endExpat);
    XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1);
}

} // namespace bench
