#include "cli/MenuAccount.h"

#include "cli/MenuFindings.h"
#include "menus/MenuKind.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

namespace cli {

namespace {

using Change = MenuDifference::Change;

/// An entry that a component leaves in the bundles' list.
struct Left
{
    std::wstring entry;
    const ExaminedComponent* component;
};

/// What the components of a bundle leave in the list one after the other.
struct Trail
{
    const ExaminedBundle* bundle;
    std::vector<Left> entries;
};

/// Behind the first menu of a bundle, every component for the start leaves an entry, be it an empty one.
Trail trailOf(const ExaminedBundle& bundle)
{
    Trail trail{&bundle, {}};
    for (const ExaminedComponent& component : bundle.components) {
        if (!component.menu.empty()) {
            for (std::wstring& entry : menuEntries(component.menu)) {
                trail.entries.push_back({std::move(entry), &component});
            }
        } else if (!trail.entries.empty() && component.record.loadsAtStartup()) {
            trail.entries.push_back({L"", &component});
        }
    }
    return trail;
}

std::multimap<std::wstring, Trail> trailsByFirstEntry(const Examination& examination)
{
    std::multimap<std::wstring, Trail> trails;
    for (const ExaminedBundle& bundle : examination.bundles) {
        if (Trail trail = trailOf(bundle); !trail.entries.empty()) {
            std::wstring first = trail.entries.front().entry;
            trails.emplace(std::move(first), std::move(trail));
        }
    }
    return trails;
}

bool standsAt(const Trail& trail, const std::vector<std::wstring>& entries, std::size_t at)
{
    return trail.entries.size() <= entries.size() - at &&
           std::equal(trail.entries.begin(), trail.entries.end(), entries.begin() + static_cast<std::ptrdiff_t>(at),
                      [](const Left& left, const std::wstring& entry) { return left.entry == entry; });
}

/// Says for each of the entries in `list`, which end the new list, whose they are: only what fits is believed.
void attribute(const Examination& examination, std::vector<MenuEntry*> list)
{
    const std::vector<std::wstring> entries = menuEntries(examination.bundleMenus.after);
    if (list.size() != entries.size()) {
        return; // the two lists were not stored together
    }
    auto trails = trailsByFirstEntry(examination);
    for (std::size_t at = 0; at < list.size();) {
        list[at]->origin = MenuOrigin::kBundle;
        const auto [first, last] = trails.equal_range(entries[at]);
        const auto fitting =
            std::find_if(first, last, [&](const auto& named) { return standsAt(named.second, entries, at); });
        if (fitting == last) {
            ++at;
            continue;
        }
        for (const Left& left : fitting->second.entries) {
            MenuEntry& entry = *list[at++];
            entry.origin = MenuOrigin::kBundle;
            entry.bundle = fitting->second.bundle;
            entry.component = left.component;
        }
        trails.erase(fitting);
    }
}

/// What the update does to the first entry.
std::string explanationOf(const MenuEntry& entry, const Examination& examination, bool isFirst)
{
    if (entry.component != nullptr || !entry.entry.empty() || entry.change == Change::kRemoved) {
        return "";
    }
    const bool wasEmpty = !examination.hostMenus.before || examination.hostMenus.before->empty();
    if (isFirst && wasEmpty) {
        return "The bundles' menus are appended behind a \";\", also to an empty list.";
    }
    return isFirst && entry.change == Change::kAdded
               ? "The first entry was a bundle's, and is taken out without the \";\" behind it."
               : "";
}

void noteUnregistered(MenuAccount& account, const Examination& examination, MenuFindings& findings)
{
    for (const ExaminedBundle& bundle : examination.bundles) {
        for (const ExaminedComponent& component : bundle.components) {
            const bool isLeftOut =
                component.menu.empty() && menuKindOf(component.record.moduleName) != MenuKind::kOther;
            if (isLeftOut || component.menu.find(L';') != std::wstring::npos) {
                account.unregistered.push_back({&bundle, &component, findings.against(bundle, component)});
            }
        }
    }
}

} // namespace

MenuAccount menuAccount(const Examination& examination)
{
    const ExaminedList& host = examination.hostMenus;
    const ExaminedList& bundles = examination.bundleMenus;
    const MenuDifference difference = menuDifference(host.before, host.after);
    MenuAccount account{difference.before, difference.after, {}, {}, {}, {}};
    account.damage = menuDamage(host.before, host.after, bundles.before, bundles.after);
    account.damageLater = menuDamage(host.after, host.afterAnother, bundles.after, bundles.afterAnother);

    const std::vector<std::wstring> earlier = menuEntries(bundles.before);
    const std::set<std::wstring_view> isEarlier(earlier.begin(), earlier.end());
    std::set<std::wstring_view> isDamage;
    for (const MenuDamage& damage : account.damage) {
        isDamage.insert(damage.now);
    }
    for (const MenuDifference::Line& line : difference.lines) {
        MenuEntry entry{line.change, line.entry, MenuOrigin::kHost, nullptr, nullptr, "", {}};
        if (line.change == Change::kRemoved && isEarlier.contains(line.entry)) {
            entry.origin = MenuOrigin::kEarlierStart;
        } else if (line.change != Change::kRemoved && !line.entry.empty() && isDamage.contains(line.entry)) {
            entry.origin = MenuOrigin::kDamage;
        }
        account.entries.push_back(std::move(entry));
    }
    const std::size_t appended = std::min(menuEntries(bundles.after).size(), account.after);
    std::vector<MenuEntry*> last;
    for (std::size_t at = account.entries.size() - appended; at < account.entries.size(); ++at) {
        last.push_back(&account.entries[at]);
    }
    attribute(examination, std::move(last));
    MenuFindings findings(examination);
    const std::size_t firstOfList = account.entries.size() - account.after;
    for (std::size_t at = 0; at < account.entries.size(); ++at) {
        MenuEntry& entry = account.entries[at];
        entry.why = explanationOf(entry, examination, at == firstOfList);
        if (entry.component != nullptr) {
            entry.findings = findings.ofEntry(*entry.bundle, *entry.component, entry.entry);
        }
    }
    noteUnregistered(account, examination, findings);
    return account;
}

const char* nameOf(MenuOrigin origin)
{
    switch (origin) {
    case MenuOrigin::kHost:
        return "host";
    case MenuOrigin::kEarlierStart:
        return "earlier start";
    case MenuOrigin::kBundle:
        return "bundle";
    case MenuOrigin::kDamage:
        break;
    }
    return "damage";
}

} // namespace cli
