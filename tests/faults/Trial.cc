#include "tests/faults/Trial.h"

#include "host/Configuration.h"
#include "host/LocaleText.h"
#include "standalone/Configuration.h"

#include <csignal>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace faults {

namespace {

constexpr unsigned kPatience = 120; // seconds; a run takes one, and more on a machine that is busy
constexpr wchar_t kHostMenus[] = L"CUIX/LoadedCuix";
constexpr wchar_t kOwnMenus[] = L"/opt/host/main.cuix;/opt/host/mine.cuix";

const std::vector<std::string> kNativeBundles = {"Units", "GearPairs", "DraftingMenus", "CoreThreads", "BoltCatalogue"};
const std::vector<std::string> kNativeCommands = {"UNITS", "GEAR"};
const std::vector<std::string> kAllCommands = {"UNITS", "GEAR", "STAIRS", "TITLEBLOCK", "SHEETCHECK", "WASHERS"};

/// Stores the menus that a host has of its own.
std::string storeOwnMenus(const std::string& file)
{
    standalone::Journal journal;
    standalone::Configuration store(file, journal);
    return store.store(TarvixConfig::kMenus, kHostMenus, kOwnMenus) ? "" : "the host's own menus cannot be stored";
}

/// The two menu lists, a line each.
std::string readMenus(const std::string& file)
{
    standalone::Journal journal;
    standalone::Configuration store(file, journal);
    std::string lists;
    for (const wchar_t* const key : {L"CUIX/LoadedBundleCuix", kHostMenus}) {
        const std::optional<std::wstring> list = store.text(TarvixConfig::kMenus, key);
        lists += (list ? localetext::utf8(*list) : std::string("none")) + "\n";
    }
    for (const auto& notice : journal.only<standalone::HostNotice>()) {
        lists += notice.text + "\n";
    }
    return lists;
}

/// Takes out what differs between two runs of one kind: how long things took, and where a library happened to lie.
void settle(nlohmann::json& value)
{
    static const std::regex address("0x[0-9a-f]+");
    if (value.is_string()) {
        value = std::regex_replace(value.get<std::string>(), address, "ADDRESS");
    } else if (value.is_object()) {
        value.erase("milliseconds");
        value.erase("begun");
        value.erase("output"); // what a command prints is its module's own affair
    }
    if (value.is_structured()) {
        for (auto& member : value) {
            settle(member);
        }
    }
}

/// The report for people, line by line, settled in the same way; null when it is not a whole one.
nlohmann::json linesOf(const std::string& text)
{
    static const std::regex changing("[0-9]+\\.[0-9] ms|[0-9-]{10} [0-9:]{8}|0x[0-9a-f]+");
    nlohmann::json lines;
    std::istringstream stream(std::regex_replace(text, changing, "N"));
    for (std::string one; std::getline(stream, one);) {
        if (!one.starts_with("  | ")) { // what a command prints is its module's own affair
            lines.push_back(one);
        }
    }
    return text.find("\nResult: ") != std::string::npos ? lines : nlohmann::json();
}

/// The report of a run, settled; null when it is not a whole one.
nlohmann::json reportOf(const ToolRun& run)
{
    if (!run.output.starts_with('{')) {
        return linesOf(run.output);
    }
    nlohmann::json report = nlohmann::json::parse(run.output, nullptr, false);
    if (report.is_discarded()) {
        return nullptr;
    }
    settle(report);
    return report;
}

std::string difference(const nlohmann::json& expected, const nlohmann::json& found)
{
    return nlohmann::json::diff(expected, found)
        .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)
        .substr(0, 1500);
}

std::string line(const std::string& text)
{
    return "  " + text + "\n";
}

/// The two lists in what readMenus() returned.
std::pair<std::string, std::string> listsOf(const std::string& menus)
{
    const std::size_t end = menus.find('\n');
    return {menus.substr(0, end), menus.substr(end + 1, menus.find('\n', end + 1) - end - 1)};
}

/// A menu that could not be converted leaves an empty entry in the lists, and the next start then joins the host's
/// entries, as it is meant to. Whether that made `now` of `before`; `own` are the host's own menus.
bool isJoined(const std::string& before, const std::string& now, std::string own)
{
    const auto [bundles, host] = listsOf(before);
    const auto [newBundles, newHost] = listsOf(now);
    std::erase(own, ';');
    return (";" + bundles + ";").find(";;") != std::string::npos && newHost.starts_with(own) &&
           newHost.ends_with(";" + newBundles);
}

/// The last lines of `text`, indented.
std::string endOf(const std::string& text)
{
    constexpr std::size_t kMost = 6000;
    const std::string end = text.size() > kMost ? text.substr(text.size() - kMost) : text;
    return std::regex_replace(end, std::regex("(^|\n)(?=.)"), "$1    ");
}

} // namespace

Trial::Trial(std::string folder, Samples which, const Way& faultWay)
    : root(std::move(folder)), samples(which), way(faultWay)
{
    fs::create_directories(root + "/program/ApplicationPlugins");
    for (const std::string& bundle : kNativeBundles) {
        fs::create_directory_symlink(std::string(KEST_SAMPLES) + "/" + bundle + ".bundle",
                                     root + "/program/ApplicationPlugins/" + bundle + ".bundle");
    }
    resetHome();
    const ToolRun first = start(0, false, way.kind != Kind::kNew);
    firstStatus = first.status;
    firstReport = reportOf(first);
    callCount = first.progress.calls;
    menus = storedMenus();
    files = filesOfHome();
    nextReport = reportOf(start(0, false, true));
    const int expected = samples.areAll ? 1 : 0; // some samples are meant to fail
    if (firstStatus != expected || firstReport.is_null() || nextReport.is_null() || !first.leftOpen.empty() ||
        storedMenus() != menus) {
        unusable = "the run without faults ended with " + std::to_string(firstStatus) + ", left open \"" +
                   first.leftOpen + "\", stored\n" + menus + "then\n" + storedMenus() + "and said\n" +
                   endOf(first.output + first.errors);
    }
}

