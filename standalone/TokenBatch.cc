#include "standalone/TokenBatch.h"

#include "standalone/Utf8.h"

namespace standalone {

namespace {

constexpr std::size_t kKeptBytes = std::size_t{256} * 1024;
/// Who asks for one attribute asks for others, into the same buffer.
constexpr std::size_t kUsualValue = 63;

template <typename Container>
void clearKeepingLittle(Container& elements)
{
    elements.clear();
    if (elements.capacity() * sizeof(typename Container::value_type) > kKeptBytes) {
        elements.shrink_to_fit();
    }
}

} // namespace

void TokenBatch::dropNewest()
{
    attributes.resize(tokens.back().attributesBegin);
    text.resize(attributes.empty() ? 0 : attributes.back().valueEnd);
    tokens.pop_back();
}

void TokenBatch::value(std::size_t token, std::wstring_view attribute, std::wstring& wide) const
{
    const std::size_t end = attributesEnd(token);
    for (std::size_t at = tokens[token].attributesBegin; at < end; ++at) {
        const Attribute& candidate = attributes[at];
        if (*candidate.name == attribute) {
            wide.reserve(kUsualValue);
            widenUtf8(valueOf(candidate), wide);
            return;
        }
    }
    wide.clear();
}

std::wstring TokenBatch::widened(std::string_view utf8)
{
    std::wstring wide;
    widenUtf8(utf8, wide);
    return wide;
}

void TokenBatch::clear()
{
    clearKeepingLittle(tokens);
    clearKeepingLittle(attributes);
    clearKeepingLittle(text);
}

} // namespace standalone
