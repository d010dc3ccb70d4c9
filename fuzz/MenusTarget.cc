// The host's list of menus, as it is stored for any three lists, against the plain telling of the rules.
// An input is three lines: the host's list, the menus of the last run, those of this run.
#include "fuzz/Input.h"
#include "fuzz/Target.h"
#include "tests/FreshManager.h"
#include "tests/MenuListModel.h"

namespace fuzz {

namespace {

void updateMenus(std::string_view bytes)
{
    const std::wstring hostKey = L"CUIX/LoadedCuix";
    const std::wstring bundleKey = L"CUIX/LoadedBundleCuix";
    Input input(bytes);
    const std::wstring hostList = input.line();
    const std::wstring previous = input.line();
    const std::wstring added = input.line();

    KestBundleManager& manager = restartManagerAndHost();
    hostdouble::State& host = hostdouble::state();
    host.configuration = {{hostKey, {hostList}}, {bundleKey, {previous}}};
    manager.writeCuixToConfig(added);

    const bool isWritten = !previous.empty() || !added.empty();
    requireEqual(host.configuration[hostKey].text,
                 isWritten ? menulistmodel::hostListAfter(hostList, previous, added) : hostList, "the host's list");
    requireEqual(host.configuration[bundleKey].text, isWritten ? added : previous, "the bundles' list");
    require(hostdouble::callsTo({"setValue"}).size() == (isWritten ? 2U : 0U), "both lists are stored, or neither");
    require(loggedProblems().empty(), "menus are no matter for the log");
}

const Register kMenus("menus", updateMenus);

} // namespace

} // namespace fuzz
