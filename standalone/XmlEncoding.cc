#include "standalone/XmlEncoding.h"

#include "standalone/XmlMessages.h"

#include <libxml/encoding.h>
#include <libxml/tree.h>

#include <algorithm>
#include <memory>
#include <new>

namespace standalone {

namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

/// Within so many bytes a declaration names its encoding.
constexpr std::size_t kDeclarationRoom = 512;

constexpr std::size_t kPiece = std::size_t{64} << 10;

void ignore(void* /*target*/, xmlErrorPtr /*error*/) {}

xmlCharEncoding encodingByBegin(std::string_view bytes)
{
    return xmlDetectCharEncoding(reinterpret_cast<const unsigned char*>(bytes.data()),
                                 static_cast<int>(std::min<std::size_t>(bytes.size(), 4)));
}

/// The name between the quotes behind "encoding" in the declaration that `bytes` begin with; empty when there is none.
std::string declaredEncoding(std::string_view bytes)
{
    bytes = bytes.substr(0, kDeclarationRoom);
    bytes = bytes.substr(0, bytes.find("?>"));
    const std::size_t word = bytes.find("encoding");
    const std::size_t open = word == std::string_view::npos ? word : bytes.find_first_of("\"'", word);
    if (!bytes.starts_with("<?xml") || open == std::string_view::npos) {
        return "";
    }
    const std::size_t close = bytes.find(bytes[open], open + 1);
    return close == std::string_view::npos ? "" : std::string(bytes.substr(open + 1, close - open - 1));
}

/// `bytes` by way of `decoder`, as far as that goes.
std::string decoded(std::string_view bytes, xmlCharEncodingHandlerPtr decoder)
{
    using Buffer = std::unique_ptr<xmlBuffer, void (*)(xmlBufferPtr)>;
    const Buffer raw(xmlBufferCreate(), xmlBufferFree);
    const Buffer text(xmlBufferCreate(), xmlBufferFree);
    if (raw == nullptr || text == nullptr) {
        throw std::bad_alloc();
    }
    std::string whole;
    for (bool isGood = true; isGood && !bytes.empty();) {
        const std::string_view piece = bytes.substr(0, kPiece);
        bytes.remove_prefix(piece.size());
        xmlBufferAdd(raw.get(), reinterpret_cast<const xmlChar*>(piece.data()), static_cast<int>(piece.size()));
        for (int use = -1; isGood && use != xmlBufferLength(raw.get());) { // until it takes nothing more
            use = xmlBufferLength(raw.get());
            isGood = xmlCharEncInFunc(decoder, text.get(), raw.get()) >= 0;
            whole.append(reinterpret_cast<const char*>(xmlBufferContent(text.get())),
                         static_cast<std::size_t>(xmlBufferLength(text.get())));
            xmlBufferEmpty(text.get());
        }
    }
    xmlCharEncCloseFunc(decoder);
    return whole;
}

} // namespace

std::string encodingOfXml(std::string_view bytes)
{
    const xmlCharEncoding begin = encodingByBegin(bytes);
    if (begin == XML_CHAR_ENCODING_UTF8 && bytes.starts_with(kMark)) {
        return "";
    }
    if (begin == XML_CHAR_ENCODING_NONE || begin == XML_CHAR_ENCODING_UTF8) {
        return declaredEncoding(bytes);
    }
    const char* const name = xmlGetCharEncodingName(begin);
    return name != nullptr ? name : "";
}

std::string utf8OfXml(std::string_view bytes)
{
    const XmlMessages silent(ignore, nullptr);
    const std::string name = encodingOfXml(bytes);
    std::string text;
    if (name.empty()) {
        text = bytes;
    } else if (xmlCharEncodingHandlerPtr decoder = xmlFindCharEncodingHandler(name.c_str())) {
        text = decoded(bytes, decoder);
    }
    if (text.starts_with(kMark)) {
        text.erase(0, kMark.size());
    }
    return text;
}

} // namespace standalone