std::string Trial::run(long which, bool isShown)
{
    resetHome();
    const ToolRun faulty = start(which, isShown, way.kind != Kind::kNew);
    struck = faulty.progress.strikes > 0;
    std::string problems = problemsOf(faulty);
    if (faulty.progress.strikes > 0 || isShown) {
        problems += problemsAfterwards();
    }
    if (problems.empty() && !isShown) {
        return "";
    }
    return problems + line(std::string("call ") + faulty.progress.call + ", status " + std::to_string(faulty.status)) +
           endOf(faulty.errors);
}

std::string Trial::problemsOf(const ToolRun& faulty) const
{
    std::string problems;
    if (faulty.status == kSanitizerStatus) {
        problems += line("a sanitizer reports a fault or a leak");
    } else if (faulty.status == 128 + SIGALRM) {
        problems += line("it hangs");
    } else if (faulty.status > 2) {
        problems += line("the run crashes");
    } else if (way.effect == Effect::kNone && faulty.status != firstStatus) {
        problems += line("a call that did less, or had to be made again, changes the result: " +
                         difference(firstReport, reportOf(faulty)));
    } else if (faulty.status == 0 && way.effect != Effect::kOpen && reportOf(faulty) != firstReport) {
        problems += line("all went well, it says, and yet: " + difference(firstReport, reportOf(faulty)));
    } else if (faulty.status != 0 && faulty.errors.empty() && reportOf(faulty).is_null()) {
        problems += line("it fails and says nothing");
    }
    if (!faulty.leftOpen.empty()) {
        problems += line("left open: " + faulty.leftOpen);
    }
    const std::string stored = storedMenus();
    if (!samples.isFresh && stored.find("\n" + localetext::utf8(kOwnMenus)) == std::string::npos) {
        problems += line("the host's own menus are gone; stored are\n" + endOf(stored));
    }
    return problems;
}

std::string Trial::problemsAfterwards() const
{
    std::string problems;
    const std::string before = storedMenus();
    const ToolRun next = start(0, false, true);
    const nlohmann::json report = reportOf(next);
    const auto withoutHistory = [](nlohmann::json whole) {
        if (whole.is_object()) { // what the menus were before depends on how far the run with the fault came
            whole.erase("menus");
            whole.erase("configurationWrites");
            for (auto& bundle : whole["bundles"]) { // counted in the list, which is compared by itself
                bundle["activity"].erase("menus");
            }
        }
        return whole;
    };
    if (next.status != firstStatus) {
        problems += line("the next start ends with " + std::to_string(next.status) + "\n" + endOf(next.errors));
    }
    if (withoutHistory(report) != withoutHistory(nextReport)) {
        problems += line("the next start reports: " + difference(withoutHistory(nextReport), withoutHistory(report)));
    }
    if (const std::string now = storedMenus();
        now != menus && !isJoined(before, now, samples.isFresh ? "" : localetext::utf8(kOwnMenus))) {
        problems += line("after the next start the menus are\n" + endOf(now) + "  instead of\n" + endOf(menus));
    }
    if (const std::string now = filesOfHome(); now != files) {
        problems += line("after the next start the files are\n" + endOf(now) + "  instead of\n" + endOf(files));
    }
    return problems;
}

void Trial::resetHome() const
{
    const std::string folder = root + "/home/.config/ORRELIN";
    const std::string prepared = root + "/prepared.sqlite";
    fs::remove_all(root + "/home");
    if (samples.isFresh) {
        fs::create_directories(root + "/home");
        return;
    }
    fs::create_directories(folder);
    if (!fs::exists(prepared)) {
        if (const std::string failed = inOtherProcess(root, storeOwnMenus, prepared); !failed.empty()) {
            throw std::runtime_error(failed);
        }
    }
    fs::copy_file(prepared, folder + "/standalone.sqlite");
}

ToolRun Trial::start(long which, bool isShown, bool asJson) const
{
    const std::string programFolder =
        samples.areAll ? fs::path(KEST_SAMPLES).parent_path().string() : root + "/program";
    std::vector<std::string> arguments = {"kestbundle",   "run",           "--home",
                                          root + "/home", "--program-dir", programFolder};
    if (asJson) {
        arguments.push_back("--json");
    }
    for (const std::string& command : samples.areAll ? kAllCommands : kNativeCommands) {
        arguments.insert(arguments.end(), {"--command", command});
    }
    return runTool(root, arguments, way, which, kPatience, isShown);
}

std::string Trial::storedMenus() const
{
    return inOtherProcess(root, readMenus, root + "/home/.config/ORRELIN/standalone.sqlite");
}

std::string Trial::filesOfHome() const
{
    std::set<std::string> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root + "/home")) {
        found.insert(entry.path().string());
    }
    std::string all;
    for (const std::string& path : found) {
        all += path + "\n";
    }
    return all;
}

} // namespace faults
