// What becomes of the host's own entries when its list of menus is updated.
#include "cli/MenuAccount.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace cli {

namespace {

using Entries = std::vector<std::wstring>;
using Lists = std::multiset<std::wstring_view>;

/// The entries of `all` that are not among `others`, each taken away as often as it stands there; no empty ones.
Entries without(const Entries& all, const Entries& others)
{
    Lists left(others.begin(), others.end());
    Entries rest;
    for (const std::wstring& entry : all) {
        if (const auto found = left.find(entry); found != left.end()) {
            left.erase(found);
        } else if (!entry.empty()) {
            rest.push_back(entry);
        }
    }
    return rest;
}

/// Takes those of `lost` that stand in `whole` out of it, one after the other, and returns them.
Entries takeThoseWithin(const std::wstring& whole, Entries& lost)
{
    Entries within;
    std::size_t at = 0;
    for (auto entry = lost.begin(); entry != lost.end();) {
        if (const std::size_t found = whole.find(*entry, at); found != std::wstring::npos) {
            at = found + entry->size();
            within.push_back(std::move(*entry));
            entry = lost.erase(entry);
        } else {
            ++entry;
        }
    }
    return within;
}

/// The damage of the one entry `lost`, from which the text of one of `removed` may have been taken out.
MenuDamage damageOf(const std::wstring& lost, const Entries& removed, Entries& strange)
{
    for (const std::wstring& text : removed) {
        std::wstring left = lost;
        for (std::size_t at = 0; !text.empty() && (at = left.find(text, at)) != std::wstring::npos;) {
            left.erase(at, text.size());
        }
        if (left != lost) {
            if (const auto found = std::find(strange.begin(), strange.end(), left); found != strange.end()) {
                strange.erase(found);
            }
            return {MenuDamage::Kind::kCut, {lost}, left, text};
        }
    }
    return {MenuDamage::Kind::kLost, {lost}, L"", L""};
}

} // namespace

std::vector<MenuDamage> menuDamage(const std::optional<std::wstring>& before, const std::optional<std::wstring>& after,
                                   const std::optional<std::wstring>& bundlesBefore,
                                   const std::optional<std::wstring>& bundlesAfter)
{
    const Entries removed = menuEntries(bundlesBefore);
    const std::set<std::wstring_view> isRemoved(removed.begin(), removed.end());
    Entries own = menuEntries(before);
    own.erase(std::remove_if(own.begin(), own.end(), [&](const auto& entry) { return isRemoved.contains(entry); }),
              own.end());
    Entries left = menuEntries(after);
    left.resize(left.size() - std::min(left.size(), menuEntries(bundlesAfter).size()));

    Entries lost = without(own, left);
    Entries strange = without(left, own);
    std::vector<MenuDamage> damage;
    for (auto whole = strange.begin(); whole != strange.end();) {
        if (Entries within = takeThoseWithin(*whole, lost); !within.empty()) {
            damage.push_back({MenuDamage::Kind::kRunTogether, std::move(within), *whole, L""});
            whole = strange.erase(whole);
        } else {
            ++whole;
        }
    }
    for (const std::wstring& entry : lost) {
        damage.push_back(damageOf(entry, removed, strange));
    }
    for (const std::wstring& entry : strange) {
        damage.push_back({MenuDamage::Kind::kLeftBehind, {}, entry, L""});
    }
    return damage;
}

const char* nameOf(MenuDamage::Kind kind)
{
    switch (kind) {
    case MenuDamage::Kind::kRunTogether:
        return "run together";
    case MenuDamage::Kind::kCut:
        return "cut";
    case MenuDamage::Kind::kLost:
        return "lost";
    case MenuDamage::Kind::kLeftBehind:
        break;
    }
    return "left behind";
}

} // namespace cli
