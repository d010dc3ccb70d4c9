#include "cli/ReportJson.h"

#include "cli/JsonTexts.h"
#include "cli/MenuDifference.h"
#include "cli/Shown.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

Json text(std::wstring_view wide)
{
    return plainUtf8(wide);
}

Json pathText(const std::string& bytesOfLocale)
{
    return plainUtf8FromLocale(bytesOfLocale);
}

/// Milliseconds to the microsecond; more would be noise.
Json rounded(double milliseconds)
{
    return std::round(milliseconds * 1000) / 1000;
}

const char* outcomeOf(const CommandRun& run)
{
    switch (run.outcome) {
    case CommandRun::Outcome::kDone:
        return "done";
    case CommandRun::Outcome::kFailed:
        return "failed";
    case CommandRun::Outcome::kUnknown:
        break;
    }
    return "unknown";
}

Json hostJson(const RunReport& report)
{
    return {{"product", text(report.productName)},
            {"vernum", text(report.vernum)},
            {"programFolder", pathText(report.programFolder)},
            {"home", pathText(report.home)},
            {"configurationFile", pathText(report.configurationFile)}};
}

Json bundleJson(const BundleFacts& bundle)
{
    Json reasons = Json::array();
    for (const std::string& reason : bundle.reasons) {
        reasons.push_back(pathText(reason));
    }
    Json problem;
    if (!bundle.read.problem.empty()) {
        problem = {{"message", bundle.read.problem}, {"line", bundle.read.line}, {"column", bundle.read.column}};
    }
    return {{"folder", text(bundle.folder)},
            {"manifest", text(bundle.manifest)},
            {"state", nameOf(bundle.state)},
            {"reasons", std::move(reasons)},
            {"manifestProblem", std::move(problem)},
            {"announced", textsJson(bundle.announced)},
            {"activity",
             {{"modulesLoaded", bundle.activity.modulesLoaded},
              {"scriptsLoaded", bundle.activity.scriptsLoaded},
              {"componentsFailed", bundle.activity.componentsFailed},
              {"expressionsQueued", bundle.activity.expressionsQueued},
              {"commandsRegistered", bundle.activity.commandsRegistered},
              {"menus", bundle.activity.menus}}},
            {"active", bundle.isActive()},
            {"hasSilentComponents", bundle.hasPassedOverScripts()}};
}

Json menusJson(const MenuFacts& menus)
{
    const auto entries = [](const std::optional<std::wstring>& list) {
        return list ? textsJson(menuEntries(list)) : Json();
    };
    Json added = Json::array();
    Json removed = Json::array();
    for (const MenuDifference::Line& line : menuDifference(menus.before, menus.after).lines) {
        if (line.change == MenuDifference::Change::kAdded) {
            added.push_back(text(line.entry));
        } else if (line.change == MenuDifference::Change::kRemoved) {
            removed.push_back(text(line.entry));
        }
    }
    return {{"before", entries(menus.before)},
            {"after", entries(menus.after)},
            {"added", std::move(added)},
            {"removed", std::move(removed)}};
}

/// One array element for each of `all`, made by `make`, with the bundle and the command that it belongs to.
template <typename Entry, typename Make>
Json tracedJson(const RunReport& report, const std::vector<Traced<Entry>>& all, Make make)
{
    Json list = Json::array();
    for (const Traced<Entry>& one : all) {
        Json element = make(one.entry);
        element["bundle"] = one.bundle ? text(report.bundles[*one.bundle].folder) : Json();
        element["duringCommand"] = one.command ? Json(*one.command) : Json();
        list.push_back(std::move(element));
    }
    return list;
}

Json moduleJson(const standalone::ModuleLoad& load)
{
    return {{"path", text(load.path)},
            {"loaded", load.loaded},
            {"problem", orNull(load.problem)},
            {"loadType", load.loadType},
            {"milliseconds", rounded(load.milliseconds)}};
}

Json scriptJson(const ScriptFacts& script)
{
    return {{"path", text(script.path)},
            {"loaded", script.loaded},
            {"problem", orNull(script.problem)},
            {"milliseconds", script.milliseconds ? rounded(*script.milliseconds) : Json()}};
}

Json engineStartJson(const standalone::EngineStart& start)
{
    return {{"description", start.description}, {"milliseconds", rounded(start.milliseconds)}};
}

Json engineJson(const standalone::EngineOpen& engine)
{
    return {{"name", text(engine.name)}, {"opened", engine.opened}, {"problem", orNull(engine.problem)}};
}

