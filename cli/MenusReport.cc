#include "cli/MenusReport.h"

#include "cli/FindingText.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"

namespace cli {

namespace {

using Change = MenuDifference::Change;

std::string entryText(const std::wstring& entry)
{
    return entry.empty() ? "(an empty entry)" : shown(entry);
}

std::string furtherLine(const std::string& text)
{
    return "      " + text + "\n";
}

std::string sourceOf(const MenuEntry& entry)
{
    switch (entry.origin) {
    case MenuOrigin::kHost:
        return entry.entry.empty() || entry.change == Change::kRemoved ? "" : "the host's own";
    case MenuOrigin::kEarlierStart:
        return "a bundle's, registered at an earlier start; no bundle brings it any more";
    case MenuOrigin::kDamage:
        return "what becomes of other entries; see below";
    case MenuOrigin::kBundle:
        break;
    }
    if (entry.component == nullptr) {
        return "a bundle's";
    }
    const std::wstring& source = entry.component->record.moduleName;
    const bool isConverted = !entry.component->menu.empty() && entry.component->menu != source;
    return "of " + shown(entry.bundle->folder) + (isConverted ? "\n      converted from " + shown(source) : "");
}

/// `findings` as everywhere, below an entry.
std::string findingLines(const Findings& findings, bool hasColours)
{
    constexpr std::string_view kMargin = "    ";
    std::string text;
    for (const Finding& finding : findings) {
        const std::string lines = findingText(finding, hasColours);
        for (std::size_t at = 0; at < lines.size();) {
            const std::size_t end = lines.find('\n', at) + 1;
            text.append(kMargin).append(lines, at, end - at);
            at = end;
        }
    }
    return text;
}

std::string linesOf(const MenuEntry& entry, bool hasColours)
{
    constexpr char kSigns[] = {' ', '-', '+'};
    std::string text =
        std::string("  ") + kSigns[static_cast<std::size_t>(entry.change)] + " " + entryText(entry.entry) + "\n";
    if (const std::string source = sourceOf(entry); !source.empty()) {
        text += furtherLine(source);
    }
    text += entry.why.empty() ? "" : furtherLine(entry.why);
    return text + findingLines(entry.findings, hasColours);
}

std::string damageText(const MenuDamage& damage)
{
    std::string entries;
    for (const std::wstring& entry : damage.entries) {
        entries += "  " + shown(entry) + "\n";
    }
    switch (damage.kind) {
    case MenuDamage::Kind::kRunTogether:
        return entries + furtherLine("run together into " + quoted(shown(damage.now)) + ",") +
               furtherLine("for an empty entry among those of the start before takes every \";\" out of a list that "
                           "has one, too.");
    case MenuDamage::Kind::kCut:
        return entries + furtherLine("becomes " + quoted(shown(damage.now)) + ",") +
               furtherLine("for " + quoted(shown(damage.cut)) +
                           " is taken out of the list as text, within longer entries, too.");
    case MenuDamage::Kind::kLost:
        return entries + furtherLine("is no longer in the list.");
    case MenuDamage::Kind::kLeftBehind:
        break;
    }
    return "  " + shown(damage.now) + "\n" +
           furtherLine("stays in the list though it is a bundle's of the start before, or made of such.");
}

std::string damageSection(const char* heading, const std::vector<MenuDamage>& all)
{
    std::string text = all.empty() ? "" : std::string("\n") + heading + "\n";
    for (const MenuDamage& damage : all) {
        text += damageText(damage);
    }
    return text;
}

std::string unregisteredSection(const MenuAccount& account, bool hasColours)
{
    std::string text = account.unregistered.empty() ? "" : "\nMenus of bundles that are not registered:\n";
    for (const UnregisteredMenu& menu : account.unregistered) {
        text += "  " + shown(menu.component->record.moduleName) + "\n" + findingLines(menu.findings, hasColours);
    }
    return text;
}

} // namespace

bool isAllWell(const Examination& examination, const MenuAccount& account)
{
    return examination.failure.empty() && examination.notices.empty() && account.unregistered.empty() &&
           account.damage.empty() && account.damageLater.empty();
}

std::string menusText(const Examination& examination, const MenuAccount& account, bool hasColours)
{
    std::string text = "The host's list of menus: " + counted(account.before, "entry", "entries") + " now, " +
                       std::to_string(account.after) + " after the next start.\n";
    text += account.entries.empty() ? "" : "\n";
    for (const MenuEntry& entry : account.entries) {
        text += linesOf(entry, hasColours);
    }
    text += unregisteredSection(account, hasColours);
    text += damageSection("Damaged by the next start:", account.damage);
    text += damageSection("Damaged by the start after that:", account.damageLater);
    if (!account.damage.empty() || !account.damageLater.empty()) {
        text +=
            "\nTo prevent it, take the empty entries out of the host's list, name menus behind all other components "
            "of\ntheir bundle, and give no two menus paths of which one ends with the other.\n";
    }
    for (const std::string& notice : examination.notices) {
        text += "\nThe host says: " + shownLine(notice) + "\n";
    }
    if (!examination.failure.empty()) {
        text += "\nThe start is cut short: " + shownLine(examination.failure) + "\n";
    }
    return text + "\nNothing was written.\n";
}

} // namespace cli
