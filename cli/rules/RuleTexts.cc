#include "cli/rules/RuleTexts.h"

#include "cli/ReportLines.h"
#include "cli/Shown.h"

#include <utility>

namespace cli {

namespace {

constexpr std::size_t kLongestShown = 300;
constexpr std::size_t kShownOfEach = 120;

} // namespace

std::string abridged(std::wstring_view text)
{
    if (text.size() <= kLongestShown) {
        return shown(text);
    }
    return shown(text.substr(0, kShownOfEach)) + "[... " + std::to_string(text.size() - 2 * kShownOfEach) +
           " characters ...]" + shown(text.substr(text.size() - kShownOfEach));
}

std::string abridged(const std::string& utf8)
{
    std::string text = shownLine(utf8);
    if (text.size() <= 4 * kLongestShown) {
        return text;
    }
    std::size_t begin = 2 * kLongestShown;
    std::size_t end = text.size() - kLongestShown;
    const auto isInside = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U; };
    while (isInside(begin)) {
        --begin;
    }
    while (isInside(end)) {
        ++end;
    }
    return text.substr(0, begin) + "[...]" + text.substr(end);
}

std::string named(std::wstring_view text)
{
    return quoted(abridged(text));
}

std::wstring folderNameOf(const ExaminedBundle& bundle)
{
    return bundle.folder.substr(bundle.folder.rfind(L'/') + 1);
}

std::wstring inBundle(const ExaminedBundle& bundle, std::wstring_view path)
{
    const bool isInside = path.starts_with(bundle.folder) && path.size() > bundle.folder.size();
    return isInside ? L"." + std::wstring(path.substr(bundle.folder.size())) : std::wstring(path);
}

std::string chainText(const std::vector<const ExaminedBundle*>& chain)
{
    constexpr std::size_t kMostShown = 12;
    constexpr std::size_t kShownAtEnd = 3;
    std::string text;
    for (std::size_t index = 0; index < chain.size(); ++index) {
        text += (index == 0 ? "" : " > ") + abridged(folderNameOf(*chain[index]));
        if (chain.size() > kMostShown && index == kMostShown - kShownAtEnd - 1) {
            text += " > ... (" + std::to_string(chain.size() - kMostShown) + " more)";
            index = chain.size() - kShownAtEnd - 1;
        }
    }
    return text;
}

Finding findingOf(const Rule& rule, const ExaminedBundle& bundle, Place place, std::string what)
{
    Finding finding;
    finding.rule = &rule;
    finding.bundle = bundle.folder;
    finding.place = std::move(place);
    finding.what = std::move(what);
    return finding;
}

} // namespace cli
