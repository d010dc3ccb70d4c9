#include "host/KsString.h"

#include "host/LocaleText.h"

#include <optional>
#include <string>

/// The text and the forms that were handed out. A form stays as it is until the text changes, whatever happens to the
/// locale meanwhile: somebody may hold a pointer to it.
struct KsString::Text
{
    std::wstring wide;
    std::optional<std::string> ansi;
    std::optional<std::string> utf8;
};

KsString::KsString() : text(new Text) {}

KsString::KsString(const char* narrow) : text(new Text{localetext::widen(narrow), {}, {}}) {}

KsString::~KsString()
{
    delete text;
}

KsString& KsString::assign(const wchar_t* wide)
{
    text->wide = wide != nullptr ? wide : L"";
    text->ansi.reset();
    text->utf8.reset();
    return *this;
}

int KsString::compare(const wchar_t* other) const
{
    const wchar_t* own = text->wide.c_str();
    while (*own != L'\0' && *own == *other) {
        ++own;
        ++other;
    }
    // Unsigned, so that both targets order alike: wchar_t is signed on one of them.
    const auto mine = static_cast<char32_t>(*own);
    const auto theirs = static_cast<char32_t>(*other);
    return mine == theirs ? 0 : mine < theirs ? -1 : 1;
}

const char* KsString::ansiPtr() const
{
    if (!text->ansi) {
        text->ansi = localetext::narrow(text->wide);
    }
    return text->ansi->c_str();
}

const char* KsString::utf8Ptr() const
{
    if (!text->utf8) {
        text->utf8 = localetext::utf8(text->wide);
    }
    return text->utf8->c_str();
}
