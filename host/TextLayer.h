// Formatting and number reading as the host's run time does it.
#pragma once

#include <cstddef>

extern "C" {

/// Formats into `buffer`, which has room for `size` code units, and ends the text with a zero code unit. A longer
/// result is cut there. "%ls" takes a wide string. Returns the number of code units written, negative when cut.
int _tarswprintf(wchar_t* buffer, std::size_t size, const wchar_t* format, ...);

/// The decimal number that `text` begins with (blanks before it are skipped), with "." as the decimal point in every
/// locale; 0.0 when there is none. `text` is not null.
double _wtof(const wchar_t* text);

/// The decimal whole number that `text` begins with (blanks before it are skipped); 0 when there is none, the
/// nearest int when it does not fit. `text` is not null.
int _wtoi(const wchar_t* text);

} // extern "C"
