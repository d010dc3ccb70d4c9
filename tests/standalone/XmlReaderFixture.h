// Documents written to files and read through the host's door.
#pragma once

#include "tests/standalone/HostFixture.h"

#include "host/LocaleText.h"
#include "host/XmlReader.h"
#include "standalone/Journal.h"
#include "standalone/Utf8.h"

#include <memory>
#include <string>
#include <vector>

namespace standalonetest {

using standalone::ManifestRead;
using XmlReader = std::unique_ptr<XmlFilerReader>;

/// `text` in UTF-8, every code unit as it is.
inline std::string utf8(const std::wstring& text)
{
    std::string bytes;
    for (const wchar_t unit : text) {
        localetext::appendUtf8(bytes, unit);
    }
    return bytes;
}

/// Reads on to the end and tells what came: "<a x=[1]>" for a start tag, where `attributes` names what to ask for,
/// "</a>" for an end tag, and last "ok" or "malformed".
inline std::string toldBy(XmlFilerReader& reader, const std::vector<std::wstring>& attributes)
{
    std::string told;
    CStdStr<wchar_t> name;
    for (reader.readNext(); reader.moreTokens() != 0; reader.readNext()) {
        reader.tokenName(name);
        const bool isStart = reader.checkStartElement() == 0;
        EXPECT_NE(isStart, reader.checkEndElement() == 0);
        told += (isStart ? "<" : "</") + utf8(name);
        for (const std::wstring& attribute : attributes) {
            CStdStr<wchar_t> value(L"left from before");
            reader.attribute(attribute, value);
            if (isStart) {
                told += " " + utf8(attribute) + "=[" + utf8(value) + "]";
            } else {
                EXPECT_EQ(value, L"");
            }
        }
        told += ">";
    }
    return told + (reader.readOk() != 0 ? " ok" : " malformed");
}

class XmlReaderFixture : public HostFixture
{
protected:
    XmlReaderFixture() { startHost(); }

    XmlReader open(const std::string& path)
    {
        return XmlReader(kestCreateXmlFilerReader(localetext::widen(path).c_str()));
    }

    /// A reader of a new file with the content `document`.
    XmlReader openDocument(const std::string& document)
    {
        const std::string path = folder / ("document" + std::to_string(++documentCount) + ".xml");
        writeFile(path, document);
        return open(path);
    }

    std::string told(const std::string& document, const std::vector<std::wstring>& attributes = {})
    {
        const XmlReader reader = openDocument(document);
        return reader != nullptr ? toldBy(*reader, attributes) : "no reader";
    }

    ManifestRead lastRead() { return running->journal().only<ManifestRead>().back(); }

    /// "line:column problem" of the fault that the journal tells of last; empty for a document without one.
    std::string lastFault()
    {
        const ManifestRead read = lastRead();
        return read.malformed ? std::to_string(read.line) + ":" + std::to_string(read.column) + " " + read.problem
                              : read.problem;
    }

    int documentCount = 0;
};

} // namespace standalonetest
