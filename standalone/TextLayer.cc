#include "host/TextLayer.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdarg>
#include <cwchar>
#include <limits>
#include <string>
#include <vector>

namespace {

/// No text of this length is wanted by anybody: formatting gives up here rather than take all memory.
constexpr std::size_t kLongestFormatted = std::size_t{1} << 24;

bool isDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

bool isBlank(wchar_t unit)
{
    return unit == L' ' || (unit >= L'\t' && unit <= L'\r');
}

/// Appends the digits at `text` to `ascii` and returns what follows them.
const wchar_t* takeDigits(const wchar_t* text, std::string& ascii)
{
    while (isDigit(*text)) {
        ascii.push_back(static_cast<char>(*text++));
    }
    return text;
}

/// Steps over blanks and one sign; `negative` says which sign it was.
const wchar_t* skipBlanksAndSign(const wchar_t* text, bool& negative)
{
    while (isBlank(*text)) {
        ++text;
    }
    negative = *text == L'-';
    return *text == L'-' || *text == L'+' ? text + 1 : text;
}

/// A number too large or too small for double: infinity or zero. `ascii` is digits with one "." among them at most,
/// and an exponent perhaps. What counts is where the first digit but 0 stands, so that "0.000...1e+400" is judged well.
double outOfRange(const std::string& ascii)
{
    const std::size_t mantissaEnd = std::min(ascii.find('e'), ascii.size());
    const std::size_t point = std::min(ascii.find('.'), mantissaEnd);
    const std::size_t leading = ascii.find_first_of("123456789");
    const double place = static_cast<double>(point) - static_cast<double>(leading);
    double exponent = 0.0;
    if (mantissaEnd < ascii.size()) {
        const bool isNegative = ascii[mantissaEnd + 1] == '-';
        for (std::size_t at = mantissaEnd + 2; at < ascii.size(); ++at) { // behind "e" and the sign
            exponent = exponent * 10 + (ascii[at] - '0');
        }
        exponent = isNegative ? -exponent : exponent;
    }
    return place + exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

/// The whole text of `format`, which needs more than `size` code units; empty when there is none.
std::vector<wchar_t> formattedWhole(std::size_t size, const wchar_t* format, std::va_list arguments)
{
    std::vector<wchar_t> whole{L'\0'};
    for (std::size_t room = std::max<std::size_t>(size, 512) * 2; room <= kLongestFormatted; room *= 2) {
        whole.assign(room, L'\0');
        std::va_list attempt;
        va_copy(attempt, arguments);
        const int length = std::vswprintf(whole.data(), room, format, attempt);
        va_end(attempt);
        if (length >= 0) {
            return whole;
        }
    }
    return {L'\0'};
}

/// Writes as much of `whole` as `buffer` has room for.
void writeCut(wchar_t* buffer, std::size_t size, const std::vector<wchar_t>& whole)
{
    const std::size_t length = std::min(std::wcslen(whole.data()), size - 1);
    std::wmemcpy(buffer, whole.data(), length);
    buffer[length] = L'\0';
}

} // namespace

// What a buffer holds of a text that does not fit is nobody's promise: such a text is formatted whole and then cut.
int _tarswprintf(wchar_t* buffer, std::size_t size, const wchar_t* format, ...)
{
    if (size == 0) {
        return -1;
    }
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    errno = 0;
    const int length = std::vswprintf(buffer, size, format, arguments);
    if (length < 0) {
        writeCut(buffer, size, errno == EILSEQ ? std::vector<wchar_t>{L'\0'} : formattedWhole(size, format, again));
    }
    va_end(again);
    va_end(arguments);
    return length;
}

double _wtof(const wchar_t* text)
{
    // Gathered by hand: the library's own reading takes the decimal point of the locale, hexadecimal and "inf" as well.
    bool negative = false;
    text = skipBlanksAndSign(text, negative);
    std::string ascii;
    text = takeDigits(text, ascii);
    if (*text == L'.') {
        ascii.push_back('.');
        text = takeDigits(text + 1, ascii);
    }
    if (ascii.empty() || ascii == ".") {
        return 0.0;
    }
    if (*text == L'e' || *text == L'E') {
        const wchar_t* exponent = text + 1;
        std::string digits(1, *exponent == L'-' ? '-' : '+');
        takeDigits(*exponent == L'-' || *exponent == L'+' ? exponent + 1 : exponent, digits);
        if (digits.size() > 1) {
            ascii += 'e' + digits;
        }
    }
    double number = 0.0;
    const auto [end, error] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), number);
    if (error == std::errc::result_out_of_range) {
        number = outOfRange(ascii);
    }
    return negative ? -number : number;
}

int _wtoi(const wchar_t* text)
{
    bool negative = false;
    text = skipBlanksAndSign(text, negative);
    std::string ascii(negative ? "-" : "");
    takeDigits(text, ascii);
    int number = 0;
    const auto [end, error] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), number);
    if (error == std::errc::result_out_of_range) {
        return negative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    }
    return number;
}
