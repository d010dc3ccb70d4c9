#include "cli/ReportText.h"

#include "cli/MenuDifference.h"
#include "cli/ReportComponents.h"
#include "cli/ReportLines.h"
#include "cli/Shown.h"

namespace cli {

namespace {

std::string placeOf(const standalone::ManifestRead& read)
{
    std::string place;
    if (read.line > 0) {
        place = "line " + std::to_string(read.line);
        if (read.column > 0) {
            place += ", column " + std::to_string(read.column);
        }
        place += ": ";
    }
    return place;
}

/// What there is to say below a bundle that was kept.
std::string activityText(const BundleFacts& bundle)
{
    std::string parts;
    const auto add = [&parts](const std::string& part) { parts += (parts.empty() ? "" : ", ") + part; };
    const auto addCount = [&](std::size_t count, const char* one, const char* many) {
        if (count > 0) {
            add(counted(count, one, many));
        }
    };
    addCount(bundle.activity.modulesLoaded, "module loaded", "modules loaded");
    addCount(bundle.activity.scriptsLoaded, "script or assembly loaded", "scripts or assemblies loaded");
    addCount(bundle.activity.expressionsQueued, "expression queued", "expressions queued");
    addCount(bundle.activity.menus, "menu", "menus");
    addCount(bundle.activity.commandsRegistered, "command registered", "commands registered");
    addCount(bundle.announced.size(), "command announced", "commands announced");
    addCount(bundle.activity.componentsFailed, "component failed", "components failed");
    std::string text = parts.empty() ? "" : below(parts);
    for (const ManifestComponent& component : bundle.components) {
        if (component.isPassedOver()) {
            text += below("its Python script " + shown(component.path) + " names no PythonVersion, so it is skipped");
        }
    }
    if (!text.empty()) {
        return text;
    }
    return below("nothing of it has loaded: its dependencies may be missing or in a cycle, its UpgradeCode may be "
                 "another bundle's too, or it has no start-up components");
}

std::string bundleText(const BundleFacts& bundle)
{
    std::string text = labelled(nameOf(bundle.state), shown(bundle.folder));
    switch (bundle.state) {
    case BundleFacts::State::kKept:
        return text + activityText(bundle);
    case BundleFacts::State::kUnreadable:
        return text + below("its manifest could not be opened: " + shownLine(bundle.read.problem)) +
               below("it counts as a sound bundle without components");
    case BundleFacts::State::kUnknown:
        return text + below("nothing of it has loaded; whether its requirements dropped it, only the error log would "
                            "tell");
    case BundleFacts::State::kDropped:
        break;
    }
    for (const std::string& reason : bundle.reasons) {
        text += below(shown(reason));
    }
    if (bundle.read.malformed) {
        text += below(placeOf(bundle.read) + shownLine(bundle.read.problem));
    }
    return text;
}

std::string bundlesText(const RunReport& report)
{
    if (report.bundles.empty()) {
        return "\nBundles: none found\n";
    }
    std::size_t dropped = 0;
    std::size_t unknown = 0;
    std::string list;
    for (const BundleFacts& bundle : report.bundles) {
        dropped += bundle.state == BundleFacts::State::kDropped ? 1U : 0U;
        unknown += bundle.state == BundleFacts::State::kUnknown ? 1U : 0U;
        list += bundleText(bundle);
    }
    return "\nBundles: " + std::to_string(report.bundles.size()) + " found, " +
           std::to_string(report.bundles.size() - dropped - unknown) + " kept, " + std::to_string(dropped) +
           " dropped" + (unknown > 0 ? ", " + std::to_string(unknown) + " unknown" : "") + "\n" + list;
}

std::string menusText(const RunReport& report)
{
    const MenuDifference difference = menuDifference(report.menus.before, report.menus.after);
    const bool hasNone = difference.before == 0 && difference.after == 0;
    std::string text = hasNone ? "\nMenus: none\n"
                               : "\nMenus: " + std::to_string(difference.before) + " before, " +
                                     std::to_string(difference.after) + " after\n";
    for (const MenuDifference::Line& line : difference.lines) {
        constexpr char kSigns[] = {' ', '-', '+'};
        text += std::string("  ") + kSigns[static_cast<std::size_t>(line.change)] + " " +
                (line.entry.empty() ? "(an empty entry)" : shown(line.entry)) + "\n";
    }
    for (const auto& conversion : report.menuConversions) {
        const bool isDone = !conversion.entry.converted.empty();
        text += labelled(isDone ? "converted" : "failed", shown(conversion.entry.source));
        text += below(isDone ? "to " + shown(conversion.entry.converted) : shownLine(conversion.entry.problem));
    }
    for (const auto& write : report.configurationWrites) {
        if (!write.stored) {
            text += labelled("not stored", shown(write.key)) + below(shownLine(write.problem));
        }
    }
    return text;
}

std::string commandsText(const RunReport& report)
{
    std::string text;
    for (const auto& registered : report.registered) {
        const std::string& module = registered.entry.module;
        text +=
            labelled("registered", shown(registered.entry.name)) + (module.empty() ? "" : below("by " + shown(module)));
    }
    for (const auto& announced : report.announced) {
        const std::string owner =
            announced.bundle ? "for " + shown(report.bundles[*announced.bundle].folder) + "; " : "";
        text += labelled("announced", shown(announced.entry.name)) + below(owner + "its component loads at first use");
    }
    return text;
}

/// `list` under `heading`; when it is empty, "none" behind it.
std::string section(const std::string& heading, const std::string& list)
{
    return "\n" + heading + (list.empty() ? ": none\n" : "\n" + list);
}

std::string logText(const RunReport& report)
{
    const ErrorLogFile& log = report.log;
    std::string text = "\nError log: " + shown(log.path) + "\n";
    if (!log.problem.empty()) {
        text += "  not to be relied on: " + shownLine(log.problem) + "\n";
    }
    if (!log.text.time.empty()) {
        text += "  begun " + shown(log.text.time) +
                (log.text.records.empty() ? ", no problems"
                                          : ", " + counted(log.text.records.size(), "problem", "problems")) +
                "\n";
    }
    for (const ErrorLogRecord& record : log.text.records) {
        text +=
            "  " + shown(record.path) + "\n" + (record.message.empty() ? "" : "    " + shown(record.message) + "\n");
    }
    return text;
}

} // namespace

std::string hostText(const RunReport& report)
{
    return "Host: " + shown(report.productName) + ", version " + shown(report.vernum) + "\n" +
           labelled("program", shown(report.programFolder)) + labelled("home", shown(report.home)) +
           labelled("settings", shown(report.configurationFile));
}

std::string startText(const RunReport& report)
{
    std::string text;
    if (!report.failure.empty()) {
        text += "\nThe start was cut short: " + shownLine(report.failure) + "\n";
    }
    return text + bundlesText(report) + menusText(report) + section("Components", componentsText(report, {})) +
           section("LISP expressions", expressionsText(report, {})) + section("Commands", commandsText(report));
}

std::string commandHeading(const std::wstring& name)
{
    return "\nCommand " + quoted(shown(name)) + "\n";
}

std::string commandText(const RunReport& report, std::size_t index)
{
    const CommandRun& run = report.commandRuns[index];
    std::string text = componentsText(report, index) + expressionsText(report, index);
    switch (run.outcome) {
    case CommandRun::Outcome::kDone:
        return text + "  done\n";
    case CommandRun::Outcome::kFailed:
        return text + "  failed: " + shownLine(run.problem) + "\n";
    case CommandRun::Outcome::kUnknown:
        break;
    }
    return text + "  unknown: " + shownLine(run.problem) + "\n";
}

std::string endText(const RunReport& report)
{
    std::string text = logText(report);
    if (!report.notices.empty()) {
        text += "\nNotices of the host\n";
    }
    for (const auto& notice : report.notices) {
        text += "  " + shownLine(notice.text) + "\n";
    }
    return text + "\n" + verdictText(report.problems());
}

std::string verdictText(const Problems& problems)
{
    std::string list;
    const auto add = [&](std::size_t count, const char* one, const char* many) {
        if (count > 0) {
            list += (list.empty() ? "" : ", ") + counted(count, one, many);
        }
    };
    add(problems.droppedBundles, "bundle dropped", "bundles dropped");
    add(problems.unreadableManifests, "manifest not readable", "manifests not readable");
    add(problems.failedComponents, "component failed", "components failed");
    add(problems.failedExpressions, "expression failed", "expressions failed");
    add(problems.failedMenus, "menu not converted", "menus not converted");
    add(problems.unstoredValues, "value not stored", "values not stored");
    add(problems.failedCommands, "command unknown or failed", "commands unknown or failed");
    add(problems.notices, "notice of the host", "notices of the host");
    if (problems.isLogUnreliable) {
        list += std::string(list.empty() ? "" : ", ") + "no reliable error log";
    }
    if (problems.isBroken) {
        list += std::string(list.empty() ? "" : ", ") + "the start was cut short";
    }
    return "Result: " + (list.empty() ? "all went well" : list) + "\n";
}

} // namespace cli
