// What a bundle read from its manifest, as lines of text that a test can compare whole.
#pragma once

#include "host/LocaleText.h"
#include "manifest/Bundle.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace recordtext {

inline void appendUtf8(std::string& bytes, std::wstring_view text)
{
    for (const wchar_t unit : text) {
        localetext::appendUtf8(bytes, unit);
    }
}

/// `label`, then " name=[text]" for each text that is not empty.
inline std::string line(std::string label, std::initializer_list<std::pair<const char*, std::wstring_view>> texts)
{
    for (const auto& [name, text] : texts) {
        if (!text.empty()) {
            label += std::string(" ") + name + "=[";
            appendUtf8(label, text);
            label += "]";
        }
    }
    return label;
}

/// One line for the entry, then one for each group and each command. The two numbers are always there.
inline void appendEntry(std::vector<std::string>& lines, const KestComponentEntry& entry)
{
    lines.push_back(line("entry", {{"app", entry.appName}, {"module", entry.moduleName}}) +
                    (entry.pythonVersion.empty() ? "" : " python=[" + entry.pythonVersion + "]") +
                    " ctrl=" + std::to_string(entry.loadCtrlFlag) + " flags=" + std::to_string(entry.loadFlags));
    for (const KestCommands& group : entry.commands) {
        lines.push_back(line("  group", {{"name", group.groupName}}));
        for (const KestCommand& command : group.commands) {
            lines.push_back(line("    command", {{"global", command.globalName}, {"local", command.localName}}));
        }
    }
}

inline std::string of(const KestApplicationPackage& package)
{
    return line("package", {{"schema", package.schemaVersion},
                            {"version", package.appVersion},
                            {"author", package.author},
                            {"name", package.name},
                            {"description", package.description},
                            {"icon", package.icon},
                            {"help", package.helpFile},
                            {"product", package.productCode},
                            {"upgrade", package.upgradeCode}});
}

inline std::string of(const KestCompanyDetails& company)
{
    return line("company",
                {{"name", company.name}, {"phone", company.phone}, {"url", company.url}, {"email", company.email}});
}

inline std::string of(const KestRuntimeRequirements& runtime)
{
    return line("runtime", {{"architecture", runtime.architecture},
                            {"os", runtime.os},
                            {"platform", runtime.platform},
                            {"min", runtime.seriesMin},
                            {"max", runtime.seriesMax}});
}

inline std::string of(const KestDependentBundle& dependency)
{
    return line("dependency",
                {{"upgrade", dependency.upgradeCode}, {"min", dependency.versionMin}, {"max", dependency.versionMax}});
}

/// Every record of `bundle` that holds something, in the order package, company, runtime, dependencies, entries.
inline std::vector<std::string> of(const KestBundle& bundle)
{
    std::vector<std::string> lines;
    for (const std::string& record : {of(bundle.package), of(bundle.company), of(bundle.runtime)}) {
        if (record.find('=') != std::string::npos) {
            lines.push_back(record);
        }
    }
    for (const KestDependentBundle& dependency : bundle.dependentBundles) {
        lines.push_back(of(dependency));
    }
    for (const KestComponentEntry& entry : bundle.components) {
        appendEntry(lines, entry);
    }
    return lines;
}

} // namespace recordtext
