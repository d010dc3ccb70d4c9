// Text inside an XML document.
#pragma once

#include <string>
#include <string_view>

namespace cli {

/// `text`, UTF-8, as the content of an element or of an attribute in double quotes. Characters that no XML document can
/// hold must not be in it.
std::string escapedXml(std::string_view text);

} // namespace cli
