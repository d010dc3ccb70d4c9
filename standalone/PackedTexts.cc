#include "standalone/PackedTexts.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace standalone {

namespace {

constexpr std::size_t kBlock = std::size_t{16} * 1024;

/// Stands before a text that is not ASCII, whose code units follow as they are; no ASCII begins with it.
constexpr char kNotAscii = '\xFF';

/// What packInto() may write.
std::size_t roomFor(std::wstring_view text)
{
    return 1 + text.size() * sizeof(wchar_t);
}

/// Writes the packed form of `text` and returns its size.
std::size_t packInto(char* packed, std::wstring_view text)
{
    std::make_unsigned_t<wchar_t> together = 0; // looked at in the end only, so that many units are taken in a step
    for (std::size_t i = 0; i < text.size(); ++i) {
        packed[i] = static_cast<char>(text[i]);
        together |= static_cast<std::make_unsigned_t<wchar_t>>(text[i]);
    }
    if (together < 0x80) {
        return text.size();
    }
    *packed = kNotAscii;
    std::memcpy(packed + 1, text.data(), text.size() * sizeof(wchar_t));
    return roomFor(text);
}

} // namespace

std::string_view PackedTexts::keep(std::wstring_view text)
{
    if (room - used < roomFor(text)) {
        const std::size_t wanted = std::max(roomFor(text), kBlock);
        blocks.push_back(std::make_unique_for_overwrite<char[]>(wanted));
        room = wanted;
        used = 0;
    }
    char* const kept = blocks.back().get() + used;
    const std::size_t size = packInto(kept, text);
    used += size;
    return {kept, size};
}

void PackedTexts::clear() noexcept
{
    std::vector<std::unique_ptr<char[]>>().swap(blocks);
    used = room = 0;
}

std::string PackedTexts::packed(std::wstring_view text)
{
    std::string packed(roomFor(text), '\0');
    packed.resize(packInto(packed.data(), text));
    return packed;
}

std::wstring PackedTexts::unpacked(std::string_view packed)
{
    if (!packed.starts_with(kNotAscii)) {
        return {packed.begin(), packed.end()};
    }
    packed.remove_prefix(1);
    std::wstring text(packed.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), packed.data(), packed.size());
    return text;
}

} // namespace standalone
