// XML documents as plain UTF-8, for those who need the place of a thing in the text.
#pragma once

#include <string>
#include <string_view>

namespace standalone {

/// The name of the encoding of the XML document `bytes` by its byte order mark, else by its declaration; empty when
/// neither names one, and it is UTF-8.
std::string encodingOfXml(std::string_view bytes);

/// The text of the XML document `bytes` in UTF-8, decoded by its byte order mark or its declaration, without the mark.
/// Ends where the bytes cannot be decoded; empty when the encoding is not known.
std::string utf8OfXml(std::string_view bytes);

} // namespace standalone
