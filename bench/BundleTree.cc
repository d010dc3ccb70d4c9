#include "bench/BundleTree.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

/// Bundles may stand anywhere in the list; who depends on whom goes by rank, which has no circles.
std::size_t rankOf(const TreeDescription& tree, std::size_t bundle)
{
    return (bundle * 7919 + tree.seed) % tree.bundles; // 7919 is a prime and divides no size in use: a permutation
}

std::vector<std::size_t> dependenciesOf(const TreeDescription& tree, std::size_t bundle)
{
    std::vector<std::size_t> found;
    if (tree.dependencies == Dependencies::kChain && bundle + 1 < tree.bundles) {
        found.push_back(bundle + 1);
    }
    if (tree.dependencies == Dependencies::kMixed) {
        std::mt19937 random(tree.seed + static_cast<std::uint32_t>(bundle));
        for (std::size_t wanted = random() % 4; wanted > 0; --wanted) {
            const std::size_t other = random() % tree.bundles;
            if (rankOf(tree, other) < rankOf(tree, bundle)) {
                found.push_back(other);
            }
        }
    }
    return found;
}

std::string identityOf(std::size_t bundle)
{
    const std::string number = std::to_string(bundle);
    return "{6B29FC40-CA47-1067-B31D-" + std::string(12 - number.size(), '0') + number + "}";
}

std::string componentsOf(const TreeDescription& tree, std::size_t bundle)
{
    constexpr const char* kModules[] = {"draw.krx", "draw.lsp", "draw.py", "draw.dll"};
    std::string text = "  <Components Description=\"What is loaded\">\n";
    if (tree.hasMenus) {
        text += "    <ComponentEntry AppName=\"Menu\" ModuleName=\"./Contents/menu.cuix\" LoadCtrlFlag=\"1\"/>\n";
    }
    text += "    <ComponentEntry AppName=\"Draw\" ModuleName=\"./Contents/" + std::string(kModules[bundle % 4]) +
            "\" PythonVersion=\"python3.11\"\n"
            "                    LoadOnTARVIXStartup=\"False\" LoadOnCommandInvocation=\"True\">\n"
            "      <Commands GroupName=\"DRAW_" +
            bundleName(bundle) + "\">\n";
    for (std::size_t command = 0; command < tree.commandsPerBundle; ++command) {
        const std::string name = "draw_" + bundleName(bundle) + "_" + std::to_string(command);
        text += "        <Command Global=\"GLOBAL_" + name + "\" Local=\"" + name + "\"/>\n";
    }
    return text + "      </Commands>\n    </ComponentEntry>\n  </Components>\n";
}

void writeFile(const std::filesystem::path& path, const std::string& text)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

} // namespace

std::string bundleName(std::size_t bundle)
{
    const std::string number = std::to_string(bundle);
    return "Aids" + std::string(5 - std::min<std::size_t>(number.size(), 5), '0') + number;
}

std::string manifestOf(const TreeDescription& tree, std::size_t bundle)
{
    const std::string name = bundleName(bundle);
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<ApplicationPackage SchemaVersion=\"1.0\" AppVersion=\"2.4.1\" Author=\"The Drawing Company\"\n"
                       "    Name=\"Drawing aids " +
                       name + "\" Description=\"Draws what is drawn often, number " + name +
                       "\"\n    Icon=\"./Contents/icon.png\" HelpFile=\"./Contents/help.html\"\n    ProductCode=\"" +
                       identityOf(bundle) + "\" UpgradeCode=\"" + identityOf(bundle) +
                       "\">\n"
                       "  <CompanyDetails Name=\"The Drawing Company\" Phone=\"+49 30 1234567\"\n"
                       "      URL=\"https://drawing.example\" Email=\"help@drawing.example\"/>\n"
                       "  <RuntimeRequirements OS=\"Linux\" Platform=\"TARVIX\" Architecture=\"x86_64\"\n"
                       "      SeriesMin=\"24.0\" SeriesMax=\"30.0\"/>\n"
                       "  <DependentBundles>\n";
    for (const std::size_t other : dependenciesOf(tree, bundle)) {
        text += "    <DependentBundle UpgradeCode=\"" + identityOf(other) + "\" VersionMin=\"1.0\"/>\n";
    }
    text += "  </DependentBundles>\n" + componentsOf(tree, bundle);
    constexpr std::string_view kEnd = "</ApplicationPackage>\n";
    constexpr std::string_view kAroundFiller = "  <!--  -->\n";
    if (const std::size_t length = text.size() + kAroundFiller.size() + kEnd.size(); length < tree.manifestBytes) {
        text += "  <!-- " + std::string(tree.manifestBytes - length, '.') + " -->\n";
    }
    text += kEnd;
    return tree.hasBroken && bundle % 10 == 9 ? text.substr(0, text.size() / 2) : text;
}

std::string keyFileOf(const TreeDescription& tree, std::size_t bundle)
{
    std::string text = "[Plugin]\nModule=" + bundleName(bundle) + "\nName=Drawing aids " + bundleName(bundle) +
                       "\nDescription=Draws what is drawn often\nAuthors=The Drawing Company\n"
                       "Website=https://drawing.example\nVersion=2.4.1\nDepends=";
    for (const std::size_t other : dependenciesOf(tree, bundle)) {
        text += bundleName(other) + ";";
    }
    return text + "\n";
}

std::string jsonOf(const TreeDescription& /*tree*/, std::size_t bundle)
{
    return "{\n  \"KPackageStructure\": \"Plasma/Applet\",\n  \"KPlugin\": {\n"
           "    \"Authors\": [{ \"Email\": \"help@drawing.example\", \"Name\": \"The Drawing Company\" }],\n"
           "    \"Category\": \"Drawing\",\n    \"Description\": \"Draws what is drawn often\",\n"
           "    \"Id\": \"" +
           bundleName(bundle) + "\",\n    \"License\": \"MIT\",\n    \"Name\": \"Drawing aids " + bundleName(bundle) +
           "\",\n    \"Version\": \"2.4.1\",\n    \"Website\": \"https://drawing.example\"\n  }\n}\n";
}

std::filesystem::path bundleFolder(const std::filesystem::path& home)
{
    return home / ".config/ORRELIN/ApplicationPlugins";
}

void writeTree(const TreeDescription& tree, const std::filesystem::path& folder, bool forOthers)
{
    const std::filesystem::path bundles = bundleFolder(folder / "home");
    std::filesystem::create_directories(bundles);
    for (std::size_t bundle = 0; bundle < tree.bundles; ++bundle) {
        const std::string name = bundleName(bundle);
        writeFile(bundles / (name + ".bundle") / "PackageContents.xml", manifestOf(tree, bundle));
        if (forOthers) {
            writeFile(folder / "keyfiles" / name / (name + ".plugin"), keyFileOf(tree, bundle));
            writeFile(folder / "json" / name / "metadata.json", jsonOf(tree, bundle));
        }
    }
}

} // namespace bench
