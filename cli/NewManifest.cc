// The manifest of a new bundle, with comments for someone who sees one for the first time.
#include "cli/NewBundle.h"
#include "cli/Shown.h"
#include "cli/XmlText.h"

#include <sys/utsname.h>

namespace cli {

namespace {

constexpr char kHead[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- What this bundle is and what it brings. "kestbundle schema" prints every word that can stand in here, with what it
     means.

     UpgradeCode is the identity of the bundle: other bundles depend on it, so it stays the same in every version.
     ProductCode belongs to this version. -->
)";

constexpr char kForEveryHost[] =
    R"(  <!-- This bundle fits every host. An element RuntimeRequirements in this place would ask for a certain one; it must
       then name the Architecture. -->
)";

constexpr char kForThisHost[] =
    R"(  <!-- The host that the bundle needs. Architecture must be named: without it the bundle would fit none. -->
)";

constexpr char kAboutEntries[] =
    R"(    <!-- Each entry is one file; "./" is the bundle folder. An entry loads when one of its commands is first used.
         Without its two Load attributes it would load at every start of the host. -->
)";

constexpr char kAboutMenus[] =
    R"(    <!-- A menu is registered when the host starts. Menus come last: a module or script that loads at start, behind a
         menu, would leave an empty place in the host's list of menus. -->
)";

std::string attribute(const char* name, const std::string& value)
{
    return std::string(" ") + name + "=\"" + escapedXml(value) + "\"";
}

std::string openingTag(const NewBundle& bundle)
{
    const std::string name = plainUtf8(bundle.name);
    const std::string indent = "\n                   ";
    return "<ApplicationPackage" + attribute("SchemaVersion", "1.0") + attribute("AppVersion", "1.0.0") +
           attribute("Name", name) + indent + attribute("ProductCode", plainUtf8(bundle.productCode)) + indent +
           attribute("UpgradeCode", plainUtf8(bundle.upgradeCode)) + ">\n";
}

std::string requirements(const NewBundle& bundle)
{
    if (!bundle.namesItsHost) {
        return kForEveryHost;
    }
    utsname machine{};
    ::uname(&machine); // fails for a bad address only
    return kForThisHost + ("  <RuntimeRequirements" + attribute("OS", machine.sysname)) +
           attribute("Architecture", machine.machine) + attribute("Platform", "TARVIX") +
           attribute("SeriesMin", "26.0") + "/>\n";
}

const char* fileOf(BundleKind kind)
{
    switch (kind) {
    case BundleKind::kNative:
        return "./Contents/commands.krx";
    case BundleKind::kLisp:
        return "./Contents/commands.lsp";
    case BundleKind::kPython:
        return "./Contents/commands.py";
    case BundleKind::kManaged:
        return "./Contents/commands.dll";
    case BundleKind::kMenus:
        break;
    }
    return "./Contents/menu.cuix";
}

std::string entry(const NewBundle& bundle, const NewBundleCommand& command)
{
    const std::string name = plainUtf8(command.name);
    std::string text =
        "    <ComponentEntry" + attribute("AppName", name) + attribute("ModuleName", fileOf(command.kind));
    if (command.kind == BundleKind::kPython) {
        text += attribute("PythonVersion", bundle.pythonVersion);
    }
    return text + "\n                   " + attribute("LoadOnTARVIXStartup", "False") +
           attribute("LoadOnCommandInvocation", "True") + ">\n      <Commands" +
           attribute("GroupName", plainUtf8(bundle.name)) + ">\n        <Command" + attribute("Global", name) +
           attribute("Local", name) + "/>\n      </Commands>\n    </ComponentEntry>\n";
}

} // namespace

std::string newManifest(const NewBundle& bundle)
{
    std::string text = kHead + openingTag(bundle) + requirements(bundle) + "  <Components>\n";
    const std::vector<NewBundleCommand> commands = commandsOf(bundle);
    text += commands.empty() ? "" : kAboutEntries;
    for (const NewBundleCommand& command : commands) {
        text += entry(bundle, command);
    }
    if (bundle.kinds.contains(BundleKind::kMenus)) {
        text += kAboutMenus;
        text += "    <ComponentEntry" + attribute("AppName", plainUtf8(bundle.name)) +
                attribute("ModuleName", fileOf(BundleKind::kMenus)) + "/>\n";
    }
    return text + "  </Components>\n</ApplicationPackage>\n";
}

} // namespace cli
