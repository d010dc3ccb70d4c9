// The host's strings: CStdStr, the text that crosses every interface, and CStringArray, its growable array.
#pragma once

#include "host/LocaleText.h"

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// The host's bookkeeping of live strings: told the address of each CStdStr made by copy construction.
/// Must not throw and must not call back; it may do nothing.
extern "C" void updateCStringManagerData(const void* string) noexcept;

/// A standard string over `Char` that the host knows by this name; CStdStr<wchar_t> holds UTF-32, one code point a
/// code unit. Copy construction reports to updateCStringManagerData(); moving, assigning and every other
/// construction do not. Owns its text. Not thread-safe, like the string it derives from.
template <typename Char>
class CStdStr : public std::basic_string<Char>
{
    using Base = std::basic_string<Char>;

public:
    CStdStr() noexcept = default;
    CStdStr(const CStdStr& other) : Base(other) { updateCStringManagerData(this); }
    CStdStr(CStdStr&&) noexcept = default;
    CStdStr& operator=(const CStdStr&) = default;
    CStdStr& operator=(CStdStr&&) noexcept = default;
    ~CStdStr() = default;

    CStdStr(const Base& text) : Base(text) {}
    CStdStr(Base&& text) noexcept : Base(std::move(text)) {}
    /// `text` ends with a zero code unit and is not null.
    CStdStr(const Char* text) : Base(text) {}
    explicit CStdStr(std::basic_string_view<Char> text) : Base(text) {}

    /// Widens the narrow `text`, in the encoding of the global locale; not null.
    template <typename Narrow, typename = std::enable_if_t<std::is_same_v<Narrow, char> && !std::is_same_v<Char, char>>>
    CStdStr(const Narrow* text) : Base(localetext::widen(text))
    {
    }

    using Base::operator=;
};

/// The host's growable array of CStdStr. Owns its elements.
class CStringArray
{
public:
    CStringArray() noexcept = default;
    CStringArray(const CStringArray&) = delete;
    CStringArray& operator=(const CStringArray&) = delete;
    ~CStringArray();

    /// Appends a copy of `text` and returns its index. May throw std::bad_alloc.
    int Add(const CStdStr<wchar_t>& text);
    /// The number of elements.
    int GetSize() const noexcept;
    /// The element at `index`, from 0 to GetSize() - 1; nothing checks the bounds. Valid until the next Add().
    CStdStr<wchar_t>& operator[](int index) noexcept;
    const CStdStr<wchar_t>& operator[](int index) const noexcept;
    /// Makes the array empty.
    void RemoveAll() noexcept;

private:
    CStdStr<wchar_t>* elements = nullptr;
    int size = 0;
    int capacity = 0;
};
