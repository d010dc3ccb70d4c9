#include "engines/lisp/LispText.h"

#include "host/LocaleText.h"

namespace engines {

namespace {

struct Decoded
{
    char32_t code;
    std::size_t length;
};

bool isContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

/// The character that `text` begins with, `size` bytes being left (at least one).
Decoded decode(const char* text, std::size_t size)
{
    const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char first = byte(0);
    if (first < 0x80) {
        return {first, 1};
    }
    const Decoded undecodable{static_cast<char32_t>(localetext::kUndecodableByte) + first, 1};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || length > size) {
        return undecodable;
    }
    char32_t code = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(byte(i))) {
            return undecodable;
        }
        code = (code << 6) | (byte(i) & 0x3FU);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    return code < kSmallest[length] || code > 0x10FFFF || isSurrogate ? undecodable : Decoded{code, length};
}

} // namespace

cl_object lispText(const char* utf8, std::size_t size)
{
    cl_index length = 0;
    for (std::size_t at = 0; at < size; ++length) {
        at += decode(utf8 + at, size - at).length;
    }
    const cl_object text = ecl_alloc_simple_extended_string(length);
    std::size_t at = 0;
    for (cl_index i = 0; i < length; ++i) {
        const Decoded next = decode(utf8 + at, size - at);
        ecl_char_set(text, i, static_cast<ecl_character>(next.code));
        at += next.length;
    }
    return text;
}

cl_object lispBytes(const char* bytes, std::size_t size)
{
    const cl_object text = ecl_alloc_simple_base_string(size);
    for (cl_index i = 0; i < size; ++i) {
        ecl_char_set(text, i, static_cast<unsigned char>(bytes[i]));
    }
    return text;
}

std::wstring wideText(cl_object text)
{
    std::wstring wide;
    const auto length = static_cast<cl_index>(ecl_length(text));
    wide.reserve(length);
    for (cl_index i = 0; i < length; ++i) {
        wide.push_back(static_cast<wchar_t>(ecl_char(text, i)));
    }
    return wide;
}

std::string utf8Text(cl_object text)
{
    std::string bytes;
    for (const wchar_t unit : wideText(text)) {
        if (localetext::isUndecodableByte(unit)) {
            bytes.push_back(static_cast<char>(unit - localetext::kUndecodableByte));
        } else {
            localetext::appendUtf8(bytes, unit);
        }
    }
    return bytes;
}

std::string nativeBytes(cl_object text)
{
    std::string bytes;
    for (const wchar_t unit : wideText(text)) {
        if (unit <= 0xFF) {
            bytes.push_back(static_cast<char>(unit));
        } else {
            bytes += localetext::narrow(std::wstring_view(&unit, 1));
        }
    }
    return bytes;
}

bool isUtf8(std::string_view bytes)
{
    for (std::size_t at = 0; at < bytes.size();) {
        const Decoded next = decode(bytes.data() + at, bytes.size() - at);
        if (localetext::isUndecodableByte(static_cast<wchar_t>(next.code))) {
            return false;
        }
        at += next.length;
    }
    return true;
}

std::string_view cutAtCharacter(std::string_view text, std::size_t size)
{
    if (text.size() <= size) {
        return text;
    }
    while (size > 0 && isContinuation(static_cast<unsigned char>(text[size]))) {
        --size;
    }
    return text.substr(0, size);
}

} // namespace engines
