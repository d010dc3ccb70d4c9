// What the texts of findings are made of.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"

#include <string>
#include <string_view>

namespace cli {

/// `text` for a sentence: in quotation marks, safe for a terminal; the middle of a very long one is left out.
std::string named(std::wstring_view text);

/// The same without quotation marks.
std::string abridged(std::wstring_view text);
std::string abridged(const std::string& utf8);

/// The name of the bundle folder, without the folders above it.
std::wstring folderNameOf(const ExaminedBundle& bundle);

/// `path` as the manifest writes it when it lies in the bundle: "./Contents/app.krx".
std::wstring inBundle(const ExaminedBundle& bundle, std::wstring_view path);

/// The folder names of `chain`, joined by " > "; the middle of a long one is left out.
std::string chainText(const std::vector<const ExaminedBundle*>& chain);

/// A finding of `rule` about `bundle`, at `place`.
Finding findingOf(const Rule& rule, const ExaminedBundle& bundle, Place place, std::string what);

} // namespace cli