Json conversionJson(const standalone::MenuConversion& conversion)
{
    return {{"source", text(conversion.source)},
            {"converted", conversion.converted.empty() ? Json() : text(conversion.converted)},
            {"problem", orNull(conversion.problem)}};
}

Json registeredJson(const standalone::CommandRegistered& registered)
{
    return {{"name", text(registered.name)},
            {"module", registered.module.empty() ? Json() : pathText(registered.module)}};
}

Json announcedJson(const standalone::CommandAnnounced& announced)
{
    return {{"name", text(announced.name)}, {"kind", announced.kind}};
}

Json expressionJson(const ExpressionFacts& facts)
{
    return {{"expression", text(facts.queued.expression)},
            {"accepted", facts.queued.accepted},
            {"evaluated", facts.evaluated},
            {"succeeded", facts.succeeded},
            {"problem", orNull(facts.queued.accepted ? facts.problem : facts.queued.problem)},
            {"milliseconds", facts.evaluated ? rounded(facts.milliseconds) : Json()}};
}

Json writesJson(const std::vector<standalone::ConfigurationWrite>& writes)
{
    Json list = Json::array();
    for (const auto& write : writes) {
        list.push_back({{"key", text(write.key)},
                        {"before", text(write.before)},
                        {"after", text(write.after)},
                        {"stored", write.stored},
                        {"problem", orNull(write.problem)}});
    }
    return list;
}

Json commandRunsJson(const std::vector<CommandRun>& runs)
{
    Json list = Json::array();
    for (const CommandRun& run : runs) {
        list.push_back({{"name", text(run.name)},
                        {"outcome", outcomeOf(run)},
                        {"loadRequested", run.wasRequested},
                        {"problem", orNull(run.problem)},
                        {"output", run.output}});
    }
    return list;
}

Json logJson(const ErrorLogFile& log)
{
    Json records = Json::array();
    for (const ErrorLogRecord& record : log.text.records) {
        records.push_back({{"path", pathText(record.path)}, {"message", pathText(record.message)}});
    }
    return {{"path", pathText(log.path)},
            {"problem", orNull(log.problem)},
            {"begun", log.text.time.empty() ? Json() : pathText(log.text.time)},
            {"records", std::move(records)}};
}

Json problemsJson(const Problems& problems)
{
    return {{"droppedBundles", problems.droppedBundles},     {"unreadableManifests", problems.unreadableManifests},
            {"failedComponents", problems.failedComponents}, {"failedExpressions", problems.failedExpressions},
            {"failedMenus", problems.failedMenus},           {"unstoredValues", problems.unstoredValues},
            {"failedCommands", problems.failedCommands},     {"notices", problems.notices},
            {"unreliableLog", problems.isLogUnreliable},     {"startCutShort", problems.isBroken}};
}

} // namespace

std::string reportJson(const RunReport& report, int exitStatus)
{
    Json document;
    document["format"] = kReportFormat;
    document["version"] = KEST_VERSION;
    document["exitStatus"] = exitStatus;
    document["problems"] = problemsJson(report.problems());
    document["failure"] = orNull(report.failure);
    document["host"] = hostJson(report);
    document["bundles"] = Json::array();
    for (const BundleFacts& bundle : report.bundles) {
        document["bundles"].push_back(bundleJson(bundle));
    }
    document["menus"] = menusJson(report.menus);
    document["menuConversions"] = tracedJson(report, report.menuConversions, conversionJson);
    document["configurationWrites"] = writesJson(report.configurationWrites);
    document["modules"] = tracedJson(report, report.modules, moduleJson);
    document["scripts"] = tracedJson(report, report.scripts, scriptJson);
    document["engines"] = tracedJson(report, report.engines, engineJson);
    document["engineStarts"] = tracedJson(report, report.engineStarts, engineStartJson);
    document["expressions"] = tracedJson(report, report.expressions, expressionJson);
    document["registeredCommands"] = tracedJson(report, report.registered, registeredJson);
    document["announcedCommands"] = tracedJson(report, report.announced, announcedJson);
    document["startOutput"] = report.startOutput;
    document["commandRuns"] = commandRunsJson(report.commandRuns);
    document["log"] = logJson(report.log);
    document["notices"] = Json::array();
    for (const auto& notice : report.notices) {
        document["notices"].push_back(notice.text);
    }
    return document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace cli
