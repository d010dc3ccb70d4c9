#include "standalone/StoredText.h"

#include <bit>
#include <cstdint>

namespace standalone {

namespace {

/// How many bits a sequence with `tails` bytes after its first can hold.
constexpr int bitsHeld(int tails)
{
    return tails == 0 ? 7 : 5 * tails + 6;
}

void append(std::string& bytes, std::uint64_t code)
{
    int tails = 0;
    while (code >> bitsHeld(tails) != 0) {
        ++tails;
    }
    const std::uint64_t lead = tails == 0 ? 0 : (0xFFU << (7 - tails)) & 0xFFU;
    bytes.push_back(static_cast<char>(lead | (code >> (6 * tails))));
    for (int tail = tails - 1; tail >= 0; --tail) {
        bytes.push_back(static_cast<char>(0x80U | ((code >> (6 * tail)) & 0x3FU)));
    }
}

} // namespace

std::string storedText(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t unit : text) {
        append(bytes, static_cast<std::uint32_t>(unit));
    }
    return bytes;
}

std::optional<std::wstring> textFromStored(std::string_view bytes)
{
    std::wstring text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const auto lead = static_cast<std::uint8_t>(bytes[at++]);
        const int ones = std::countl_one(lead);
        const int tails = ones == 0 ? 0 : ones - 1;
        if (ones == 1 || ones == 8 || bytes.size() - at < static_cast<std::size_t>(tails)) {
            return std::nullopt;
        }
        std::uint64_t code = lead & (0xFFU >> (ones + 1));
        for (int tail = 0; tail < tails; ++tail) {
            const auto byte = static_cast<std::uint8_t>(bytes[at++]);
            if ((byte & 0xC0U) != 0x80U) {
                return std::nullopt;
            }
            code = (code << 6) | (byte & 0x3FU);
        }
        const bool overlong = tails > 0 && code >> bitsHeld(tails - 1) == 0;
        if (overlong || code > UINT32_MAX) {
            return std::nullopt;
        }
        text.push_back(static_cast<wchar_t>(static_cast<std::uint32_t>(code)));
    }
    return text;
}

} // namespace standalone
