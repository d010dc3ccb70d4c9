#include "cli/NextSteps.h"

#include "cli/ShellWord.h"
#include "cli/Shown.h"

namespace cli {

namespace {

std::string word(const std::string& narrow)
{
    return shellWord(plainUtf8FromLocale(narrow));
}

/// Whether the programs that CMake generates for can have a folder of this name.
bool isPlainForMake(const std::string& folder)
{
    return folder.find_first_of("!\"#$%&'()*:;<=>?[\\]^`{|}") == std::string::npos;
}

std::string nativeBuild(const NewPlace& place)
{
    if (!isPlainForMake(place.bundle)) {
        return "c++ -shared -fPIC -I" + word(place.installation + "/include/kestbundle") + " -o " +
               word(place.bundle + "/Contents/commands.krx") + " " + word(place.bundle + "/Source/commands.cc");
    }
    const std::string build = word(place.bundle + "/Source/build");
    return "cmake -S " + word(place.bundle + "/Source") + " -B " + build +
           " -DCMAKE_PREFIX_PATH=" + word(place.installation) + " && cmake --build " + build;
}

std::string managedBuild(const NewPlace& place)
{
    return "mcs -target:library -codepage:utf8 -reference:" + word(place.installation + "/lib/kest/Kest.dll") +
           " -out:" + word(place.bundle + "/Contents/commands.dll") + " " + word(place.bundle + "/Source/commands.cs");
}

std::string run(const NewBundle& bundle, const NewPlace& place)
{
    std::string command = "kestbundle run" + (place.home.empty() ? "" : " --home " + word(place.home));
    for (const NewBundleCommand& one : commandsOf(bundle)) {
        command += " --command " + shellWord(plainUtf8(one.name));
    }
    return command;
}

} // namespace

std::vector<NextStep> nextSteps(const NewBundle& bundle, const NewPlace& place, bool isPythonThere)
{
    std::vector<NextStep> steps;
    if (bundle.kinds.contains(BundleKind::kNative)) {
        steps.push_back({"build", nativeBuild(place)});
    }
    if (bundle.kinds.contains(BundleKind::kManaged)) {
        steps.push_back({"build", managedBuild(place)});
    }
    if (bundle.kinds.contains(BundleKind::kPython) && !isPythonThere) {
        steps.push_back({"prepare", "apt-get install lib" + bundle.pythonVersion + "-dev"});
    }
    steps.push_back({"check", "kestbundle check " + word(place.bundle)});
    if (!place.ownBundles.empty()) {
        const std::string own = word(place.ownBundles);
        steps.push_back({"install", "mkdir -p " + own + " && ln -s " + word(place.bundle) + " " + own});
    }
    steps.push_back({"run", run(bundle, place)});
    return steps;
}

} // namespace cli
