#include "cli/SubjectSearch.h"

#include "cli/BundleName.h"
#include "cli/ExitStatus.h"
#include "cli/MenuDifference.h"
#include "cli/NearestName.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "menus/MenuKind.h"

#include <algorithm>
#include <filesystem>

namespace cli {

namespace {

std::wstring fileName(const std::wstring& path)
{
    return path.substr(path.rfind(L'/') + 1);
}

/// `subject` as a path from the root, without "." and ".." and without a "/" at its end.
std::wstring asPath(const std::string& subject)
{
    std::error_code ignored;
    std::string path = std::filesystem::absolute(subject, ignored).lexically_normal().string();
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return localetext::widen(path);
}

/// One search, for one subject.
class OneSearch
{
public:
    OneSearch(Explanation& toFill, std::vector<const ExaminedBundle*>& itsBundles, const std::string& narrow)
        : explanation(toFill), bundles(itsBundles), subject(localetext::widen(narrow)), path(asPath(narrow))
    {
    }

    /// Whether anything was found.
    bool run()
    {
        searchCommand();
        for (const ExaminedBundle& bundle : explanation.examination().bundles) {
            searchBundle(bundle);
        }
        searchHostMenus();
        return isFound;
    }

private:
    void add(const ExaminedBundle& bundle)
    {
        isFound = true;
        if (std::find(bundles.begin(), bundles.end(), &bundle) == bundles.end()) {
            bundles.push_back(&bundle);
        }
    }

    void searchCommand()
    {
        std::wstring name = subject;
        localetext::upperByGlobalLocale(name);
        ExplainedCommand command{name, {}, {}};
        for (const auto* commands : {&explanation.all.declaredCommands, &explanation.all.idleCommands}) {
            if (const auto places = commands->find(name); places != commands->end()) {
                command.declaredBy.insert(command.declaredBy.end(), places->second.begin(), places->second.end());
            }
        }
        if (name.empty() || command.declaredBy.empty()) {
            return;
        }
        if (const ComponentPlace* const loaded = explanation.all.loadedBy(name)) {
            command.loads = *loaded;
        }
        for (const ComponentPlace& place : command.declaredBy) {
            add(*place.bundle);
        }
        explanation.commands.push_back(std::move(command));
    }

    void searchBundle(const ExaminedBundle& bundle)
    {
        const std::wstring name = folderNameOf(bundle);
        const auto& package = bundle.records.package;
        if (bundle.folder == path || name == subject ||
            (!subject.empty() &&
             (withoutBundleEnding(name) == subject || package.name == subject || package.upgradeCode == subject)) ||
            (!bundle.manifest.empty() && bundle.manifest == path) || liesInNamedFolder(bundle)) {
            add(bundle);
        }
        for (std::size_t index = 0; index < bundle.components.size(); ++index) {
            searchComponent({&bundle, index});
        }
    }

    /// Whether the subject is the folder of a search root in which `bundle` lies, too deep to be found.
    bool liesInNamedFolder(const ExaminedBundle& bundle) const
    {
        const std::wstring folder = bundle.folder.substr(0, bundle.folder.rfind(L'/'));
        const auto& roots = explanation.examination().roots;
        return (folder == path || fileName(folder) == subject) &&
               std::none_of(roots.begin(), roots.end(), [&](const ExaminedRoot& root) { return root.path == folder; });
    }

    void searchComponent(const ComponentPlace& place)
    {
        const std::wstring& module = (*place).record.moduleName;
        const std::wstring& menu = (*place).menu;
        const auto isNamed = [&](const std::wstring& file) {
            return !file.empty() && (file == path || file == subject || fileName(file) == subject);
        };
        if (declaresGlobally((*place).record)) {
            add(*place.bundle);
        }
        if (!isNamed(module) && !isNamed(menu)) {
            return;
        }
        add(*place.bundle);
        if (menuKindOf(module) != MenuKind::kOther) {
            explanation.menus.push_back({menu.empty() ? module : menu, place});
        }
    }

    /// Whether `entry` has the subject as a Global name, which leads to nothing, and may be taken for the one to type.
    bool declaresGlobally(const KestComponentEntry& entry) const
    {
        return !subject.empty() && std::any_of(entry.commands.begin(), entry.commands.end(), [&](const auto& group) {
            return std::any_of(group.commands.begin(), group.commands.end(), [&](const KestCommand& command) {
                return localetext::equalIgnoringCase(command.globalName, subject);
            });
        });
    }

    /// Menus that no bundle brings, or no longer.
    void searchHostMenus()
    {
        std::vector<std::wstring> entries = menuEntries(explanation.examination().hostMenus.after);
        const std::vector<std::wstring> before = menuEntries(explanation.examination().hostMenus.before);
        entries.insert(entries.end(), before.begin(), before.end());
        for (const std::wstring& entry : entries) {
            const bool isNamed = !entry.empty() && (entry == path || entry == subject || fileName(entry) == subject);
            const bool isKnown = std::any_of(explanation.menus.begin(), explanation.menus.end(),
                                             [&](const ExplainedMenu& menu) { return menu.path == entry; });
            if (isNamed && !isKnown) {
                explanation.menus.push_back({entry, {}});
            }
            isFound = isFound || isNamed;
        }
    }

    Explanation& explanation;
    std::vector<const ExaminedBundle*>& bundles;
    std::wstring subject;
    std::wstring path;
    bool isFound = false;
};

/// All names that a subject could have been.
std::vector<std::string> knownNames(const Explanation& explanation)
{
    std::vector<std::string> names;
    for (const ExaminedBundle& bundle : explanation.examination().bundles) {
        const std::wstring name = folderNameOf(bundle);
        for (const std::wstring& one : {withoutBundleEnding(name), name, std::wstring(bundle.records.package.name)}) {
            names.push_back(plainUtf8(one));
        }
        for (const ExaminedComponent& component : bundle.components) {
            names.push_back(plainUtf8(fileName(component.record.moduleName)));
        }
    }
    for (const auto* commands : {&explanation.all.declaredCommands, &explanation.all.idleCommands}) {
        for (const auto& [name, places] : *commands) {
            names.push_back(plainUtf8(name));
        }
    }
    std::sort(names.begin(), names.end()); // one order, whatever that of the commands was
    return names;
}

} // namespace

void addSubject(Explanation& explanation, std::vector<const ExaminedBundle*>& bundles, const std::string& subject)
{
    if (OneSearch(explanation, bundles, subject).run()) {
        return;
    }
    const std::vector<std::string> known = knownNames(explanation);
    auto nearest = nearestName(plainUtf8FromLocale(subject), known);
    if (!nearest) { // commands are known in upper case
        std::wstring upper = localetext::widen(subject);
        localetext::upperByGlobalLocale(upper);
        nearest = nearestName(plainUtf8(upper), known);
    }
    throw WrongUse("no bundle, command or menu is named " + quoted(abridged(plainUtf8FromLocale(subject))) +
                   (nearest ? "; did you mean " + quoted(shownLine(*nearest)) + "?"
                            : "; \"kestbundle list\" shows what there is"));
}

} // namespace cli
