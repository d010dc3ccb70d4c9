#include "cli/rules/FileRules.h"

#include "cli/PathInBundle.h"
#include "cli/Shown.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace cli {

namespace {

namespace fs = std::filesystem;

std::size_t elementOf(const LintInput& input, std::size_t component)
{
    const auto& components = input.reading.components;
    return component < components.size() ? components[component].entry : ManifestElement::kNone;
}

class FileCheck
{
public:
    FileCheck(const LintInput& given, Findings& all) : input(given), findings(all) {}

    void run()
    {
        for (std::size_t index = 0; index < input.bundle.components.size(); ++index) {
            judgeComponent(index);
        }
        if (!input.reading.packages.empty()) {
            judgeAttachment(BundleStrConst::app_Icon);
            judgeAttachment(BundleStrConst::app_HelpFile);
        }
        judgePermissions();
    }

private:
    void judgeComponent(std::size_t index)
    {
        const std::wstring& path = input.bundle.components[index].record.moduleName;
        if (path.empty()) {
            return; // no file is named
        }
        const PathInBundle place = lookFor(input.bundle.folder, path);
        const std::size_t element = elementOf(input, index);
        const std::string name = named(inBundle(input.bundle, path));
        const auto addAbout = [&](const Rule& rule, const std::string& what, const std::string& mend) {
            add(rule, element, BundleStrConst::entry_ModuleName, path, what, mend);
        };
        if (place.isOutside) {
            addAbout(kOutsideBundle,
                     name + " leads out of the bundle folder; it will not be there where the bundle is "
                            "installed.",
                     "Put the file into the bundle folder.");
        }
        switch (place.state) {
        case PathState::kFile:
            break;
        case PathState::kMissing:
            addAbout(kFileMissing, "The file " + name + " is not there.", "Put the file there, or correct ModuleName.");
            break;
        case PathState::kLetterCase:
            addAbout(kFileLetterCase,
                     "The file " + name + " is not there; letter case counts, and on disk it is called " +
                         named(inBundle(input.bundle, place.found)) + ".",
                     "Write ModuleName=" + named(inBundle(input.bundle, place.found)) + ", or rename the file.");
            break;
        case PathState::kNotReadable:
            addAbout(kFileNotReadable, "The file " + name + " cannot be read: " + place.problem + ".",
                     "Put a regular file there that everybody may read.");
            break;
        }
    }

    /// An icon or a help file; pages in the web are not looked for.
    void judgeAttachment(const std::wstring& attribute)
    {
        const std::size_t package = input.reading.packages.back();
        const ManifestAttribute* const written = input.document.elements[package].find(attribute);
        if (written == nullptr || written->value.empty() || written->value.find(L"://") != std::wstring::npos) {
            return;
        }
        const bool isRelative = written->value.starts_with(L"./");
        const std::wstring path = input.bundle.folder + L"/" + written->value.substr(isRelative ? 2 : 0);
        const PathInBundle place = lookFor(input.bundle.folder, path);
        const std::string text = abridged(std::wstring_view(attribute)) + "=" + named(written->value);
        if (place.isOutside) {
            add(kOutsideBundle, package, attribute, path, text + " leads out of the bundle folder.",
                "Put the file into the bundle folder.");
        }
        if (place.state == PathState::kMissing || place.state == PathState::kNotReadable) {
            add(kAttachmentMissing, package, attribute, path, text + " names a file that is not there.",
                "Put the file there, or leave the attribute out.");
        } else if (place.state == PathState::kLetterCase) {
            add(kAttachmentMissing, package, attribute, path,
                text + " names a file that is not there; on disk it is called " +
                    named(inBundle(input.bundle, place.found)) + ".",
                "Write " + named(inBundle(input.bundle, place.found)) + ".");
        }
    }

    /// What everybody may change, everybody may have run by everybody else. Links are not followed.
    void judgePermissions()
    {
        constexpr std::size_t kMostEntries = 50'000;
        std::vector<std::string> writable;
        const std::string folder = localetext::narrow(input.bundle.folder);
        if (isWritableByAll(folder)) {
            writable.push_back(folder);
        }
        std::error_code error;
        std::size_t seen = 0;
        for (fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error), end;
             !error && entry != end && seen < kMostEntries; entry.increment(error), ++seen) {
            if (isWritableByAll(entry->path().string())) {
                writable.push_back(entry->path().string());
            }
        }
        if (writable.empty()) {
            return;
        }
        std::sort(writable.begin(), writable.end());
        const std::wstring first = localetext::widen(writable.front());
        const std::string more = writable.size() > 1 ? " and " + std::to_string(writable.size() - 1) + " more" : "";
        Finding finding = findingOf(kWritableByAll, input.bundle, Place{first, 0, 0},
                                    "Everybody may write to " + named(inBundle(input.bundle, first)) + more +
                                        ", and so have others run what they like.");
        finding.subject = first;
        finding.mend = "Take the permission away: chmod -R o-w.";
        findings.push_back(std::move(finding));
    }

    static bool isWritableByAll(const std::string& path)
    {
        struct stat found
        {
        };
        return ::lstat(path.c_str(), &found) == 0 && !S_ISLNK(found.st_mode) && (found.st_mode & S_IWOTH) != 0;
    }

    void add(const Rule& rule, std::size_t element, std::wstring_view attribute, const std::wstring& subject,
             std::string what, std::string mend)
    {
        Finding finding = findingAt(rule, input, element, attribute, std::move(what));
        finding.subject = subject;
        finding.mend = std::move(mend);
        findings.push_back(std::move(finding));
    }

    const LintInput& input;
    Findings& findings;
};

} // namespace

std::vector<const Rule*> fileRules()
{
    return {&kFileMissing, &kFileLetterCase, &kFileNotReadable, &kOutsideBundle, &kAttachmentMissing, &kWritableByAll};
}

void addFileFindings(const LintInput& input, Findings& findings)
{
    FileCheck(input, findings).run();
}

bool isFileThere(const LintInput& input, std::size_t index)
{
    const std::wstring& path = input.bundle.components[index].record.moduleName;
    return !path.empty() && lookFor(input.bundle.folder, path).state == PathState::kFile;
}

} // namespace cli
