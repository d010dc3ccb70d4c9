// Stands in for the engine that runs Python scripts. A script whose name holds "broken" fails with a reason, "mute"
// fails without a word to the host, "endless" without a word about its end,
// "sulky" runs once and is "mute" from then on, "outer" fails since a script in it does, any other one runs; "hello"
// registers the command "scripted", which fails.
#include "host/EngineHost.h"
#include "host/Engines.h"

#include <string>
#include <type_traits>

extern "C" [[gnu::visibility("default")]] std::remove_pointer_t<engines::LoadPythonFile> loadPythonFile;

int loadPythonFile(const wchar_t* path)
{
    static bool isStarted = false;
    static bool isSulking = false;
    const std::wstring name(path);
    KestEngineHost* host = kestEngineHost();
    if (name.find(L"mute") != std::wstring::npos || (isSulking && name.find(L"sulky") != std::wstring::npos)) {
        return 1;
    }
    isSulking = name.find(L"sulky") != std::wstring::npos;
    host->beginComponent(name);
    if (!isStarted) {
        isStarted = true;
        host->engineStarted("Stand-in 1.2", 34.5678);
    }
    if (name.find(L"hello") != std::wstring::npos) {
        host->registerCommand(
            "scripted", [](int) { return std::string("the script has no time"); }, 1);
    }
    if (name.find(L"endless") != std::wstring::npos) {
        return 1;
    }
    if (name.find(L"outer") != std::wstring::npos) {
        host->beginComponent(name + L".inner");
        host->endComponent("the inner script is broken");
        host->endComponent("its inner script failed");
        return 1;
    }
    const bool isBroken = name.find(L"broken") != std::wstring::npos;
    host->endComponent(isBroken ? "the script is broken" : "");
    return isBroken ? 1 : 0;
}
