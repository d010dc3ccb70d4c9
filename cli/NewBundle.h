// A bundle that does not exist yet: what is to be in it, and the texts of its files.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace cli {

/// What a component can be. In the order in which the entries stand in the manifest: menus come last, because an entry
/// behind a menu that is no menu itself leaves an empty place in the host's list.
enum class BundleKind
{
    kNative,
    kLisp,
    kPython,
    kManaged,
    kMenus,
};

/// The name that a kind has on the command line.
std::string nameOf(BundleKind kind);

/// The names of all kinds, in order.
std::vector<std::string> bundleKindNames();

/// The kind of this name, which is one of bundleKindNames().
BundleKind bundleKindOf(const std::string& name);

struct NewBundle
{
    std::wstring name; ///< without ".bundle"
    std::set<BundleKind> kinds;
    std::wstring upgradeCode;
    std::wstring productCode;
    std::string pythonVersion;
    bool namesItsHost = false; ///< the manifest asks for a host like that of this machine
};

/// A command of a new bundle, and the kind of component that registers it.
struct NewBundleCommand
{
    std::wstring name;
    BundleKind kind;
};

std::vector<NewBundleCommand> commandsOf(const NewBundle& bundle);

struct NewBundleFile
{
    std::string path;    ///< in the bundle folder, of one file or "folder/file"
    std::string content; ///< UTF-8
};

/// All files. The manifest is the last, so that a host that starts meanwhile meets no half of a bundle.
std::vector<NewBundleFile> filesOf(const NewBundle& bundle);

/// The manifest: see NewManifest.cc.
std::string newManifest(const NewBundle& bundle);

} // namespace cli
