// Keeping the host's list of menus in step with the installed bundles.
#include "bundle/BundleManager.h"
#include "menus/VariantText.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>
#include <vector>

namespace {

constexpr wchar_t kBundleMenusKey[] = L"CUIX/LoadedBundleCuix";
constexpr wchar_t kHostMenusKey[] = L"CUIX/LoadedCuix";

/// The text under `key`; empty when it cannot be read.
CStdStr<wchar_t> storedText(const TarvixConfig& config, const wchar_t* key)
{
    KestVariant value;
    if (config.getValue(TarvixConfig::kMenus, key, value) != Kest::eOk) {
        return {};
    }
    return variantText(value);
}

void storeText(TarvixConfig& config, const wchar_t* key, const CStdStr<wchar_t>& text)
{
    KestVariant value;
    setVariantText(value, text);
    config.setValue(TarvixConfig::kMenus, key, value);
}

/// The places of each text among the host's entries, in order.
using Places = std::map<std::wstring_view, std::vector<int>>;

// The arrays are not const: reading a const one is an operation of its own, which the host need not have.

Places placesOf(CStringArray& entries)
{
    Places places;
    for (int place = 0; place < entries.GetSize(); ++place) {
        places[entries[place]].push_back(place);
    }
    return places;
}

/// Whether taking the text of `entry` out, the separator before it included, takes out its places and nothing else:
/// none is the first, and no other entry begins with it.
bool goesAlone(const Places& places, Places::const_iterator entry)
{
    const auto next = std::next(entry);
    return entry->second.front() > 0 && (next == places.end() || !next->first.starts_with(entry->first));
}

/// `entries` joined again, without those of `outgoing`, each of which goes alone.
CStdStr<wchar_t> withoutEntries(CStringArray& entries, const std::vector<Places::const_iterator>& outgoing)
{
    std::vector<bool> goes(static_cast<std::size_t>(entries.GetSize()));
    for (const auto& entry : outgoing) {
        for (const int place : entry->second) {
            goes[static_cast<std::size_t>(place)] = true;
        }
    }
    CStdStr<wchar_t> text;
    text.append(entries[0]);
    for (int place = 1; place < entries.GetSize(); ++place) {
        if (!goes[static_cast<std::size_t>(place)]) {
            text.append(1, L';').append(entries[place]);
        }
    }
    return text;
}

/// Removes every occurrence of `pattern` from `text`, those included that a removal brings about behind its position.
void removeText(CStdStr<wchar_t>& text, const CStdStr<wchar_t>& pattern)
{
    if (pattern.empty()) {
        return;
    }
    std::size_t at = 0;
    while (at < text.size() && (at = text.find(pattern, at)) != std::wstring::npos) {
        text.erase(at, pattern.size());
    }
}

/// Removes the text of `entry` from `text` once for each of its places, with the separator before it but at the first.
void removeTexts(CStdStr<wchar_t>& text, const Places::value_type& entry)
{
    for (const int place : entry.second) {
        removeText(text, (place > 0 ? L";" : L"") + CStdStr<wchar_t>(entry.first));
    }
}

} // namespace

void KestBundleManager::writeCuixToConfig(const CStdStr<wchar_t>& menuList)
{
    TarvixConfig* config = kestConfig();
    if (config == nullptr) {
        return;
    }
    const CStdStr<wchar_t> previousList = storedText(*config, kBundleMenusKey);
    if (previousList.empty() && menuList.empty()) {
        return;
    }
    // First, so that the next run takes out what this one adds even when it ends before the host's list is stored.
    storeText(*config, kBundleMenusKey, menuList);

    const CStdStr<wchar_t> separator = L";";
    CStringArray oldEntries;
    divString(previousList, separator, oldEntries);
    CStdStr<wchar_t> hostList = storedText(*config, kHostMenusKey);
    CStringArray hostEntries;
    divString(hostList, separator, hostEntries);

    const Places places = placesOf(hostEntries);
    std::vector<Places::const_iterator> outgoing;
    for (int old = 0; old < oldEntries.GetSize(); ++old) {
        if (const auto found = places.find(oldEntries[old]); found != places.end()) {
            outgoing.push_back(found);
        }
    }

    // Meant: text is removed, not entries, and the entries stay those of the list before the first removal. An empty
    // old entry, which the first run has, takes out every separator when the host's list has an empty entry. Nearly
    // always that is the same as removing entries, which takes one walk over the list instead of one for each.
    if (std::all_of(outgoing.begin(), outgoing.end(), [&](const auto& entry) { return goesAlone(places, entry); })) {
        hostList = withoutEntries(hostEntries, outgoing);
    } else {
        for (const auto& entry : outgoing) {
            removeTexts(hostList, *entry);
        }
    }
    if (!menuList.empty()) {
        hostList += separator;
        hostList += menuList;
    }
    storeText(*config, kHostMenusKey, hostList);
}
