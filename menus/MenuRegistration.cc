// Keeping the host's list of menus in step with the installed bundles.
#include "bundle/BundleManager.h"
#include "menus/VariantText.h"

#include <string_view>
#include <unordered_map>
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

    std::unordered_map<std::wstring_view, std::vector<int>> places; // of each text among the host's entries
    for (int place = 0; place < hostEntries.GetSize(); ++place) {
        places[hostEntries[place]].push_back(place);
    }

    // Meant: text is removed, not entries, and the entries stay those of the list before the first removal. An empty
    // old entry, which the first run has, takes out every separator when the host's list has an empty entry.
    for (int old = 0; old < oldEntries.GetSize(); ++old) {
        const auto found = places.find(oldEntries[old]);
        if (found == places.end()) {
            continue;
        }
        for (const int place : found->second) {
            removeText(hostList, place > 0 ? separator + oldEntries[old] : oldEntries[old]);
        }
    }
    if (!menuList.empty()) {
        hostList += separator;
        hostList += menuList;
    }
    storeText(*config, kHostMenusKey, hostList);
}
