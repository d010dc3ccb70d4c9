#include "cli/NewCommand.h"

#include "cli/BundleName.h"
#include "cli/ExitStatus.h"
#include "cli/HostOptions.h"
#include "cli/InstalledPython.h"
#include "cli/Library.h"
#include "cli/NewFiles.h"
#include "cli/NewReport.h"
#include "cli/NextSteps.h"
#include "cli/OptionFolder.h"
#include "cli/RandomCode.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"
#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"
#include "standalone/Folders.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <sys/stat.h>

namespace cli {

namespace {

constexpr char kNewExamples[] = R"(Examples:
  kestbundle new Hello --install
      Make Hello.bundle with a LISP file, where "kestbundle run" finds it.
  kestbundle new Hello --kind native --kind menus --folder src
      Make src/Hello.bundle with the source of a native module, and a menu.
  kestbundle new "Drafting tools" --kind python,lisp --requirements --json
      Make a bundle that asks for a host like that of this machine; say so as JSON.

What is there already is never written over. What was made is taken away again
when something fails.

Exit status: 0 the bundle was made, 1 it could not be made, 2 wrong use.)";

/// What the command line says. Texts are narrow, in the encoding of the global locale.
struct NewOptions
{
    std::string name;
    std::vector<std::string> kinds = {"lisp"};
    std::string folder = ".";
    std::string home; ///< empty: the environment's HOME
    std::string upgradeCode;
    bool install = false;
    bool requirements = false;
    bool json = false;
};

/// Throws WrongUse when there is a problem with `text`.
void refuse(const std::string& what, const std::string& text, const std::string& problem)
{
    if (!problem.empty()) {
        throw WrongUse(what + " " + quoted(shown(text)) + " cannot be used: " + problem);
    }
}

NewBundle bundleFrom(const NewOptions& options)
{
    NewBundle bundle;
    bundle.name = withoutBundleEnding(localetext::widen(options.name));
    refuse("The name", options.name, problemWithBundleName(bundle.name));
    for (const std::string& kind : options.kinds) {
        bundle.kinds.insert(bundleKindOf(kind));
    }
    const std::string upgradeCode = options.upgradeCode.empty() ? randomCode() : options.upgradeCode;
    bundle.upgradeCode = localetext::widen(upgradeCode);
    refuse("The upgrade code", options.upgradeCode, problemWithManifestText(bundle.upgradeCode));
    bundle.productCode = localetext::widen(randomCode());
    bundle.namesItsHost = options.requirements;
    return bundle;
}

/// The home folder, absolute.
std::string homeFrom(const NewOptions& options)
{
    if (!options.home.empty()) {
        return existingFolder("--home", options.home);
    }
    const char* home = std::getenv("HOME");
    if (home == nullptr) {
        throw WrongUse("HOME is not set; set it, or say --home DIR");
    }
    return existingFolder("HOME", home);
}

/// The folder of the user's own bundles.
std::string ownBundlesIn(const std::string& home)
{
    return home + "/" + localetext::narrow(BundleStrConst::bundle_UserPath);
}

/// Makes the bundle in `parent`, which must be there unless it is the folder of the user's own bundles.
void make(const NewOptions& options, const std::string& parent, NewBundleReport& report)
{
    struct stat found
    {
    };
    if (::lstat(report.folder.c_str(), &found) == 0) {
        throw WrongUse("There is a " + quoted(shown(report.folder)) + " already; nothing was changed");
    }
    NewFiles files;
    if (options.install) {
        files.makeMissingFolders(parent);
    }
    files.makeFolder(report.folder);
    files.makeFolder(report.folder + "/Contents");
    std::set<std::string> folders = {report.folder, report.folder + "/Contents"};
    for (const NewBundleFile& file : filesOf(report.bundle)) {
        const std::string path = report.folder + "/" + file.path;
        if (const std::string folder = standalone::folderOf(path); folders.insert(folder).second) {
            files.makeFolder(folder);
        }
        files.write(path, file.content);
        report.files.push_back(file.path);
    }
    files.keep();
}

int makeNew(const NewOptions& options)
{
    NewBundleReport report;
    report.bundle = bundleFrom(options);
    const std::string ownBundles = ownBundlesIn(homeFrom(options));
    const std::string parent = options.install ? ownBundles : existingFolder("--folder", options.folder);
    refuse("The folder", parent, problemWithBundleFolder(localetext::widen(parent)));
    report.folder = (parent == "/" ? "" : parent) + "/" + localetext::narrow(report.bundle.name) + ".bundle";
    const bool hasPython = report.bundle.kinds.contains(BundleKind::kPython);
    const InstalledPython python = hasPython ? findInstalledPython() : InstalledPython();
    report.bundle.pythonVersion = python.version;
    try {
        make(options, parent, report);
    } catch (const NotMade& problem) {
        print(stderr, std::string("kestbundle: The bundle was not made: ") + problem.what() + "\n");
        return kSomethingFailed;
    }
    const NewPlace place{standalone::folderOf(toolFolder()), report.folder, options.install ? "" : ownBundles,
                         options.home};
    report.next = nextSteps(report.bundle, place, python.isThere);
    if (options.json) { // UTF-8 whatever the locale
        const std::string document = newBundleJson(report);
        std::fwrite(document.data(), 1, document.size(), stdout);
    } else {
        print(stdout, newBundleText(report));
    }
    return kAllWell;
}

} // namespace

void addNewCommand(CLI::App& app, Action& chosen)
{
    Subcommand command(app, "new", "Make a bundle that loads, to begin with");
    const auto options = std::make_shared<NewOptions>();
    command.argument("name", options->name, "NAME", "The name of the bundle; \".bundle\" is added",
                     Presence::kRequired);
    command.choices("--kind", options->kinds, "KIND", "What is in it (default: lisp); may be given more than once",
                    bundleKindNames());
    CLI::Option* const folder =
        command.text("--folder", options->folder, "DIR", "Make it in DIR (default: the current folder)");
    command.flag("--install", options->install, "Make it among your own bundles, where hosts find it", folder);
    command.text("--home", options->home, "DIR", "Use DIR as the home folder (default: HOME)");
    command.text("--upgrade-code", options->upgradeCode, "TEXT", "Its identity (default: a new GUID)");
    command.flag("--requirements", options->requirements, "Ask for a host like that of this machine");
    command.flag("--json", options->json, "Say what was made as one JSON document");
    command.footer(kNewExamples);
    command.does(chosen, [options] { return makeNew(*options); });
}

} // namespace cli
