// Loading a component when one of its commands is first used.
#include "bundle/BundleManager.h"
#include "host/LocaleText.h"
#include "loading/ModuleKind.h"
#include "manifest/Bundle.h"

void KestBundleManager::loadCommandBundle(const wchar_t* name)
{
    if (name == nullptr || *name == L'\0') {
        return;
    }
    CStdStr<wchar_t> command = name;
    localetext::upperByGlobalLocale(command);
    const auto found = commandMap.find(command);
    if (found == commandMap.end()) {
        return;
    }
    const CStdStr<wchar_t>& path = found->second;
    // Failures are silent here: the command stays unknown, and the host says so to the user.
    KestBundle carrier;
    switch (moduleKindOf(path)) {
    case ModuleKind::kManaged:
        carrier.loadNet(path);
        break;
    case ModuleKind::kNative:
        carrier.loadKrx(path); // meant: no load type is recorded on this way
        break;
    case ModuleKind::kLisp:
        carrier.loadLsp(path);
        break;
    case ModuleKind::kPython:
        if (const auto version = pythonVersionMap.find(path);
            version != pythonVersionMap.end() && !version->second.empty()) {
            carrier.setPyVersion(version->second);
            if (carrier.preparePyVersion()) {
                carrier.loadPython(path);
            }
        }
        break;
    case ModuleKind::kOther:
        break;
    }
}
