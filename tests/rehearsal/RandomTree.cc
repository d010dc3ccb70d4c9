#include "tests/rehearsal/RandomTree.h"

#include "tests/AssemblyBytes.h"

#include <fstream>
#include <utility>

namespace rehearsal {

namespace fs = std::filesystem;

namespace {

void writeFile(const fs::path& file, const std::string& content)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
}

/// An attribute, or nothing when `value` is the empty text.
std::string attribute(const char* name, const std::string& value)
{
    return value.empty() ? "" : std::string(" ") + name + "=\"" + value + "\"";
}

const std::vector<const char*> kIdentities = {"{A}", "{B}", "{C}", "{D}", "{a}", "", "{E}", "{F}"};

} // namespace

RandomTree::RandomTree(std::uint64_t seed, fs::path homeFolder, fs::path programFolder, fs::path soundModule)
    : random(seed), home(std::move(homeFolder)), program(std::move(programFolder)), module(std::move(soundModule))
{
}

std::size_t RandomTree::below(std::size_t limit)
{
    return random() % limit;
}

void RandomTree::write()
{
    const fs::path roots[] = {home / ".config/ORRELIN/ApplicationPlugins", program / "ApplicationPlugins"};
    fs::create_directories(home / ".config/ORRELIN");
    const std::size_t count = below(9);
    for (std::size_t number = 0; number < count; ++number) {
        writeBundle(roots[below(2)], number);
    }
}

void RandomTree::writeBundle(const fs::path& root, std::size_t number)
{
    const std::string name = std::string(1, static_cast<char>('a' + below(26))) + std::to_string(number);
    const fs::path around = oneIn(25) ? root / "Vendor" : root;
    const fs::path folder =
        around / (name + oneOf({".bundle", ".bundle", ".bundle", ".BUNDLE", ".Bundle", ".bundles"}));
    if (oneIn(30)) {
        writeFile(folder, "a plain file");
        return;
    }
    fs::create_directories(folder / "Contents");
    if (oneIn(25)) {
        fs::create_directories(folder / "PackageContents.xml"); // found, and cannot be opened
        return;
    }
    writeFile(folder / oneOf({"PackageContents.xml", "PackageContents.xml", "PackageContents.xml",
                              "PackageContents.xml", "PackageContents.xml", "PackageContents.xml",
                              "PackageContents.xml", "packagecontents.xml", "Contents/PackageContents.xml"}),
              manifest(folder));
}

std::string RandomTree::manifest(const fs::path& folder)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ApplicationPackage Name=\"" +
                       folder.filename().string() + "\"" + attribute("UpgradeCode", oneOf(kIdentities)) + ">\n" +
                       requirements() + dependencies();
    if (!oneIn(12)) {
        text += "  <Components>\n";
        bringsMenusOnly = oneIn(6);
        previousModule.clear();
        for (std::size_t count = below(5), number = 0; number < count; ++number) {
            text += component(folder, number);
        }
        text += oneIn(30) ? "  </Component>\n" : "  </Components>\n";
    }
    text += (oneIn(30) ? requirements() : "") + "</ApplicationPackage>\n";
    return oneIn(10) ? misspelt(text) : text;
}

/// `text` with one of its words spelt wrongly everywhere.
std::string RandomTree::misspelt(std::string text)
{
    const std::vector<std::pair<std::string, std::string>> slips = {{"ModuleName=", "Modulename="},
                                                                    {"UpgradeCode=", "UpgradCode="},
                                                                    {"Components>", "components>"},
                                                                    {"LoadCtrlFlag=", "LoadCtrlFlags="},
                                                                    {"DependentBundles>", "DependendBundles>"},
                                                                    {"Local=", "local="},
                                                                    {"<RuntimeRequirements ", "<RuntimeRequirement "},
                                                                    {"ApplicationPackage", "ApplicationPackge"},
                                                                    {"Components>", "x:Components>"}};
    const auto& [word, slip] = slips[below(slips.size())];
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + slip.size())) {
        text.replace(at, word.size(), slip);
    }
    return text;
}

