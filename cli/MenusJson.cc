// The account of the menus for programs; docs/menus-json.md describes it.
#include "cli/FindingJson.h"
#include "cli/MenusReport.h"
#include "cli/Shown.h"

#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

Json textOrNull(std::string text)
{
    return text.empty() ? Json() : Json(std::move(text));
}

Json entriesOf(const std::vector<std::wstring>& entries)
{
    Json list = Json::array();
    for (const std::wstring& entry : entries) {
        list.push_back(plainUtf8(entry));
    }
    return list;
}

Json listOf(const std::optional<std::wstring>& stored)
{
    return stored ? entriesOf(menuEntries(stored)) : Json();
}

Json jsonOf(const ExaminedList& list)
{
    return {
        {"before", listOf(list.before)}, {"after", listOf(list.after)}, {"afterAnother", listOf(list.afterAnother)}};
}

Json jsonOf(const MenuEntry& entry)
{
    constexpr const char* kChanges[] = {"stays", "removed", "added"};
    const ExaminedComponent* const component = entry.component;
    return {{"change", kChanges[static_cast<std::size_t>(entry.change)]},
            {"entry", plainUtf8(entry.entry)},
            {"origin", nameOf(entry.origin)},
            {"bundle", textOrNull(entry.bundle != nullptr ? plainUtf8(entry.bundle->folder) : "")},
            {"component", textOrNull(component != nullptr ? plainUtf8(component->record.moduleName) : "")},
            {"isConverted",
             component != nullptr && !component->menu.empty() && component->menu != component->record.moduleName},
            {"why", textOrNull(entry.findings.empty() ? entry.why : entry.findings.front().what)},
            {"findings", findingsJson(entry.findings)}};
}

Json jsonOf(const std::vector<MenuDamage>& all)
{
    Json list = Json::array();
    for (const MenuDamage& damage : all) {
        list.push_back({{"kind", nameOf(damage.kind)},
                        {"entries", entriesOf(damage.entries)},
                        {"now", textOrNull(plainUtf8(damage.now))},
                        {"cut", textOrNull(plainUtf8(damage.cut))}});
    }
    return list;
}

} // namespace

std::string menusJson(const Examination& examination, const MenuAccount& account, int exitStatus)
{
    Json entries = Json::array();
    for (const MenuEntry& entry : account.entries) {
        entries.push_back(jsonOf(entry));
    }
    Json unregistered = Json::array();
    for (const UnregisteredMenu& menu : account.unregistered) {
        unregistered.push_back({{"bundle", plainUtf8(menu.bundle->folder)},
                                {"component", plainUtf8(menu.component->record.moduleName)},
                                {"reason", menu.findings.empty() ? "" : menu.findings.front().what},
                                {"findings", findingsJson(menu.findings)}});
    }
    const Json document = {{"format", 1},
                           {"version", KEST_VERSION},
                           {"exitStatus", exitStatus},
                           {"failure", textOrNull(examination.failure)},
                           {"notices", examination.notices},
                           {"hostList", jsonOf(examination.hostMenus)},
                           {"bundleList", jsonOf(examination.bundleMenus)},
                           {"entries", std::move(entries)},
                           {"unregistered", std::move(unregistered)},
                           {"damage", jsonOf(account.damage)},
                           {"damageLater", jsonOf(account.damageLater)}};
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
