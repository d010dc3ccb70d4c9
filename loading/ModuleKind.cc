#include "loading/ModuleKind.h"

namespace {

struct Extension
{
    std::wstring_view text;
    ModuleKind kind;
};

constexpr Extension kExtensions[] = {
    {L".dll", ModuleKind::kManaged}, {L".krx", ModuleKind::kNative}, {L".lsp", ModuleKind::kLisp},
    {L".kelx", ModuleKind::kLisp},   {L".vls", ModuleKind::kLisp},   {L".py", ModuleKind::kPython},
};

} // namespace

ModuleKind moduleKindOf(const CStdStr<wchar_t>& path)
{
    const std::size_t point = path.rfind(L'.');
    const std::wstring_view extension = std::wstring_view(path).substr(point == std::wstring::npos ? 0 : point);
    for (const Extension& known : kExtensions) {
        if (localetext::equalIgnoringCase(extension, known.text)) {
            return known.kind;
        }
    }
    return ModuleKind::kOther;
}
