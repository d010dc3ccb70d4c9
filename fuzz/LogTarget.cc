// Any text through the error log: what is written is what the percent sign's rule leaves of it, and no byte more.
#include "bundle/LogFormat.h"
#include "fuzz/LogModel.h"
#include "fuzz/Target.h"
#include "host/LocaleText.h"
#include "tests/FreshManager.h"

#include <cstring>

namespace fuzz {

namespace {

void writeAndCompare(const std::wstring& whole)
{
    const std::wstring text = whole.substr(0, whole.find(L'\0')); // a log line ends at a zero code unit
    const std::wstring expected = withoutFormats(text);
    requireEqual(formatLogText(text), expected, "the text that a format leaves");
    KestBundleManager& manager = restartManagerAndHost();
    manager.writeLogLine(text.c_str());
    requireEqual(loggedProblems(), localetext::narrow(expected), "the bytes in the log");
}

/// Once as bytes of the locale, once as bare code units.
void log(std::string_view bytes)
{
    writeAndCompare(localetext::widen(bytes));
    std::wstring units(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(units.data(), bytes.data(), units.size() * sizeof(wchar_t));
    writeAndCompare(units);
    const std::string text(bytes.substr(0, bytes.find('\0')));
    if (text.find('%') == std::string::npos) {
        restartManagerAndHost().writeLogLine(localetext::widen(text).c_str());
        requireEqual(loggedProblems(), text, "bytes without a percent sign come out as they went in");
    }
}

const Register kLog("log", log);

} // namespace

} // namespace fuzz
