#include "standalone/WideNames.h"

#include "standalone/Utf8.h"

#include <utility>

namespace standalone {

void WideNames::clear()
{
    found.fill({});
    wideForms.clear();
}

const std::wstring& WideNames::widened(const char* name)
{
    const auto known = wideForms.find(name);
    if (known != wideForms.end()) {
        return known->second;
    }
    std::wstring wide;
    widenUtf8(name, wide);
    return wideForms.emplace(name, std::move(wide)).first->second;
}

} // namespace standalone
