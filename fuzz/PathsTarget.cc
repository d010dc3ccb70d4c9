// Any folder, module path and command through the whole job: what is asked of the host follows from the extension, by
// rules told plainly. An input is a byte of settings and four lines: the folder's name, the module, the Python version,
// the command.
#include "bundle/EntryPoints.h"
#include "fuzz/Input.h"
#include "fuzz/PathsModel.h"
#include "fuzz/Target.h"
#include "manifest/Bundle.h"
#include "tests/FreshManager.h"

namespace fuzz {

namespace {

const std::wstring kRoot = L"/usr/local/ORRELIN/ApplicationPlugins";

/// A manifest with one component.
hostdouble::Document manifest(const PathsModel& model, const std::wstring& module)
{
    return hostdouble::Element{L"ApplicationPackage",
                               {},
                               {{L"Components",
                                 {},
                                 {{L"ComponentEntry",
                                   {{L"ModuleName", module},
                                    {L"PythonVersion", model.pythonVersion},
                                    {L"LoadOnTARVIXStartup", model.isOnCommand ? L"False" : L"True"},
                                    {L"LoadOnCommandInvocation", model.isOnCommand ? L"True" : L"False"}},
                                   {{L"Commands", {}, {{L"Command", {{L"Local", model.command}}}}}}}}}}};
}

void followPath(std::string_view bytes)
{
    Input input(bytes);
    PathsModel model;
    model.isOnCommand = input.below(2) == 1;
    const std::wstring name = input.line().substr(0, 259); // what an entry of a listing has room for
    const std::wstring module = input.line();
    model.pythonVersion = input.line();
    model.command = input.line();
    model.setModule(kRoot + L"/" + name, module);

    restartManagerAndHost();
    hostdouble::State& host = hostdouble::state();
    host.folders[kRoot] = {{name}};
    host.folders[kRoot + L"/" + name] = {{L"PackageContents.xml", false}};
    host.documents[kRoot + L"/" + name + L"/PackageContents.xml"] = manifest(model, module);
    host.convertMenu = [](const std::wstring& source, std::wstring& converted) {
        converted = source + L".converted";
        return true;
    };
    host.openLibraries[L"VxManagedCommand.dll"] = {{"netLoad", hostdouble::netLoadAddress()}};
    host.sharedObjects["libpython3.so"] = {};
    host.sharedObjects["libVxPythonLoad.so"] = {{"loadPythonFile", hostdouble::loadPythonFileAddress()}};

    excuteCuix();
    const bool isFound = PathsModel::endsIn(name, L".bundle");
    KestBundleManager& manager = *KestBundleManager::getInstance();
    require(manager.bundles.size() == (isFound ? 1U : 0U), "a bundle is a folder that is named like one");
    requireEqual(host.configuration[L"CUIX/LoadedCuix"].text, isFound ? model.storedMenus() : L"", "the menus");
    if (!isFound) {
        return;
    }
    requireEqual(std::wstring(manager.bundles[0]->components.at(0).moduleName), model.module, "the module's path");

    host.calls.clear();
    excute();
    requireEqual(host.calls, model.callsAtStart(), "what is asked at the start");
    requireEqual(loggedProblems(), model.logAtStart(), "the log");
    host.calls.clear();
    host.workingDirectory = L"/start";
    loadIfCmdNeeded(model.command.c_str());
    requireEqual(host.calls, model.callsOnCommand(), "what is asked when the command is used");
}

const Register kPaths("paths", followPath);

} // namespace

} // namespace fuzz
