// What libxml2 has to say, caught.
#pragma once

#include <libxml/xmlerror.h>

namespace standalone {

/// While it lives, what the library says on this thread goes to a handler, and nothing to the standard error stream.
/// The handlers of a document do not do alone: faults of an encoding are reported without any document.
class XmlMessages
{
public:
    /// `handler` is called with `target`; nothing may be thrown by it.
    XmlMessages(xmlStructuredErrorFunc handler, void* target)
        : structured(xmlStructuredError),
          structuredTarget(xmlStructuredErrorContext),
          generic(xmlGenericError),
          genericTarget(xmlGenericErrorContext)
    {
        xmlSetStructuredErrorFunc(target, handler);
        xmlSetGenericErrorFunc(nullptr, ignore);
    }
    XmlMessages(const XmlMessages&) = delete;
    XmlMessages& operator=(const XmlMessages&) = delete;
    ~XmlMessages()
    {
        xmlSetStructuredErrorFunc(structuredTarget, structured);
        xmlSetGenericErrorFunc(genericTarget, generic);
    }

private:
    static void ignore(void* /*target*/, const char* /*format*/, ...) {}

    xmlStructuredErrorFunc structured;
    void* structuredTarget;
    xmlGenericErrorFunc generic;
    void* genericTarget;
};

} // namespace standalone
