// The front of a managed assembly: what tells it from every other file, and nothing behind.
#pragma once

#include <cstddef>
#include <string>

/// The headers of ECMA-335, with a directory entry for the common language infrastructure.
inline std::string assemblyBytes()
{
    constexpr std::size_t kHeader = 0x80;
    constexpr std::size_t kOptional = kHeader + 24;
    constexpr std::size_t kDirectories = kOptional + 96;
    std::string bytes(512, '\0');
    bytes.replace(0, 2, "MZ");
    bytes[0x3C] = static_cast<char>(kHeader);
    bytes.replace(kHeader, 2, "PE");
    bytes.replace(kOptional, 2, "\x0B\x01"); // 32 bits
    bytes[kDirectories - 4] = 16;            // so many directories
    bytes[kDirectories + 8 * 14] = 1;        // the 15th one: where the managed header lies
    return bytes;
}
