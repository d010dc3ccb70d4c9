#include "fuzz/PathsModel.h"

#include "fuzz/LogModel.h"
#include "host/LocaleText.h"
#include "tests/HostDouble.h"

#include <algorithm>
#include <cwctype>

namespace fuzz {

using hostdouble::utf8;

bool PathsModel::endsIn(const std::wstring& text, const std::wstring& suffix)
{
    std::wstring lowered = text;
    for (wchar_t& unit : lowered) {
        unit = unit >= L'A' && unit <= L'Z' ? unit + 32 : unit;
    }
    return lowered.ends_with(suffix);
}

void PathsModel::setModule(const std::wstring& folder, const std::wstring& name)
{
    hasModule = !name.empty();
    module = name.starts_with(L"./") ? folder + name.substr(1) : L"";
}

/// An extension holds no second point, so that the path's end says it all.
bool PathsModel::isAny(const std::vector<std::wstring>& extensions) const
{
    return std::any_of(extensions.begin(), extensions.end(),
                       [&](const std::wstring& extension) { return endsIn(module, extension); });
}

bool PathsModel::isMenu() const
{
    return isAny({L".cuix", L".mnu", L".mns", L".menuc"});
}

std::wstring PathsModel::storedMenus() const
{
    if (isOnCommand || !isMenu()) {
        return L"";
    }
    return L";" + module + (isAny({L".cuix"}) ? L"" : L".converted");
}

/// A bundle that has nothing but menus counts as loaded once they are gathered.
bool PathsModel::isCountedBefore() const
{
    return !isOnCommand && isMenu();
}

bool PathsModel::fails() const
{
    return isAny({L".py"}) && !pythonVersion.empty() && pythonVersion != L"python3";
}

std::wstring PathsModel::upperCommand() const
{
    std::wstring upper;
    for (const wchar_t unit : command) {
        upper += static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(unit)));
    }
    return upper;
}

PathsModel::Calls PathsModel::callsAtStart() const
{
    if (isCountedBefore()) {
        return {};
    }
    if (!isOnCommand) {
        return callsOfLoading(true);
    }
    return command.empty() || !hasModule ? Calls() : Calls{"addEntry(" + utf8(upperCommand()) + ", 3)"};
}

std::string PathsModel::logAtStart() const
{
    if (isOnCommand || !fails()) {
        return "";
    }
    return "\n---------------------------------------\n" +
           localetext::narrow(withoutFormats(module + L" loading failed\n"));
}

PathsModel::Calls PathsModel::callsOnCommand() const
{
    return isOnCommand && !command.empty() ? callsOfLoading(false) : Calls();
}

PathsModel::Calls PathsModel::callsOfLoading(bool isAtStart) const
{
    const std::string path = utf8(module);
    if (isAny({L".dll"})) {
        return {"GetModuleHandleW(VxManagedCommand.dll) -> handle", "GetProcAddress(netLoad) -> address",
                "netLoad(" + path + ", 0) -> true"};
    }
    if (isAny({L".krx"})) {
        Calls calls = {"KsRxDictionary::at(DynamicLinker)", "loadModule(" + path + ", false, false) -> true"};
        if (isAtStart) {
            calls.push_back("setKrxLoadType(" + path + ", 2)");
        }
        return calls;
    }
    if (isAny({L".lsp", L".kelx", L".vls"})) {
        std::wstring expression = (L"(LOAD \"" + module + L"\")").substr(0, 2048);
        std::replace(expression.begin(), expression.end(), L'\\', L'/');
        return {"kds_queueexpr(" + utf8(expression) + ") -> 5100"};
    }
    return isAny({L".py"}) ? callsOfPython() : Calls();
}

PathsModel::Calls PathsModel::callsOfPython() const
{
    if (pythonVersion.empty()) {
        return {};
    }
    const std::string version = localetext::narrow(pythonVersion);
    Calls calls = {"GetCurrentDirectoryW(2049) -> /start",
                   "SetCurrentDirectoryW(" + utf8(module.substr(0, module.rfind(L'/'))) + ")"};
    if (fails()) {
        calls.push_back("dlopen(lib" + version + ".so, 1) -> null");
        calls.push_back("dlopen(lib" + version + "m.so, 1) -> null");
        calls.emplace_back("SetCurrentDirectoryW(/start)");
    } else {
        for (const char* call :
             {"dlopen(libpython3.so, 1) -> handle", "dlclose()", "dlopen(libVxPythonLoad.so, 1) -> handle"}) {
            calls.emplace_back(call);
        }
        calls.emplace_back("dlsym(setPythonVersion) -> null");
        calls.emplace_back("dlsym(loadPythonFile) -> address");
        calls.push_back("loadPythonFile(" + utf8(module) + ") -> 0");
    }
    return calls;
}

} // namespace fuzz
