// The error log: one plain-text file, emptied at each start of the host, for users and support to read.
#include "bundle/BundleManager.h"
#include "bundle/LogFormat.h"
#include "manifest/Bundle.h"

#include <ctime>
#include <iterator>

void KestBundleManager::writeLogLine(const wchar_t* text)
{
    if (text == nullptr || *text == L'\0' || !logFile) {
        return;
    }
    // Written as bytes: a wide stream would lose the whole line at a character that the locale cannot encode.
    const std::string bytes = localetext::narrow(formatLogText(text));
    std::fwrite(bytes.data(), 1, bytes.size(), logFile.get());
    std::fflush(logFile.get()); // so that the log is complete when the host crashes next
}

void KestBundleManager::getCurTime(CStdStr<wchar_t>& out)
{
    const std::time_t now = std::time(nullptr);
    wchar_t text[1024] = {};
    if (const std::tm* local = std::localtime(&now)) {
        std::wcsftime(text, std::size(text), L"%Y-%m-%d %H:%M:%S", local);
    }
    out = text;
}

void KestBundle::writeLogSplitLine()
{
    for (const char* text : {"\n", bundlelogtext::kSplitLine, "\n"}) {
        manager->writeLogLine(CStdStr<wchar_t>(text).c_str());
    }
}

void KestBundle::logManifestProblem(const char* message)
{
    writeLogSplitLine();
    manager->writeLogLine((xmlPath + CStdStr<wchar_t>(message)).c_str());
}
