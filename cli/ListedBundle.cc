#include "cli/ListedBundle.h"

#include <algorithm>
#include <unordered_map>

namespace cli {

namespace {

std::vector<std::wstring> commandsOf(const ExaminedBundle& bundle)
{
    std::vector<std::wstring> names;
    for (const ExaminedComponent& component : bundle.components) {
        names.insert(names.end(), component.commands.begin(), component.commands.end());
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

} // namespace

std::vector<ListedBundle> listedBundles(const Examination& examination, const Findings& reasons)
{
    std::unordered_map<std::wstring, const Finding*> first;
    for (const Finding& reason : reasons) {
        if (reason.rule->severity == Severity::kNote) {
            continue;
        }
        const Finding*& known = first[reason.bundle];
        if (known == nullptr || reason.rule->severity < known->rule->severity) {
            known = &reason;
        }
    }
    std::vector<ListedBundle> listed;
    listed.reserve(examination.bundles.size());
    for (const ExaminedBundle& bundle : examination.bundles) {
        const auto reason = first.find(bundle.folder);
        const auto menus = std::count_if(bundle.components.begin(), bundle.components.end(),
                                         [](const auto& one) { return !one.menu.empty(); });
        listed.push_back({&bundle, commandsOf(bundle), static_cast<std::size_t>(menus),
                          reason != first.end() ? reason->second : nullptr});
    }
    return listed;
}

bool isAllLoaded(const ListedBundle& listed)
{
    return listed.bundle->isLoaded() && listed.bundle->state != BundleState::kLoadedWithFailures &&
           (listed.reason == nullptr || listed.reason->rule->severity != Severity::kError);
}

} // namespace cli
