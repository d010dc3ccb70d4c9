#include "cli/RandomCode.h"

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <unistd.h>

namespace cli {

std::string randomCode()
{
    unsigned char bytes[16];
    if (::getentropy(bytes, sizeof(bytes)) != 0) {
        throw std::system_error(errno, std::generic_category(), "random numbers cannot be had");
    }
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40); // version 4: random
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80); // the variant of all such codes
    std::string code = "{";
    for (std::size_t i = 0; i < sizeof(bytes); ++i) {
        char digits[3];
        std::snprintf(digits, sizeof(digits), "%02X", static_cast<unsigned>(bytes[i]));
        code += digits;
        if (i == 3 || i == 5 || i == 7 || i == 9) {
            code += '-';
        }
    }
    return code + "}";
}

} // namespace cli
