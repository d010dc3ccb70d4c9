// Choices and texts out of the bytes that a fuzzer hands over.
#pragma once

#include "host/LocaleText.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace fuzz {

/// Takes bytes from the front. When they have run out, every number is 0 and every text is empty.
class Input
{
public:
    explicit Input(std::string_view bytes) : rest(bytes) {}

    bool isEmpty() const { return rest.empty(); }

    /// From 0 to `bound` - 1 (256 at most), one byte.
    unsigned below(unsigned bound)
    {
        const unsigned byte = rest.empty() ? 0U : static_cast<unsigned char>(rest.front());
        rest.remove_prefix(rest.empty() ? 0 : 1);
        return byte % bound;
    }

    /// What is left of the line, widened; without a zero code unit, which ends the texts that hosts hand over.
    std::wstring line()
    {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view text = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        text = text.substr(0, text.find('\0'));
        return localetext::widen(text);
    }

private:
    std::string_view rest;
};

} // namespace fuzz
