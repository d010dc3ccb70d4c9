#include "host/MenuDatabase.h"

#include "standalone/Configuration.h"
#include "standalone/Folders.h"
#include "standalone/Host.h"
#include "standalone/MenuText.h"
#include "standalone/Utf8.h"
#include "standalone/WholeFile.h"

#include "host/LocaleText.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

using standalone::displayable;

constexpr std::size_t kLargestMenu = 16UL << 20;
constexpr std::size_t kLongestStem = 200; // bytes: with what is added, the longest name that file systems take

/// 64-bit FNV-1a: the names of converted files stay the same from build to build.
std::uint64_t hashOf(std::string_view bytes)
{
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char byte : bytes) {
        hash = (hash ^ static_cast<std::uint8_t>(byte)) * 0x100000001B3U;
    }
    return hash;
}

/// The file name of the menu made from `source`: readable, and its own for each source.
std::string convertedName(const std::string& source)
{
    std::string stem = source.substr(source.rfind('/') + 1);
    stem.resize(std::min(stem.rfind('.'), stem.size()));
    std::replace(stem.begin(), stem.end(), ';', '_'); // ";" separates the paths of a menu list
    std::size_t length = std::min(stem.size(), kLongestStem);
    while (length < stem.size() && length > 0 && (static_cast<std::uint8_t>(stem[length]) & 0xC0U) == 0x80U) {
        --length; // not within a character
    }
    stem.resize(length);
    std::array<char, 32> ending{};
    std::snprintf(ending.data(), ending.size(), "-%016" PRIX64 ".cuix", hashOf(source));
    return stem + ending.data();
}

/// Writes `cuix` to `target` unless it stands there already. Returns a problem or an empty text.
std::string keep(const std::string& folder, const std::string& target, const std::string& cuix)
{
    if (const int error = standalone::makeFolders(folder); error != 0) {
        return "the folder \"" + displayable(std::string_view(folder)) +
               "\" cannot be made: " + displayable(std::string_view(std::strerror(error)));
    }
    std::string present;
    if (standalone::readWholeFile(target, cuix.size(), present).empty() && present == cuix) {
        standalone::discardUnfinished(target);
        return "";
    }
    if (const int error = standalone::replaceWholeFile(target, cuix); error != 0) {
        return "the file \"" + displayable(std::string_view(target)) +
               "\" cannot be written: " + displayable(std::string_view(std::strerror(error)));
    }
    return "";
}

/// Makes `target` from `source`. Returns a problem or an empty text.
std::string convert(const std::wstring& source, std::string& target)
{
    const std::wstring extension = source.substr(std::min(source.rfind(L'.'), source.size()));
    const bool isSource =
        localetext::equalIgnoringCase(extension, L".mnu") || localetext::equalIgnoringCase(extension, L".mns");
    if (!isSource && !localetext::equalIgnoringCase(extension, L".menuc")) {
        return "the file extension is none of \".mnu\", \".mns\" and \".menuc\"";
    }
    const std::string& configurationFile = standalone::Host::current().configuration().file();
    if (configurationFile.empty()) {
        return "no configuration file is set, and converted menus are kept beside it; set HOME";
    }
    const std::string folder = standalone::folderOf(configurationFile) + "/ConvertedMenus";
    if (folder.find(';') != std::string::npos) {
        return "the folder \"" + displayable(std::string_view(folder)) +
               "\" has a \";\" in its path, which separates the paths of a menu list";
    }
    std::string bytes;
    const std::string narrowSource = localetext::narrow(source);
    if (std::string problem = standalone::readWholeFile(narrowSource, kLargestMenu, bytes); !problem.empty()) {
        return problem;
    }
    const standalone::MenuText menu =
        isSource ? standalone::cuixFromSourceMenu(bytes) : standalone::cuixFromCompactMenu(bytes);
    if (!menu.problem.empty()) {
        return menu.problem;
    }
    target = folder + "/" + convertedName(narrowSource);
    return standalone::Host::current().rehearsal() == nullptr ? keep(folder, target, menu.cuix) : "";
}

} // namespace

bool Database::convertMenuToCuix(const CStdStr<wchar_t>& source, CStdStr<wchar_t>& converted)
{
    std::string target;
    const std::string problem = convert(source, target);
    const std::wstring made = problem.empty() ? localetext::widen(target) : std::wstring();
    standalone::Host::current().journal().add(standalone::MenuConversion{source, made, problem});
    converted = made;
    return problem.empty();
}
