// Reading XML token by token.
#pragma once

#include "host/StdString.h"

/// Walks one document. A token is a start tag or an end tag; the host may add tokens of other kinds, which have no
/// name. A self-closing element gives a start tag and an end tag. The order of the virtual functions is fixed: the
/// autoloader and the host are built apart.
///
/// No operation may throw anything but std::bad_alloc, and none calls back.
class XmlFilerReader
{
public:
    /// Releases the reader and its file.
    virtual ~XmlFilerReader() = default;

    /// 0 when the current token is a start tag, else nonzero.
    virtual int checkStartElement() = 0;

    /// 0 when the current token is an end tag, else nonzero.
    virtual int checkEndElement() = 0;

    /// Writes the value of the attribute `name` of the current start tag into `value`. What a missing attribute does
    /// to `value` is the host's choice, and it shows: the caller keeps one buffer for all attributes of an element
    /// and never clears it. A host that empties `value` gives the plain reading; one that leaves it alone lets a
    /// missing attribute read like the one before it.
    virtual void attribute(const CStdStr<wchar_t>& name, CStdStr<wchar_t>& value) = 0;

    /// Writes the name of the current token's element into `name`, prefix included; empty for a token without one.
    virtual void tokenName(CStdStr<wchar_t>& name) = 0;

    /// Nonzero while the reader stands on a token; 0 after the end of the document, and after an error.
    virtual int moreTokens() = 0;

    /// Nonzero unless the reader stopped on malformed XML.
    virtual int readOk() = 0;

    /// Advances to the next token; the first call reaches the first.
    virtual void readNext() = 0;
};

/// Opens the file at `path` and returns a reader that stands before its first token, owned by the caller and released
/// with delete. Null when no reader can be made, the file that cannot be opened among others: the bundle then counts
/// as sound and empty.
extern "C" XmlFilerReader* kestCreateXmlFilerReader(const wchar_t* path);
