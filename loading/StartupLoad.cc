// The walk over a bundle's components when the host starts.
#include "bundle/BundleManager.h"
#include "host/CommandTable.h"
#include "host/DynamicLinker.h"
#include "host/LocaleText.h"
#include "loading/ModuleKind.h"
#include "manifest/Bundle.h"

namespace {

/// Loads the module of `entry`. False when a loader failed; a module that no loader knows, or a script without a
/// Python version, is passed over.
bool loadAtStartup(KestBundle& bundle, const KestComponentEntry& entry)
{
    const CStdStr<wchar_t>& path = entry.moduleName;
    switch (moduleKindOf(path)) {
    case ModuleKind::kManaged:
        return bundle.loadNet(path);
    case ModuleKind::kNative:
        if (!bundle.loadKrx(path)) {
            return false;
        }
        KsRxDynamicLinkerImp::setKrxLoadType(path.c_str(), kRxLoadedAtStartup);
        return true;
    case ModuleKind::kLisp:
        return bundle.loadLsp(path);
    case ModuleKind::kPython:
        bundle.pythonVersion = entry.pythonVersion;
        return !bundle.preparePyVersion() || bundle.loadPython(path);
    case ModuleKind::kOther:
        break;
    }
    return true;
}

/// Makes the commands of `entry` known, so that its module is loaded when one of them is first used.
void registerCommands(KestBundle& bundle, KestComponentEntry& entry)
{
    const CStdStr<wchar_t>& path = entry.moduleName;
    const bool isPython = moduleKindOf(path) == ModuleKind::kPython;
    for (KestCommands& group : entry.commands) {
        for (KestCommand& command : group.commands) {
            localetext::upperByGlobalLocale(command.localName);
            bundle.commandModuleMap.try_emplace(command.localName, path);
            if (isPython) {
                bundle.pythonVersionMap.try_emplace(path, localetext::widen(entry.pythonVersion));
            }
            if (!command.localName.empty()) {
                KestGetCommandString2TypeMap()->addEntry(command.localName.c_str(), kCommandLoadedOnInvocation);
            }
        }
    }
}

} // namespace

void KestBundle::load()
{
    if (components.empty()) {
        return; // meant: a bundle without components never counts as loaded
    }
    for (KestComponentEntry& entry : components) {
        if (entry.loadsAtStartup()) {
            if (!loadAtStartup(*this, entry)) {
                writeLogSplitLine();
                manager->writeLogLine((entry.moduleName + CStdStr<wchar_t>(bundlelogtext::kLoadingFailed)).c_str());
            }
        } else if (entry.loadsOnCommand()) {
            registerCommands(*this, entry);
        }
    }
    isLoad = true;
}
