#include "cli/rules/LoadFindings.h"

#include "cli/NearestName.h"
#include "cli/Shown.h"
#include "cli/rules/ComponentRules.h"

#include "host/LocaleText.h"
#include "loading/ModuleKind.h"
#include "manifest/BundleStrConst.h"
#include "menus/MenuKind.h"
#include "standalone/Utf8.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {

namespace {

/// What LISP files are loaded by: (LOAD "path"), of which this many characters are handed over.
constexpr std::size_t kLongestExpression = 2048;
constexpr std::size_t kAroundPath = 9;

const std::vector<std::string> kExtensions{".krx", ".lsp",  ".kelx", ".vls", ".py",
                                           ".dll", ".cuix", ".mnu",  ".mns", ".menuc"};

const std::wstring& moduleAttribute()
{
    return BundleStrConst::entry_ModuleName;
}

/// Why the file at `path` cannot be read; empty when it can.
std::string problemOfFile(const std::wstring& path)
{
    const std::string file = localetext::narrow(path);
    struct stat found
    {
    };
    if (::stat(file.c_str(), &found) != 0 || ::access(file.c_str(), R_OK) != 0) {
        return shownLine(plainUtf8FromLocale(std::strerror(errno)));
    }
    return S_ISREG(found.st_mode) ? "" : "it is not a regular file";
}

void addUnknownExtension(const ComponentInput& component, Findings& findings)
{
    const std::wstring& path = component.record().moduleName;
    const std::wstring name = path.substr(path.rfind(L'/') + 1);
    const std::size_t point = name.rfind(L'.');
    const std::wstring extension = point == std::wstring::npos ? L"" : name.substr(point);
    Finding finding = component.finding(
        kUnknownExtension, moduleAttribute(),
        extension.empty() ? "The file " + named(name) + " has no extension, so no loader takes it, and nobody says so."
                          : "No loader takes files whose names end in " + named(extension) +
                                ", and nobody says so. What counts is the text from the last point on.");
    finding.expected = "one of .krx, .lsp, .kelx, .vls, .py, .dll, .cuix, .mnu, .mns, .menuc";
    finding.found = extension.empty() ? "no extension" : named(extension);
    const auto nearest = nearestName(plainUtf8(extension), kExtensions);
    finding.mend = nearest ? "Did you mean \"" + *nearest + "\"?" : "Name a file of one of these kinds.";
    findings.push_back(std::move(finding));
}

void addLisp(const ComponentInput& component, Findings& findings)
{
    const std::wstring& path = component.record().moduleName;
    if (path.size() + kAroundPath > kLongestExpression) {
        Finding finding =
            component.finding(kLispPathTooLong, moduleAttribute(),
                              "The whole path of the LISP file has " + std::to_string(path.size()) +
                                  " characters; the expression that loads it is cut, and the file never loads.");
        finding.expected = std::to_string(kLongestExpression - kAroundPath) + " characters at most";
        finding.found = std::to_string(path.size()) + " characters";
        finding.mend = "Give the file a shorter path in the bundle, or install the bundle under a shorter one.";
        findings.push_back(std::move(finding));
    }
    if (const std::size_t bad = path.find_first_of(L"\"\\"); bad != std::wstring::npos) {
        Finding finding = component.finding(
            kLispPathChanged, moduleAttribute(),
            std::string("The path of the LISP file holds a ") +
                (path[bad] == L'"' ? "quotation mark, which ends" : "backslash, which becomes a \"/\" in") +
                " the path in the expression that loads it: " + named(path) + ".");
        finding.mend = "Rename the file or the folder.";
        findings.push_back(std::move(finding));
    }
    if (const std::string problem = problemOfFile(path); !problem.empty()) {
        Finding finding = component.finding(
            kLispFileMissing, moduleAttribute(),
            "The LISP file " + named(inBundle(component.input.bundle, path)) + " cannot be read: " + problem + "." +
                (component.input.bundle.isLoaded() ? " Its loading is queued all the same, and fails later." : ""));
        finding.mend = "Put the file there, or correct ModuleName; letter case counts.";
        findings.push_back(std::move(finding));
    }
}

void addPythonVersion(const ComponentInput& component, Findings& findings)
{
    Finding finding = component.finding(kNoPythonVersion, moduleAttribute(),
                                        "The Python script names no PythonVersion, so it is skipped, and nobody says "
                                        "so.");
    finding.expected = "a PythonVersion, for example \"python3.11\"";
    finding.mend = "Write PythonVersion=\"python3.11\", or another Python that is installed.";
    findings.push_back(std::move(finding));
}

/// Loading fails, at start-up or when a command is used.
void addFailure(const ComponentInput& component, const std::string& problem, bool isAtStartup, Findings& findings)
{
    const KestComponentEntry& entry = component.record();
    const bool isPython = moduleKindOf(entry.moduleName) == ModuleKind::kPython;
    const bool isPythonAtFault = isPython && problemOfFile(entry.moduleName).empty();
    const std::string reason = problem.empty() ? "nobody gives a reason" : abridged(problem);
    const std::string subject = named(inBundle(component.input.bundle, entry.moduleName));
    if (isPythonAtFault) {
        const std::wstring version = standalone::wideFromUtf8(entry.pythonVersion).value_or(L"");
        Finding finding = component.finding(
            kPythonNotFound, BundleStrConst::entry_PythonVersion,
            "The script " + subject + " cannot be run with PythonVersion=" + named(version) + ": " + reason + ".");
        finding.found = named(version);
        finding.expected = "the name of an installed Python, for example \"python3.11\"";
        const bool isNumber = !version.empty() && version.find_first_not_of(L"0123456789.") == std::wstring::npos;
        finding.mend = isNumber ? "Write PythonVersion=" + named(L"python" + version) + "."
                                : "Install that Python, or name one that is installed.";
        findings.push_back(std::move(finding));
        return;
    }
    Finding finding =
        component.finding(isAtStartup ? kComponentFails : kFirstUseFails, moduleAttribute(),
                          subject +
                              (isAtStartup ? " fails to load at start-up: "
                                           : " fails to load when one of its commands is used, and nobody is "
                                             "told: ") +
                              reason + ".");
    const std::string ofFile = problemOfFile(entry.moduleName);
    const bool isAllOfFile = !ofFile.empty() && problem.ends_with(ofFile);
    finding.mend = ofFile.empty() ? "Mend what the reason says."
                   : isAllOfFile  ? "Put the file there, or correct ModuleName; letter case counts."
                                  : "Put the file there first, or correct ModuleName; then mend what the reason says.";
    findings.push_back(std::move(finding));
}

/// The earlier component that decides which Python a command runs this one's script with: the first that declares a
/// command for it. Null when it is this one, or agrees with it.
const KestComponentEntry* otherPython(const ComponentInput& component)
{
    const KestComponentEntry& entry = component.record();
    const auto& all = component.input.all.firstDeclaring;
    const auto first = all.find(entry.moduleName);
    if (!entry.loadsOnCommand() || first == all.end() || first->second.bundle != &component.input.bundle ||
        first->second.component >= component.index) {
        return nullptr;
    }
    const KestComponentEntry& other = (*first->second).record;
    return other.pythonVersion != entry.pythonVersion ? &other : nullptr;
}

void addOtherPython(const ComponentInput& component, const KestComponentEntry& other, Findings& findings)
{
    const std::string version = named(standalone::wideFromUtf8(other.pythonVersion).value_or(L""));
    Finding finding = component.finding(
        kOtherPythonVersion, BundleStrConst::entry_PythonVersion,
        "The script " + named(inBundle(component.input.bundle, other.moduleName)) +
            (other.pythonVersion.empty()
                 ? " stands in an earlier component without PythonVersion, so commands skip it"
                 : " stands in an earlier component with PythonVersion=" + version + ", so commands run it with that") +
            ", whatever this one says.");
    finding.mend = other.pythonVersion.empty()
                       ? "Write the PythonVersion into the earlier component."
                       : "Write PythonVersion=" + version + ", or name a copy of the script here.";
    findings.push_back(std::move(finding));
}

} // namespace

