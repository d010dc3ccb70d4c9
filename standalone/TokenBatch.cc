#include "standalone/TokenBatch.h"

#include "standalone/Utf8.h"

#include <cstring>

namespace standalone {

namespace {

constexpr std::size_t kKeptBytes = std::size_t{256} * 1024;

bool isAscii(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

/// Widens `utf8`, which the parser has checked.
void widenInto(std::wstring& wide, std::string_view utf8)
{
    wide.resize(utf8.size());
    std::size_t units = 0;
    while (units < utf8.size() && isAscii(utf8[units])) {
        wide[units] = static_cast<wchar_t>(utf8[units]);
        ++units;
    }
    for (std::size_t at = units; at < utf8.size();) {
        if (isAscii(utf8[at])) {
            wide[units++] = static_cast<wchar_t>(utf8[at++]);
            continue;
        }
        const char32_t code = nextCodePoint(utf8, at);
        at += code == kNotUtf8 ? 1 : 0;
        wide[units++] = static_cast<wchar_t>(code == kNotUtf8 ? 0xFFFD : code);
    }
    wide.resize(units);
}

/// Whether `utf8` and `wide` are one text.
bool isSame(const char* utf8, std::wstring_view wide)
{
    std::size_t at = 0;
    while (at < wide.size() && utf8[at] != '\0' && isAscii(utf8[at])) {
        if (static_cast<wchar_t>(utf8[at]) != wide[at]) {
            return false;
        }
        ++at;
    }
    if (utf8[at] == '\0' || at == wide.size()) {
        return utf8[at] == '\0' && at == wide.size();
    }
    const std::string_view rest(utf8 + at);
    for (std::size_t byte = 0; byte < rest.size(); ++at) {
        const char32_t code = nextCodePoint(rest, byte);
        if (code == kNotUtf8 || at == wide.size() || code != static_cast<char32_t>(wide[at])) {
            return false;
        }
    }
    return at == wide.size();
}

template <typename Element>
void clearKeepingLittle(std::vector<Element>& elements)
{
    elements.clear();
    if (elements.capacity() * sizeof(Element) > kKeptBytes) {
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

void TokenBatch::addAttribute(const char* name)
{
    const bool isFirst = attributes.empty();
    attributes.push_back({name, isFirst ? 0 : attributes.back().valueEnd, static_cast<std::uint32_t>(text.size())});
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
    const std::size_t end = token + 1 < tokens.size() ? tokens[token + 1].attributesBegin : attributes.size();
    for (std::size_t at = tokens[token].attributesBegin; at < end; ++at) {
        const Attribute& candidate = attributes[at];
        if (isSame(candidate.name, attribute)) {
            widenInto(wide, {text.data() + candidate.valueBegin, candidate.valueEnd - candidate.valueBegin});
            return;
        }
    }
    wide.clear();
}

void TokenBatch::clear()
{
    clearKeepingLittle(tokens);
    clearKeepingLittle(attributes);
    clearKeepingLittle(text);
}

} // namespace standalone
