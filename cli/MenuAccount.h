// The host's list of menus before and after the next start, each entry with where it comes from and what is wrong.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"
#include "cli/MenuDifference.h"

#include <string>
#include <vector>

namespace cli {

enum class MenuOrigin
{
    kHost,         ///< the host's own
    kEarlierStart, ///< a bundle's, registered at an earlier start
    kBundle,       ///< a bundle's, registered at the next start
    kDamage,       ///< what has become of other entries
};

/// The word for `origin` in all reports; stable, since scripts read it.
const char* nameOf(MenuOrigin origin);

struct MenuEntry
{
    MenuDifference::Change change;
    std::wstring entry;
    MenuOrigin origin = MenuOrigin::kHost;
    const ExaminedBundle* bundle = nullptr;       ///< of kBundle, unless nobody can say
    const ExaminedComponent* component = nullptr; ///< the same
    std::string why;                              ///< UTF-8, a sentence, where the update itself is to be explained
    Findings findings;                            ///< what the rules say about it
};

/// A menu file that a bundle names and that no start registers.
struct UnregisteredMenu
{
    const ExaminedBundle* bundle;
    const ExaminedComponent* component;
    Findings findings; ///< why: the chief one first, then what that refers to
};

/// What an update of the list does to entries that it should leave alone.
struct MenuDamage
{
    enum class Kind
    {
        kRunTogether, ///< the entries have become one, without the ";" between them
        kCut,         ///< the one entry has lost the text `cut`
        kLost,        ///< the one entry is gone
        kLeftBehind,  ///< an entry of an earlier start has stayed, in this or another form
    };

    Kind kind;
    std::vector<std::wstring> entries; ///< of the host's own; none for kLeftBehind
    std::wstring now;                  ///< what stands in the list in their place
    std::wstring cut;

    bool operator==(const MenuDamage&) const = default;
};

/// The word for `kind` in all reports; stable, since scripts read it.
const char* nameOf(MenuDamage::Kind kind);

/// What the update of a menu list from `before` to `after` damages, when the bundles' own list is `bundlesBefore`
/// before it and `bundlesAfter` after it.
std::vector<MenuDamage> menuDamage(const std::optional<std::wstring>& before, const std::optional<std::wstring>& after,
                                   const std::optional<std::wstring>& bundlesBefore,
                                   const std::optional<std::wstring>& bundlesAfter);

struct MenuAccount
{
    std::size_t before = 0; ///< the number of entries
    std::size_t after = 0;
    std::vector<MenuEntry> entries; ///< first what is taken out, then the new list in its order
    std::vector<UnregisteredMenu> unregistered;
    std::vector<MenuDamage> damage;      ///< by the next start
    std::vector<MenuDamage> damageLater; ///< by the start after that
};

/// The account of `examination`, which must outlive it.
MenuAccount menuAccount(const Examination& examination);

} // namespace cli
