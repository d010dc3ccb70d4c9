#include "cli/rules/HostRules.h"

#include "cli/Shown.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {

namespace {

struct WritingProblem
{
    std::string what; ///< empty: there is none
    std::string mend;
};

std::string letWrite(const std::string& path)
{
    return "Let the user of the host write to " + named(localetext::widen(path)) + ".";
}

/// Why the file at `path` could not be written.
WritingProblem problemOfWriting(const std::string& path)
{
    const auto reason = [] { return shownLine(plainUtf8FromLocale(std::strerror(errno))); };
    struct stat found
    {
    };
    if (::stat(path.c_str(), &found) == 0) {
        if (!S_ISREG(found.st_mode)) {
            return {"something that is no file stands in its place", "Remove what stands there."};
        }
        return ::access(path.c_str(), W_OK) == 0 ? WritingProblem{} : WritingProblem{reason(), letWrite(path)};
    }
    const std::string folder = path.substr(0, path.rfind('/'));
    if (::stat(folder.c_str(), &found) != 0) {
        return {errno == ENOENT ? "its folder is not there" : reason(),
                "Make the folder " + named(localetext::widen(folder)) + ", and let the user of the host write to it."};
    }
    return ::access(folder.c_str(), W_OK | X_OK) == 0 ? WritingProblem{} : WritingProblem{reason(), letWrite(folder)};
}

/// Other rules say it better.
bool isTold(const std::string& notice)
{
    return notice.find("\" cannot be listed: ") != std::string::npos;
}

} // namespace

std::vector<const Rule*> hostRules()
{
    return {&kLogNotOpened, &kHostNotice, &kStartCutShort, &kEngineMissing};
}

void addHostFindings(const Examination& examination, Findings& findings)
{
    const std::string log = examination.home + "/" + BundleStrConst::bundle_ErrorLogPath;
    if (const WritingProblem problem = problemOfWriting(log); !problem.what.empty()) {
        Finding finding;
        finding.rule = &kLogNotOpened;
        finding.place.file = localetext::widen(log);
        finding.what = "The error log cannot be written: " + problem.what +
                       ". Then nothing is ever logged, and everything else goes on.";
        finding.mend = problem.mend;
        findings.push_back(std::move(finding));
    }
    for (const std::string& notice : examination.notices) {
        if (!isTold(notice)) {
            Finding finding;
            finding.rule = &kHostNotice;
            finding.what = abridged(notice) + ".";
            findings.push_back(std::move(finding));
        }
    }
    if (!examination.failure.empty()) {
        Finding finding;
        finding.rule = &kStartCutShort;
        finding.what = "An error ended the start before all bundles had their turn: " + abridged(examination.failure);
        findings.push_back(std::move(finding));
    }
}

} // namespace cli