void addLoadFindings(const ComponentInput& component, Findings& findings)
{
    const ExaminedComponent& facts = component.facts();
    const KestComponentEntry& entry = facts.record;
    const ModuleKind kind = moduleKindOf(entry.moduleName);
    if (kind == ModuleKind::kOther) {
        if (menuKindOf(entry.moduleName) == MenuKind::kOther) {
            addUnknownExtension(component, findings);
        }
        return;
    }
    if (!entry.loadsAtStartup() && !entry.loadsOnCommand()) {
        return;
    }
    if (kind == ModuleKind::kLisp) {
        addLisp(component, findings);
    }
    const KestComponentEntry* const other = kind == ModuleKind::kPython ? otherPython(component) : nullptr;
    if (other != nullptr && problemOfFile(entry.moduleName).empty()) {
        if (!entry.pythonVersion.empty()) {
            addOtherPython(component, *other, findings);
        }
    } else if (kind == ModuleKind::kPython && entry.pythonVersion.empty()) {
        addPythonVersion(component, findings);
    } else if (facts.outcome == ComponentOutcome::kFailed) {
        addFailure(component, facts.problem, true, findings);
    } else if (facts.onDemand && !facts.onDemand->isLoaded) {
        addFailure(component, facts.onDemand->problem, false, findings);
    }
}

} // namespace cli
