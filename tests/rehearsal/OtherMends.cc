#include "tests/rehearsal/MendActions.h"

#include "cli/MenuDifference.h"
#include "host/Configuration.h"
#include "host/LocaleText.h"
#include "standalone/Configuration.h"

#include <algorithm>
#include <functional>

namespace rehearsal {

namespace fs = std::filesystem;

namespace {

constexpr int kMostRounds = 20;

bool isSame(const Told& one, const Told& other)
{
    return one.code == other.code && one.bundle == other.bundle && one.subject == other.subject &&
           one.line == other.line;
}

/// Applies one mend of what is said about the bundle in `folder`, other than `told` itself.
bool mendOnce(const Told& told, const std::string& folder, const Looked& seen, const MendTree& tree)
{
    for (const Told& other : seen.findings) {
        const bool isAbout = other.bundle == folder && !isSame(other, told) && !other.code.starts_with("KB7") &&
                             (!other.code.starts_with("KB5") || other.code == "KB501");
        for (const Mend& mend : allMends()) {
            if (isAbout && mend.rule->code == other.code && other.mend.find(mend.text) != std::string::npos &&
                mend.apply(other, tree)) {
                return true;
            }
        }
    }
    return false;
}

/// Follows what is said about the bundle in `folder` until `told` is gone.
bool mendUntilGone(const Told& told, const std::string& folder, const MendTree& tree)
{
    bool isAny = false;
    for (int round = 0; round < kMostRounds; ++round) {
        const Looked seen = tree.look();
        const bool isThere =
            std::any_of(seen.findings.begin(), seen.findings.end(), [&](const Told& one) { return isSame(one, told); });
        if (!isThere || !mendOnce(told, folder, seen, tree)) {
            break;
        }
        isAny = true;
    }
    return isAny;
}

/// Changes the entries of the host's own list of menus.
bool changeHostMenus(const MendTree& tree, const std::function<void(std::vector<std::wstring>&)>& change)
{
    standalone::Journal events;
    standalone::Configuration store(tree.configuration, events);
    const std::wstring key = L"CUIX/LoadedCuix";
    std::vector<std::wstring> entries = cli::menuEntries(store.text(TarvixConfig::kMenus, key));
    change(entries);
    std::wstring list;
    for (const std::wstring& entry : entries) {
        list += (list.empty() ? L"" : L";") + entry;
    }
    return store.store(TarvixConfig::kMenus, key, list);
}

} // namespace

bool takeEmptyEntriesOut(const Told& /*told*/, const MendTree& tree)
{
    return changeHostMenus(tree, [](std::vector<std::wstring>& entries) { std::erase(entries, L""); });
}

bool renameHostMenu(const Told& told, const MendTree& tree)
{
    return changeHostMenus(tree, [&](std::vector<std::wstring>& entries) {
        std::replace(entries.begin(), entries.end(), localetext::widen(told.subject), std::wstring(L"/host/own.cuix"));
    });
}

bool moveConfigurationAway(const Told& /*told*/, const MendTree& tree)
{
    return fs::remove(tree.configuration);
}

bool mendNamedBundle(const Told& told, const MendTree& tree)
{
    for (const auto& [folder, state] : tree.look().states) {
        if (fs::path(folder).filename() == quotedIn(told.mend).front() && state != "not a bundle") {
            return mendUntilGone(told, folder, tree);
        }
    }
    return false;
}

bool mendOwnBundle(const Told& told, const MendTree& tree)
{
    return mendUntilGone(told, told.bundle, tree);
}

} // namespace rehearsal
