#pragma once

#include <string>
#include <string_view>

/// What the wide formatted-output routine makes of `text` as a format without arguments: two percent signs become
/// one, and every other conversion, flags, width, precision and length included, is left out, so that it neither
/// reads nor writes memory that is not there.
std::wstring formatLogText(std::wstring_view text);
