#include "tests/rehearsal/MendActions.h"

#include "host/LocaleText.h"
#include "menus/MenuKind.h"

#include <functional>
#include <regex>

namespace rehearsal {

namespace fs = std::filesystem;

namespace {

/// Gives the bundle in `folder` a component that loads.
bool addComponent(const fs::path& folder, const MendTree& tree)
{
    const ManifestEdit manifest(folder / "PackageContents.xml");
    xmlNode* const package = ManifestEdit::find(manifest.root(), "ApplicationPackage");
    if (package == nullptr) {
        return false;
    }
    manifest.append(package, "<Components><ComponentEntry ModuleName=\"./new.lsp\"/></Components>");
    manifest.save();
    tree.writeSound(folder / "new.lsp");
    return true;
}

bool writeKind(const Told& told, const MendTree& tree, const std::string& extension)
{
    const std::string file = told.subject + extension;
    tree.writeSound(file);
    return changeAt(told, [&](const ManifestEdit& /*manifest*/, xmlNode* element) {
        ManifestEdit::set(element, "ModuleName", "." + file.substr(told.bundle.size()));
        return true;
    });
}

constexpr char kCommands[] = "<Commands GroupName=\"own\"><Command Local=\"OWN\"/></Commands>";

} // namespace

bool declareComponent(const Told& told, const MendTree& tree)
{
    return addComponent(told.bundle, tree);
}

bool giveNamedBundleAComponent(const Told& told, const MendTree& tree)
{
    for (const auto& [folder, state] : tree.look().states) {
        if (fs::path(folder).filename() == quotedIn(told.mend).front() && state == "kept") {
            return addComponent(folder, tree);
        }
    }
    return false;
}

bool giveEmptyBundlesComponents(const Told& /*told*/, const MendTree& tree)
{
    bool isAny = false;
    for (const Told& other : tree.look().findings) {
        isAny = (other.code == "KB501" && addComponent(other.bundle, tree)) || isAny;
    }
    return isAny;
}

bool writeModuleName(const Told& told, const MendTree& tree)
{
    tree.writeSound(fs::path(told.bundle) / "named.lsp");
    return changeAt(told, [](const ManifestEdit& /*manifest*/, xmlNode* element) {
        ManifestEdit::set(element, "ModuleName", "./named.lsp");
        return true;
    });
}

bool writeFileKind(const Told& told, const MendTree& tree)
{
    return writeKind(told, tree, ".lsp");
}

bool writeSimilarKind(const Told& told, const MendTree& tree)
{
    return writeKind(told, tree, quotedIn(told.mend).front());
}

bool writeEarlierVersion(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& /*manifest*/, xmlNode* element) {
        for (xmlNode* one : ManifestEdit::childrenNamed(element->parent, "ComponentEntry")) {
            if (ManifestEdit::text(one, "ModuleName") == ManifestEdit::text(element, "ModuleName")) {
                ManifestEdit::set(one, "PythonVersion", ManifestEdit::text(element, "PythonVersion"));
                return true;
            }
        }
        return false;
    });
}

bool writeStandIn(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& /*manifest*/, xmlNode* element) {
        ManifestEdit::set(element, "PythonVersion", "standin");
        return true;
    });
}

bool loadOnCommand(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& manifest, xmlNode* element) {
        ManifestEdit::set(element, "LoadOnCommandInvocation", "True");
        manifest.append(element, kCommands);
        return true;
    });
}

bool appendCommandOfText(const Told& told, const MendTree& /*tree*/)
{
    static const std::regex kElement("<Commands>.*</Commands>");
    std::smatch element;
    return std::regex_search(told.mend, element, kElement) &&
           changeAt(told, [&](const ManifestEdit& manifest, xmlNode* component) {
               manifest.append(component, element[0]);
               return true;
           });
}

bool declareOwnCommand(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& manifest, xmlNode* element) {
        manifest.append(element, kCommands);
        return true;
    });
}

bool writeOwnLocal(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& /*manifest*/, xmlNode* element) {
        ManifestEdit::set(element, "Local", "OWN");
        return true;
    });
}

bool putMenusLast(const Told& told, const MendTree& /*tree*/)
{
    return changeAt(told, [](const ManifestEdit& /*manifest*/, xmlNode* element) {
        xmlNode* const components = element->parent;
        for (xmlNode* const entry : ManifestEdit::childrenNamed(components, "ComponentEntry")) {
            const std::string module = ManifestEdit::text(entry, "ModuleName");
            if (module.starts_with("./") && menuKindOf(localetext::widen(module)) != MenuKind::kOther) {
                xmlUnlinkNode(entry);
                xmlAddChild(components, entry);
            }
        }
        return true;
    });
}

} // namespace rehearsal
