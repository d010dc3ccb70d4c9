// Texts between the host and managed code.
#pragma once

#include <mono/metadata/object.h>

#include <string>
#include <string_view>

namespace engines {

/// `text` in UTF-8; empty for null. Halves of surrogate pairs become U+FFFD.
std::string utf8Of(MonoString* text);

/// `bytes` as UTF-8: each byte that is not part of a character becomes U+FFFD. UTF-8 is returned unchanged.
std::string repairedUtf8(std::string_view bytes);

} // namespace engines
