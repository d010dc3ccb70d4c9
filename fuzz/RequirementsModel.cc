#include "fuzz/RequirementsModel.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace fuzz {

namespace {

std::vector<std::wstring> fieldsOf(const std::wstring& text)
{
    std::vector<std::wstring> fields(1);
    for (const wchar_t unit : text) {
        if (unit == L'_') {
            fields.emplace_back();
        } else {
            fields.back() += unit;
        }
    }
    return fields;
}

/// `text` up to what is no ASCII: no number goes on there.
std::string asciiOf(const std::wstring& text)
{
    std::string ascii;
    for (const wchar_t unit : text) {
        if (unit <= 0 || unit >= 0x80) {
            break;
        }
        ascii += static_cast<char>(unit);
    }
    return ascii;
}

std::size_t digitsAt(const std::string& text, std::size_t at)
{
    return std::min(text.find_first_not_of("0123456789", at), text.size()) - at;
}

} // namespace

double number(const std::wstring& text)
{
    const std::string ascii = asciiOf(text);
    const std::size_t begin = std::min(ascii.find_first_not_of(" \t\n\v\f\r"), ascii.size());
    std::size_t end = begin + (begin < ascii.size() && (ascii[begin] == '-' || ascii[begin] == '+') ? 1 : 0);
    const std::size_t whole = digitsAt(ascii, end);
    end += whole;
    if (end < ascii.size() && ascii[end] == '.') {
        const std::size_t broken = digitsAt(ascii, end + 1);
        if (whole + broken == 0) {
            return 0.0;
        }
        end += 1 + broken;
    } else if (whole == 0) {
        return 0.0;
    }
    if (end < ascii.size() && (ascii[end] == 'e' || ascii[end] == 'E')) {
        const std::size_t sign = end + 1 < ascii.size() && (ascii[end + 1] == '-' || ascii[end + 1] == '+') ? 1 : 0;
        const std::size_t exponent = end + 1 + sign <= ascii.size() ? digitsAt(ascii, end + 1 + sign) : 0;
        end += exponent > 0 ? 1 + sign + exponent : 0;
    }
    return std::strtod(ascii.substr(begin, end - begin).c_str(), nullptr);
}

int wholeNumber(const std::wstring& text)
{
    const long long value = std::strtoll(asciiOf(text).c_str(), nullptr, 10);
    return static_cast<int>(
        std::clamp<long long>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

std::vector<std::string> mismatches(const KestRuntimeRequirements& runtime, const hostdouble::State& host)
{
    std::vector<std::string> wrong;
    const double least = number(runtime.seriesMin);
    const double most = number(runtime.seriesMax);
    const bool isTooOld = least != 0.0 && 26.0 < least;
    const bool isTooNew = most != 0.0 && 26.0 > most;
    if (isTooOld || isTooNew) {
        wrong.emplace_back("product version number");
    }
    const std::vector<std::wstring> fields = fieldsOf(host.vernum && !host.isVernumNull ? host.vernum->c_str() : L"");
    if (fields.size() >= 4) {
        if (!runtime.os.empty() && runtime.os != fields[2]) {
            wrong.emplace_back("OS");
        }
        if (fieldsOf(runtime.architecture).front() != fields[3]) {
            wrong.emplace_back("architecture");
        }
    }
    const std::wstring product = host.productName.value_or(L"");
    if (host.hasConfiguration && !runtime.platform.empty() && runtime.platform != product) {
        wrong.emplace_back("platform");
    }
    return wrong;
}

} // namespace fuzz
