#include "menus/MenuKind.h"

#include "host/LocaleText.h"

#include <algorithm>
#include <string_view>

namespace {

/// The text from the last "." of `path`, or all of it, up to the first zero code unit of the path.
std::wstring_view extensionOf(const CStdStr<wchar_t>& path)
{
    const std::size_t point = path.rfind(L'.');
    const std::size_t begin = point == std::wstring::npos ? 0 : point;
    const std::wstring_view visible = path.c_str();
    return visible.substr(std::min(begin, visible.size()));
}

} // namespace

MenuKind menuKindOf(const CStdStr<wchar_t>& path)
{
    const std::wstring_view extension = extensionOf(path);
    if (localetext::equalIgnoringCase(extension, L".cuix")) {
        return MenuKind::kCurrent;
    }
    for (const std::wstring_view legacy : {L".mnu", L".mns", L".menuc"}) {
        if (localetext::equalIgnoringCase(extension, legacy)) {
            return MenuKind::kLegacy;
        }
    }
    return MenuKind::kOther;
}
