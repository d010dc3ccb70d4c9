#include "tests/structure/IncludeRules.h"

#include "tests/structure/StandardHeaders.h"

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

namespace structure {

namespace {

const std::set<std::string> kFolders = {"host",    "manifest", "loading", "menus", "bundle", "standalone",
                                        "engines", "cli",      "samples", "tests", "bench",  "fuzz"};

/// What the files of one folder may do beside including the standard library and their own folder.
struct FolderRule
{
    std::vector<std::string> allowed;     ///< folders, ending in "/", and single headers
    std::vector<std::string> never;       ///< folders that are not even reached through other headers
    bool mayIncludeOtherLibraries = true; ///< else the standard library and <dlfcn.h>
};

const std::string kManager = "bundle/BundleManager.h";
const std::string kBundle = "manifest/Bundle.h";
const std::vector<std::string> kAnything(kFolders.begin(), kFolders.end());

/// A folder without a rule may include everything: it holds what stands around the product.
const std::map<std::string, FolderRule> kRules = {
    {"host", {{}, kAnything, false}},
    {"manifest",
     {{"host/", kManager}, {"loading", "menus", "standalone", "engines", "cli", "samples", "tests"}, false}},
    {"loading", {{"host/", kManager, kBundle}, {"menus", "standalone", "engines", "cli", "samples", "tests"}, false}},
    {"menus", {{"host/", kManager, kBundle}, {"loading", "standalone", "engines", "cli", "samples", "tests"}, false}},
    {"bundle", {{"host/", "manifest/"}, {"standalone", "engines", "cli", "samples", "tests"}, false}},
    {"standalone", {{"host/"}, {"bundle", "manifest", "loading", "menus", "cli", "samples", "tests"}, true}},
    {"engines", {{"host/"}, {"bundle", "manifest", "loading", "menus", "standalone", "cli", "samples", "tests"}, true}},
    {"cli",
     {{"host/", "manifest/", "loading/", "menus/", "bundle/", "standalone/", "engines/"},
      {"samples", "tests", "bench", "fuzz"},
      true}},
};

std::string folderOf(const std::string& path)
{
    return path.substr(0, path.find('/'));
}

struct Include
{
    std::size_t line;
    std::string text; ///< what stands behind "#include"
    std::string name; ///< between the quotes or brackets; empty when it is neither
    bool isQuoted;
};

/// The include lines of `text`, those of "#include_next" and "#import" too.
std::vector<Include> includesOf(const std::string& text)
{
    static const std::regex kLine(R"(^\s*#\s*(?:include|include_next|import)\b\s*(.*)$)");
    static const std::regex kName(R"re(^(?:"([^"]+)"|<([^>]+)>).*$)re");
    std::vector<Include> includes;
    std::istringstream lines(text);
    std::string line;
    for (std::size_t number = 1; std::getline(lines, line); ++number) {
        std::smatch directive;
        if (!std::regex_match(line, directive, kLine)) {
            continue;
        }
        Include include{number, directive[1], "", false};
        std::smatch name;
        if (std::regex_match(include.text, name, kName)) {
            include.isQuoted = name[1].matched;
            include.name = include.isQuoted ? name[1] : name[2];
        }
        includes.push_back(include);
    }
    return includes;
}

bool isOurs(const Include& include)
{
    return include.isQuoted || kFolders.count(folderOf(include.name)) != 0;
}

bool isAllowed(const std::string& folder, const FolderRule& rule, const std::string& header)
{
    return folderOf(header) == folder ||
           std::any_of(rule.allowed.begin(), rule.allowed.end(), [&](const std::string& allowed) {
               return allowed.back() == '/' ? header.rfind(allowed, 0) == 0 : header == allowed;
           });
}

/// Adds to `reached` every header of ours that `path` includes, itself or through others, with the way to it.
void follow(const Sources& sources, const std::string& path, const std::string& way,
            std::map<std::string, std::string>& reached)
{
    const auto source = sources.find(path);
    if (source == sources.end()) {
        return;
    }
    for (const Include& include : includesOf(source->second)) {
        if (isOurs(include) && reached.emplace(include.name, way).second) {
            follow(sources, include.name, way + " > " + include.name, reached);
        }
    }
}

/// What is wrong with one include line of the file `path`; empty when nothing is.
std::string problemOf(const Sources& sources, const std::string& path, const FolderRule* rule, const Include& include)
{
    const std::string folder = folderOf(path);
    if (include.name.empty()) {
        return "names its header in a way that cannot be followed";
    }
    if (rule == nullptr && include.isQuoted && sources.count(path.substr(0, path.rfind('/') + 1) + include.name) != 0) {
        return ""; // beside it, as around the product it may be
    }
    if (isOurs(include)) {
        if (sources.count(include.name) == 0) {
            return "is no path of ours from the top of the checkout";
        }
        return rule != nullptr && !isAllowed(folder, *rule, include.name) ? "is not for " + folder + "/" : "";
    }
    const bool isBare = rule != nullptr && !rule->mayIncludeOtherLibraries;
    return isBare && kStandardHeaders.count(include.name) == 0 ? "is of a library that is not for " + folder + "/" : "";
}

} // namespace

std::vector<std::string> wrongIncludes(const Sources& sources)
{
    std::vector<std::string> problems;
    for (const auto& [path, text] : sources) {
        const std::string folder = folderOf(path);
        const auto found = kRules.find(folder);
        const FolderRule* rule = found != kRules.end() ? &found->second : nullptr;
        for (const Include& include : includesOf(text)) {
            const std::string problem = problemOf(sources, path, rule, include);
            if (!problem.empty()) {
                problems.push_back(path + ":" + std::to_string(include.line) + ": " + include.text + " " + problem);
            }
        }
        if (rule == nullptr) {
            continue;
        }
        std::map<std::string, std::string> reached;
        follow(sources, path, path, reached);
        for (const auto& [header, way] : reached) {
            const bool isForbidden =
                std::count(rule->never.begin(), rule->never.end(), folderOf(header)) != 0 && folderOf(header) != folder;
            if (isForbidden && way != path) { // a direct one has been named above
                problems.push_back(way + " > " + header + ": is never for " + folder + "/");
            }
        }
    }
    return problems;
}

std::vector<std::string> longFiles(const Sources& sources, std::size_t limit)
{
    std::vector<std::string> files;
    for (const auto& [path, text] : sources) {
        const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
        if (lines > limit) {
            files.push_back(path + ": " + std::to_string(lines) + " lines");
        }
    }
    return files;
}

} // namespace structure
