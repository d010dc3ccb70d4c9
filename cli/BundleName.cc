#include "cli/BundleName.h"

#include "host/LocaleText.h"

#include <algorithm>

namespace cli {

namespace {

/// Characters that do something to a line instead of being seen in it: in a terminal, in an editor, in a source text.
bool isUnseen(wchar_t unit)
{
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    const bool changesLines = unit == 0x2028 || unit == 0x2029;
    const bool changesDirection = (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
    return isControl || changesLines || changesDirection || unit == 0xFEFF || (unit & 0xFFFE) == 0xFFFE;
}

bool isSurrogate(wchar_t unit)
{
    return unit >= 0xD800 && unit <= 0xDFFF;
}

/// What harms the paths of a bundle wherever they are used.
std::string problemWithPathText(std::wstring_view text)
{
    if (std::string problem = problemWithManifestText(text); !problem.empty()) {
        return problem;
    }
    if (text.find(L';') != std::wstring_view::npos) {
        return "it holds a \";\", which separates the paths in the host's list of menus";
    }
    if (text.find_first_of(L"\"\\") != std::wstring_view::npos) {
        return "it holds a quotation mark or a backslash, which break the expression that loads a LISP file";
    }
    return "";
}

bool isAsciiLetterOrDigit(wchar_t unit)
{
    return (unit >= L'0' && unit <= L'9') || (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z');
}

} // namespace

std::string problemWithManifestText(std::wstring_view text)
{
    if (std::ranges::any_of(text, isSurrogate)) {
        return "it is no text in the encoding of the locale";
    }
    if (std::ranges::any_of(text, isUnseen)) {
        return "it holds a character that is not seen, such as a control character";
    }
    return "";
}

std::string problemWithBundleName(std::wstring_view name)
{
    if (name.empty()) {
        return "it is empty";
    }
    if (name.find(L'/') != std::wstring_view::npos) {
        return "it holds a \"/\"; --folder says where the bundle is made";
    }
    if (name.front() == L'.') {
        return "it begins with a point, so that most programs would not show the folder";
    }
    if (name.front() == L' ' || name.back() == L' ') {
        return "it begins or ends with a blank, which nobody sees";
    }
    return problemWithPathText(name);
}

std::string problemWithBundleFolder(std::wstring_view folder)
{
    return problemWithPathText(folder);
}

bool hasBundleEnding(std::wstring_view name)
{
    const std::size_t length = name.size() - std::min(name.size(), kBundleEnding.size());
    return localetext::equalIgnoringCase(name.substr(length), kBundleEnding);
}

std::wstring withoutBundleEnding(std::wstring_view given)
{
    return std::wstring(hasBundleEnding(given) ? given.substr(0, given.size() - kBundleEnding.size()) : given);
}

std::wstring commandNameFor(std::wstring_view name)
{
    std::wstring command;
    for (const wchar_t unit : name) {
        if (isAsciiLetterOrDigit(unit) || unit > 0xA0) {
            command += unit;
        }
    }
    localetext::upperByGlobalLocale(command);
    return command.empty() ? L"HELLO" : command;
}

} // namespace cli
