// The one splitting routine, a member of both the manager and the bundle.
#include "bundle/BundleManager.h"
#include "manifest/Bundle.h"

namespace {

void split(std::wstring_view rest, std::wstring_view delimiter, CStringArray& output)
{
    output.RemoveAll();
    std::size_t found = 0;
    while ((found = rest.find(delimiter)) != std::wstring_view::npos) {
        output.Add(CStdStr<wchar_t>(rest.substr(0, found)));
        rest.remove_prefix(found + 1); // meant: one character, whatever the delimiter's length; callers pass one
    }
    output.Add(CStdStr<wchar_t>(rest));
}

} // namespace

void KestBundleManager::divString(const CStdStr<wchar_t>& source, const CStdStr<wchar_t>& delimiter,
                                  CStringArray& output)
{
    split(source, delimiter, output);
}

void KestBundle::divString(const CStdStr<wchar_t>& source, const CStdStr<wchar_t>& delimiter, CStringArray& output)
{
    split(source, delimiter, output);
}
