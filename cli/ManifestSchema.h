// The vocabulary of manifests as an XML schema, by which editors complete and check.
#pragma once

#include <string>

namespace cli {

/// An XSD 1.0 document, UTF-8. Elements may be left out, repeated and in any order, as for the reader; attributes may
/// be left out. What is not in the vocabulary, and a value that does nothing useful, is refused, so that it is seen.
std::string manifestSchema();

} // namespace cli
