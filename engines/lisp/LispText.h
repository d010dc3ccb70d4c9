// Texts between C++ and LISP.
//
// A byte that is no UTF-8 is the character localetext::kUndecodableByte + byte, here as in the autoloader. A file name
// that LISP hands to the system is a "native" text: its characters are the bytes of the name.
#pragma once

#include <ecl/ecl.h>

#include <string>
#include <string_view>

namespace engines {

/// A LISP string of the characters of `utf8`. LISP can leave it by a non-local exit: nothing in the frames above may
/// wait for a destructor.
cl_object lispText(const char* utf8, std::size_t size);

/// A LISP string whose characters are these bytes; the same holds.
cl_object lispBytes(const char* bytes, std::size_t size);

/// The characters of the LISP string `text`. Allocates nothing in LISP.
std::wstring wideText(cl_object text);

/// The same in UTF-8, undecodable bytes as they were.
std::string utf8Text(cl_object text);

/// The bytes of the native text `text`; a character that is none, in the encoding of the global locale.
std::string nativeBytes(cl_object text);

/// Whether all of `bytes` is UTF-8.
bool isUtf8(std::string_view bytes);

/// `text`, cut to at most `size` bytes where a character begins.
std::string_view cutAtCharacter(std::string_view text, std::size_t size);

} // namespace engines
