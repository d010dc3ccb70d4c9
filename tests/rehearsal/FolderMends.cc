#include "tests/rehearsal/MendActions.h"

#include "tests/AssemblyBytes.h"

#include <algorithm>
#include <fstream>

namespace rehearsal {

namespace fs = std::filesystem;

namespace {

constexpr char kManifest[] = "PackageContents.xml";

bool isInTree(const fs::path& path, const MendTree& tree)
{
    return path.string().starts_with(tree.top.string() + "/");
}

/// A bundle in `folder` that loads.
void writeBundle(const MendTree& tree, const fs::path& folder, const std::string& upgradeCode)
{
    fs::create_directories(folder);
    std::ofstream(folder / kManifest) << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ApplicationPackage Name=\"new\" "
                                         "UpgradeCode=\"" +
                                             upgradeCode +
                                             "\">\n  <Components>\n    <ComponentEntry "
                                             "ModuleName=\"./new.lsp\"/>\n  </Components>\n</ApplicationPackage>\n";
    tree.writeSound(folder / "new.lsp");
}

/// Gives the component of `told` the file `name` in place of its own.
bool renameTo(const Told& told, const std::string& name)
{
    const fs::path old = told.subject;
    const fs::path renamed = old.parent_path() / name;
    std::error_code error;
    fs::rename(old, renamed, error); // the file itself may be missing: another finding tells it
    ManifestEdit manifest(told.file);
    xmlNode* const entry = manifest.elementAt(told.line, told.column);
    ManifestEdit::set(entry, "ModuleName", "." + renamed.string().substr(told.bundle.size()));
    manifest.save();
    return true;
}

} // namespace

bool Looked::isLoaded(const std::string& folder) const
{
    const auto state = states.find(folder);
    return state != states.end() && (state->second.starts_with("loaded") || state->second == "menus only");
}

void MendTree::writeSound(const fs::path& path) const
{
    fs::create_directories(path.parent_path());
    fs::remove_all(path);
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char one) { return static_cast<char>(one >= 'A' && one <= 'Z' ? one - 'A' + 'a' : one); });
    static const std::map<std::string, std::string> kContents{{".dll", assemblyBytes()},
                                                              {".mnu", "[Menu]\nLine = LINE\n"},
                                                              {".mns", "[Menu]\nLine = LINE\n"},
                                                              {".menuc", "menuc\t1\nM\tMenu\nI\tLine\tLINE\n"}};
    if (extension == ".krx") {
        fs::create_symlink(soundModule, path);
    } else {
        const auto content = kContents.find(extension);
        std::ofstream(path, std::ios::binary) << (content != kContents.end() ? content->second : "");
    }
}

void MendTree::installBundle(const std::string& upgradeCode) const
{
    int number = 1;
    while (fs::exists(plugins / ("Needed" + std::to_string(number) + ".bundle"))) {
        ++number;
    }
    writeBundle(*this, plugins / ("Needed" + std::to_string(number) + ".bundle"), upgradeCode);
}

bool makeFolder(const Told& told, const MendTree& tree)
{
    const std::vector<std::string> named = quotedIn(told.mend);
    const fs::path folder = named.empty() ? fs::path(told.file) : fs::path(named.front());
    return isInTree(folder, tree) && (fs::is_directory(folder) || fs::create_directories(folder));
}

bool letRead(const Told& told, const MendTree& tree)
{
    const bool isManifest = fs::path(told.file).filename() == kManifest;
    if (isManifest && fs::is_directory(told.file)) {
        fs::remove_all(told.file);
        writeBundle(tree, told.bundle, "{READ}");
    }
    if (!isManifest && !fs::is_directory(told.file)) {
        fs::remove(told.file);
        fs::create_directories(told.file);
    }
    fs::permissions(told.file, fs::perms::all);
    return true;
}

bool letWrite(const Told& told, const MendTree& /*tree*/)
{
    fs::permissions(quotedIn(told.mend).front(), fs::perms::all);
    return true;
}

bool removeFile(const Told& told, const MendTree& /*tree*/)
{
    return fs::remove_all(told.file) > 0;
}

bool writeManifest(const Told& told, const MendTree& tree)
{
    writeBundle(tree, told.bundle, "{WRITTEN}");
    fs::rename(fs::path(told.bundle) / kManifest, fs::path(told.bundle) / quotedIn(told.mend).front());
    return true;
}

bool renameManifest(const Told& told, const MendTree& /*tree*/)
{
    fs::rename(fs::path(told.bundle) / quotedIn(told.found).front(),
               fs::path(told.bundle) / quotedIn(told.mend).front());
    return true;
}

bool moveManifestUp(const Told& told, const MendTree& /*tree*/)
{
    const fs::path below = (fs::path(told.bundle) / quotedIn(told.found).front()).parent_path();
    const fs::path aside = told.bundle + ".aside";
    fs::rename(below, aside);
    for (const fs::directory_entry& entry : fs::directory_iterator(aside)) {
        fs::rename(entry.path(), told.bundle / entry.path().filename());
    }
    fs::remove(aside);
    return true;
}

bool unpack(const Told& told, const MendTree& tree)
{
    fs::remove(told.bundle);
    writeBundle(tree, told.bundle, "{UNPACKED}");
    return true;
}

bool removeBundle(const Told& told, const MendTree& tree)
{
    fs::remove_all(told.bundle);
    tree.removed.insert(told.bundle);
    return true;
}

bool moveBundleUp(const Told& told, const MendTree& tree)
{
    const fs::path moved = fs::path(told.bundle).parent_path().parent_path() / fs::path(told.bundle).filename();
    if (fs::exists(moved)) {
        return false;
    }
    fs::rename(told.bundle, moved);
    tree.moved[told.bundle] = moved;
    return true;
}

bool renameBundle(const Told& told, const MendTree& tree)
{
    const fs::path renamed = fs::path(told.bundle).parent_path() / quotedIn(told.mend).front();
    if (fs::exists(renamed)) {
        return false;
    }
    fs::rename(told.bundle, renamed);
    tree.moved[told.bundle] = renamed;
    return true;
}

bool installNeeded(const Told& told, const MendTree& tree)
{
    tree.installBundle(told.subject);
    return true;
}

bool makeFileSound(const Told& told, const MendTree& tree)
{
    tree.writeSound(told.subject);
    return true;
}

bool mendReason(const Told& told, const MendTree& tree)
{
    tree.installEngines(); // the reason is theirs or the file's
    return makeFileSound(told, tree);
}

bool shipAsMenu(const Told& told, const MendTree& /*tree*/)
{
    return renameTo(told, fs::path(told.subject).stem().string() + quotedIn(told.mend).front());
}

bool renameFile(const Told& told, const MendTree& /*tree*/)
{
    return renameTo(told, "renamed" + fs::path(told.subject).extension().string());
}

bool shortenPath(const Told& told, const MendTree& tree)
{
    ManifestEdit manifest(told.file);
    ManifestEdit::set(manifest.elementAt(told.line, told.column), "ModuleName", "./short.lsp");
    manifest.save();
    tree.writeSound(fs::path(told.bundle) / "short.lsp");
    return true;
}

bool removeUnneeded(const Told& told, const MendTree& tree)
{
    for (const Told& one : unneededOf(told, tree)) {
        removeBundle(one, tree);
    }
    return true;
}

bool removeEmptyBundles(const Told& /*told*/, const MendTree& tree)
{
    bool isAny = false;
    for (const Told& other : tree.look().findings) {
        isAny = (other.code == "KB501" && removeBundle(other, tree)) || isAny;
    }
    return isAny;
}

} // namespace rehearsal
