#include "standalone/TokenBatch.h"

#include "standalone/Utf8.h"

#include <algorithm>
#include <cstring>

namespace standalone {

namespace {

constexpr std::size_t kKeptBytes = std::size_t{256} * 1024;

bool isAscii(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

/// Nearly all of nearly all manifests is ASCII, so that it is taken this many bytes in a step, the last step over again
/// what the one before has done.
constexpr std::size_t kStep = sizeof(std::uint64_t);

/// Whether kStep bytes are ASCII.
bool isAsciiStep(const char* utf8)
{
    std::uint64_t together = 0;
    std::memcpy(&together, utf8, kStep);
    return (together & 0x8080808080808080) == 0;
}

bool isAsciiText(std::string_view utf8)
{
    if (utf8.size() < kStep) {
        return std::all_of(utf8.begin(), utf8.end(), isAscii);
    }
    const std::size_t last = utf8.size() - kStep;
    std::size_t at = 0;
    while (at < last && isAsciiStep(utf8.data() + at)) {
        at += kStep;
    }
    return at >= last && isAsciiStep(utf8.data() + last);
}

/// Widens kStep bytes; false when there is more than ASCII among them.
bool widenStep(wchar_t* wide, const char* utf8)
{
    unsigned char bytes[kStep]; // the compiler need not fear that `wide` overlaps it
    std::memcpy(bytes, utf8, kStep);
    for (std::size_t i = 0; i < kStep; ++i) {
        wide[i] = static_cast<wchar_t>(bytes[i]);
    }
    return isAsciiStep(utf8);
}

/// Widens the ASCII that `utf8` begins with into `wide` and returns how much that was.
std::size_t widenAscii(wchar_t* wide, std::string_view utf8)
{
    std::size_t at = 0;
    if (utf8.size() >= kStep) {
        const std::size_t last = utf8.size() - kStep;
        while (at < last && widenStep(wide + at, utf8.data() + at)) {
            at += kStep;
        }
        if (at >= last && widenStep(wide + last, utf8.data() + last)) {
            return utf8.size();
        }
        at = std::min(at, last);
    }
    while (at < utf8.size() && isAscii(utf8[at])) {
        wide[at] = static_cast<wchar_t>(utf8[at]);
        ++at;
    }
    return at;
}

/// Widens `utf8`, which the parser has checked.
void widenInto(std::wstring& wide, std::string_view utf8)
{
    wide.resize(utf8.size());
    std::size_t units = widenAscii(wide.data(), utf8);
    if (units == utf8.size()) {
        return;
    }
    for (std::size_t at = units; at < utf8.size();) {
        const char32_t code = nextCodePoint(utf8, at);
        at += code == kNotUtf8 ? 1 : 0;
        wide[units++] = static_cast<wchar_t>(code == kNotUtf8 ? 0xFFFD : code);
    }
    wide.resize(units);
}

/// Whether `utf8`, which has characters beyond ASCII, and `wide` are one text.
bool isSameDecoded(std::string_view utf8, std::wstring_view wide)
{
    std::size_t units = 0;
    for (std::size_t at = 0; at < utf8.size(); ++units) {
        const char32_t code = nextCodePoint(utf8, at);
        if (code == kNotUtf8 || units == wide.size() || code != static_cast<char32_t>(wide[units])) {
            return false;
        }
    }
    return units == wide.size();
}

bool isSameStep(const char* ascii, const wchar_t* wide)
{
    std::uint32_t differences = 0;
    for (std::size_t i = 0; i < kStep; ++i) {
        differences |= static_cast<std::uint32_t>(ascii[i]) ^ static_cast<std::uint32_t>(wide[i]);
    }
    return differences == 0;
}

/// Whether `ascii` and `wide` are one text. The sizes tell most names apart.
bool isSameAscii(std::string_view ascii, std::wstring_view wide)
{
    if (ascii.size() != wide.size()) {
        return false;
    }
    if (ascii.size() < kStep) {
        return std::equal(ascii.begin(), ascii.end(), wide.begin(),
                          [](char byte, wchar_t unit) { return static_cast<wchar_t>(byte) == unit; });
    }
    const std::size_t last = ascii.size() - kStep;
    std::size_t at = 0;
    while (at < last && isSameStep(ascii.data() + at, wide.data() + at)) {
        at += kStep;
    }
    return at >= last && isSameStep(ascii.data() + last, wide.data() + last);
}

template <typename Container>
void clearKeepingLittle(Container& elements)
{
    elements.clear();
    if (elements.capacity() * sizeof(typename Container::value_type) > kKeptBytes) {
        elements.shrink_to_fit();
    }
}

} // namespace

void TokenBatch::addStart(const char* name)
{
    tokens.push_back({name, static_cast<std::uint32_t>(attributes.size()), true});
}

void TokenBatch::addEnd(const char* name)
{
    tokens.push_back({name, static_cast<std::uint32_t>(attributes.size()), false});
}

void TokenBatch::addAttribute(std::string_view name)
{
    const std::uint32_t valueBegin = attributes.empty() ? 0 : attributes.back().valueEnd;
    attributes.push_back({name, valueBegin, static_cast<std::uint32_t>(text.size()), isAsciiText(name)});
}

void TokenBatch::dropNewest()
{
    attributes.resize(tokens.back().attributesBegin);
    text.resize(attributes.empty() ? 0 : attributes.back().valueEnd);
    tokens.pop_back();
}

void TokenBatch::name(std::size_t token, std::wstring& wide) const
{
    widenInto(wide, tokens[token].name);
}

void TokenBatch::value(std::size_t token, std::wstring_view attribute, std::wstring& wide) const
{
    const std::size_t end = attributesEnd(token);
    for (std::size_t at = tokens[token].attributesBegin; at < end; ++at) {
        const Attribute& candidate = attributes[at];
        if (candidate.isAsciiName ? isSameAscii(candidate.name, attribute) : isSameDecoded(candidate.name, attribute)) {
            widenInto(wide, valueOf(candidate));
            return;
        }
    }
    wide.clear();
}

std::wstring TokenBatch::widened(std::string_view utf8)
{
    std::wstring wide;
    widenInto(wide, utf8);
    return wide;
}

void TokenBatch::clear()
{
    clearKeepingLittle(tokens);
    clearKeepingLittle(attributes);
    clearKeepingLittle(text);
}

} // namespace standalone