std::string RandomTree::requirements()
{
    if (!oneIn(3)) {
        return "";
    }
    return "  <RuntimeRequirements" + attribute("Architecture", oneOf({"test", "test", "test_64", "other", ""})) +
           attribute("OS", oneOf({"Linux", "Linux", "", "linux"})) +
           attribute("Platform", oneOf({"TARVIX", "", "", "OTHER"})) +
           attribute("SeriesMin", oneOf({"26.0", "", "25", "26.1", "any"})) +
           attribute("SeriesMax", oneOf({"26.0", "", "30", "25.9"})) + "/>\n";
}

std::string RandomTree::dependencies()
{
    std::string text;
    for (std::size_t count = oneIn(2) ? below(3) : 0, number = 0; number < count; ++number) {
        text += "    <DependentBundle" + attribute("UpgradeCode", oneOf(kIdentities)) + " VersionMin=\"1\"/>\n";
    }
    return text.empty() ? text : "  <DependentBundles>\n" + text + "  </DependentBundles>\n";
}

std::string RandomTree::component(const fs::path& folder, std::size_t number)
{
    const std::string menu = oneOf({".cuix", ".mnu", ".MNS"});
    const std::string any = oneOf({".krx", ".KRX", ".lsp", ".kelx", ".vls", ".py", ".Py", ".dll", ".cuix", ".mnu",
                                   ".mns", ".menuc", ".txt", ".lsp.bak", ""});
    const std::string& extension = bringsMenusOnly ? menu : any;
    std::string name = "m" + std::to_string(number) + extension;
    if (!previousModule.empty() && oneIn(8)) {
        name = previousModule;
    } else if (!oneIn(6)) {
        writeModule(folder / "Contents" / name, extension);
    }
    previousModule = name;
    if (bringsMenusOnly) {
        return "    <ComponentEntry ModuleName=\"./Contents/" + name + "\"/>\n";
    }
    const std::string begin = oneOf({"./Contents/", "./Contents/", "./Contents/", "./Contents/", "./Contents/",
                                     "Contents/", ".\\Contents\\", "/", "./"});
    return "    <ComponentEntry" + (oneIn(15) ? "" : attribute("ModuleName", begin + name)) +
           attribute("LoadCtrlFlag", oneOf({"", "", "", "1", "2", "abc"})) +
           attribute("PythonVersion", oneOf({"standin", "standin", "standin", "", "python9.99", "../Contents/x"})) +
           attribute("LoadOnTARVIXStartup", oneOf({"", "TRUE", "FALSE", "False", "no"})) +
           attribute("LoadOnCommandInvocation", oneOf({"", "TRUE", "true", "yes", "FALSE"})) + ">\n" + commandsOf() +
           (oneIn(30) ? component(folder, number + 10) : "") + "    </ComponentEntry>\n";
}

std::string RandomTree::commandsOf()
{
    std::string text;
    for (std::size_t count = below(4), number = 0; number < count; ++number) {
        const std::string local = oneOf({"draw", "Draw", "line", "CIRCLE", "", "hatch", "m\xC3\xA4rz"});
        text += "        <Command Global=\"g\"" + attribute("Local", local) + "/>\n";
    }
    const std::string nested = oneIn(30) ? "        <Commands GroupName=\"nested\"/>\n" : "";
    return text.empty() ? text : "      <Commands GroupName=\"group\">\n" + nested + text + "      </Commands>\n";
}

void RandomTree::writeModule(const fs::path& file, const std::string& extension)
{
    if (oneIn(12)) {
        fs::create_directories(file);
        return;
    }
    if (extension == ".krx" || extension == ".KRX") {
        if (oneIn(6)) {
            writeFile(file, "no module");
        } else {
            fs::create_symlink(module, file);
        }
        return;
    }
    if (extension == ".dll" && !oneIn(4)) {
        writeFile(file, assemblyBytes());
        return;
    }
    writeFile(file, oneOf({"MZ", "[Menu]\nLine = LINE\n", "[Menu]\nLine = LINE\n", ""}));
}

} // namespace rehearsal
