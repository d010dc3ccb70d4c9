// The host's string with conversions to narrow encodings.
#pragma once

/// Holds one text. Owns it and every converted form that it hands out.
class KsString
{
public:
    KsString();
    /// `narrow` is in the encoding of the global locale, and not null.
    explicit KsString(const char* narrow);
    KsString(const KsString&) = delete;
    KsString& operator=(const KsString&) = delete;
    ~KsString();

    /// Replaces the text by a copy of `wide`; null counts as empty.
    KsString& assign(const wchar_t* wide);

    /// 0 when the text equals `other` code unit by code unit; else negative or positive by code-unit order.
    int compare(const wchar_t* other) const;

    /// The text in the ANSI code page, which on Linux is the encoding of the global locale. Never null; valid until
    /// the string is changed or destroyed.
    const char* ansiPtr() const;

    /// The text in UTF-8. Never null; valid until the string is changed or destroyed.
    const char* utf8Ptr() const;

private:
    struct Text;
    Text* text;
};
