#include "fuzz/Target.h"

#include "host/LocaleText.h"

#include <clocale>
#include <cstdlib>

namespace fuzz {

std::vector<Target>& targets()
{
    static std::vector<Target> all;
    return all;
}

void prepareProcess()
{
    if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) {
        throw std::runtime_error("there is no locale C.UTF-8");
    }
    setenv("HOME", "/home/user", 1);
}

std::string shown(const std::string& text)
{
    return "[" + text + "]";
}

std::string shown(const std::wstring& text)
{
    return "[" + localetext::utf8(text) + "]";
}

std::string shown(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += "\n    " + line;
    }
    return text;
}

} // namespace fuzz
