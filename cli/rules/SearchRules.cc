#include "cli/rules/SearchRules.h"

#include "cli/BundleName.h"
#include "cli/NearestName.h"
#include "cli/Shown.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

const std::wstring& manifestName()
{
    return BundleStrConst::xml_FileNameConst;
}

std::string textOfError(int error)
{
    return shownLine(plainUtf8FromLocale(std::strerror(error)));
}

/// The names in the folder at `path`, sorted by their bytes.
std::vector<std::string> namesIn(const fs::path& path, std::error_code& error)
{
    std::vector<std::string> names;
    for (fs::directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool isManifestInAnotherCase(const std::string& name)
{
    return localetext::equalIgnoringCase(localetext::widen(name), manifestName());
}

/// The file in `folder` that was probably meant to be the manifest, by its name; empty: there is none.
std::wstring misnamedManifest(const fs::path& folder, const std::vector<std::string>& names)
{
    const std::string wanted = localetext::narrow(manifestName());
    std::vector<std::string> files;
    for (const std::string& name : names) {
        std::error_code ignored;
        if (fs::is_regular_file(folder / name, ignored)) {
            files.push_back(name);
        }
    }
    // An ending more is what editors and downloads add.
    const auto longer = std::find_if(files.begin(), files.end(), [&](const std::string& name) {
        return localetext::equalIgnoringCase(localetext::widen(name.substr(0, wanted.size())), manifestName());
    });
    return localetext::widen(longer != files.end() ? *longer : nearestName(wanted, files).value_or(""));
}

/// A manifest in a folder directly below `folder`, relative to that; empty: there is none.
std::wstring manifestBelow(const fs::path& folder, const std::vector<std::string>& names)
{
    for (const std::string& name : names) {
        std::error_code ignored;
        if (fs::is_directory(folder / name, ignored) &&
            fs::exists(folder / name / localetext::narrow(manifestName()), ignored)) {
            return localetext::widen(name) + L"/" + manifestName();
        }
    }
    return L"";
}

Finding aboutNamed(const Rule& rule, const ExaminedBundle& bundle, std::string what, std::string mend)
{
    Finding finding = findingOf(rule, bundle, {bundle.folder, 0, 0}, std::move(what));
    finding.mend = std::move(mend);
    return finding;
}

/// Why the folder of `bundle`, which can be listed, counts as one without a manifest.
Finding missingManifest(const ExaminedBundle& bundle, const std::vector<std::string>& names)
{
    const std::string wanted = named(manifestName());
    const auto other = std::find_if(names.begin(), names.end(), isManifestInAnotherCase);
    if (other != names.end()) {
        Finding finding = aboutNamed(kManifestLetterCase, bundle,
                                     "The manifest is named " + named(localetext::widen(*other)) +
                                         "; its name counts letter for letter, so the folder is passed over.",
                                     "Rename the file to " + wanted + ".");
        finding.expected = wanted;
        finding.found = named(localetext::widen(*other));
        return finding;
    }
    if (const std::wstring below = manifestBelow(localetext::narrow(bundle.folder), names); !below.empty()) {
        Finding finding = aboutNamed(kManifestTooDeep, bundle,
                                     "The manifest lies at " + named(below) +
                                         "; it is looked for directly in the bundle folder and nowhere else.",
                                     "Move the manifest, with all that it names, up into the bundle folder itself.");
        finding.expected = wanted;
        finding.found = named(below);
        return finding;
    }
    if (const std::wstring near = misnamedManifest(localetext::narrow(bundle.folder), names); !near.empty()) {
        Finding finding = aboutNamed(kNoManifest, bundle,
                                     "The folder has no manifest, so it is passed over; its file " + named(near) +
                                         " may have been meant to be that.",
                                     "Rename the file to " + wanted + ", if it is the manifest.");
        finding.expected = wanted;
        finding.found = named(near);
        return finding;
    }
    Finding finding = aboutNamed(kNoManifest, bundle, "The folder has no manifest, so it is passed over.",
                                 "Put a manifest named " + wanted + " into the folder.");
    finding.expected = wanted;
    finding.found = names.empty() ? "an empty folder" : "a folder without a file of that name";
    return finding;
}

/// `name` as that of a bundle: "Tools.bundle.bak" was one.
std::wstring asBundleName(const std::wstring& name)
{
    const std::size_t ending = name.find(kBundleEnding);
    return name.substr(0, ending) + std::wstring(kBundleEnding);
}

Finding whyNotABundle(const ExaminedBundle& bundle)
{
    const fs::path path = localetext::narrow(bundle.folder);
    struct stat found
    {
    };
    if (::stat(path.c_str(), &found) != 0) {
        const int error = errno;
        std::error_code ignored;
        if (fs::is_symlink(path, ignored)) {
            const std::string target = fs::read_symlink(path, ignored).string();
            Finding finding = aboutNamed(kBrokenLink, bundle,
                                         "This is a link to " + named(localetext::widen(target)) +
                                             ", which cannot be followed: " + textOfError(error) + ".",
                                         "Let the link lead to a bundle folder, or remove it.");
            finding.expected = "a folder";
            finding.found = "a link that leads nowhere";
            return finding;
        }
        return aboutNamed(kFolderNotListable, bundle, "The folder cannot be looked at: " + textOfError(error) + ".",
                          "Let the user of the host read the folder.");
    }
    if (!S_ISDIR(found.st_mode)) {
        Finding finding =
            aboutNamed(kNotAFolder, bundle, "Only a folder can be a bundle, and this is none; it is passed over.",
                       "Unpack it, so that a folder of this name holds the manifest.");
        finding.expected = "a folder";
        finding.found = S_ISREG(found.st_mode) ? "a file" : "neither a folder nor a file";
        return finding;
    }
    std::error_code error;
    const std::vector<std::string> names = namesIn(path, error);
    if (error) {
        return aboutNamed(kFolderNotListable, bundle,
                          "The folder cannot be listed: " + textOfError(error.value()) + ".",
                          "Let the user of the host read the folder.");
    }
    const std::wstring name = folderNameOf(bundle);
    if (!hasBundleEnding(name)) {
        Finding finding = aboutNamed(kNameWithoutEnding, bundle,
                                     "The folder holds a manifest, but its name " + named(name) +
                                         " does not end in \".bundle\", so it is passed over.",
                                     "Rename the folder to " + named(asBundleName(name)) +
                                         ", or move it away if it is not to be loaded.");
        finding.expected = "a name that ends in \".bundle\"";
        finding.found = named(name);
        return finding;
    }
    if (std::find(names.begin(), names.end(), localetext::narrow(manifestName())) != names.end()) {
        const std::wstring around = localetext::widen(path.parent_path().filename().string());
        return aboutNamed(kBundleTooDeep, bundle,
                          "The bundle lies in the folder " + named(around) +
                              "; bundles are looked for directly in the search root and nowhere below.",
                          "Move the folder " + named(name) + " out of " + named(around) + ", into the search root.");
    }
    return missingManifest(bundle, names);
}

} // namespace

std::vector<const Rule*> searchRules()
{
    return {&kRootMissing,       &kRootNotListable,   &kNoManifest,        &kManifestLetterCase,
            &kManifestTooDeep,   &kNotAFolder,        &kBrokenLink,        &kNameWithoutEnding,
            &kFolderNotListable, &kManifestNotOpened, &kMalformedManifest, &kBundleTooDeep};
}

void addRootFindings(const Examination& examination, Findings& findings)
{
    for (const ExaminedRoot& root : examination.roots) {
        if (root.exists) {
            continue;
        }
        Finding finding;
        finding.rule = root.problem.empty() ? &kRootMissing : &kRootNotListable;
        finding.place.file = root.path;
        finding.what = root.problem.empty()
                           ? "The search root does not exist, so no bundle is found there."
                           : "The search root cannot be listed, so no bundle is found there: " + root.problem + ".";
        finding.mend = root.problem.empty() ? "Make the folder when bundles are to be installed there."
                                            : "Make it a folder that the user of the host can read.";
        findings.push_back(std::move(finding));
    }
}

void addSearchFindings(const BundleInput& input, Findings& findings)
{
    const ExaminedBundle& bundle = input.bundle;
    if (bundle.state == BundleState::kNotABundle) {
        findings.push_back(whyNotABundle(bundle));
    } else if (bundle.state == BundleState::kUnreadable) {
        Finding finding = findingOf(kManifestNotOpened, bundle, input.places.ofFile(),
                                    "The manifest cannot be opened: " + abridged(bundle.read.problem) +
                                        ". The bundle is kept and counts as one without components.");
        finding.mend = "Let the user of the host read the file, and see that it is a regular file.";
        findings.push_back(std::move(finding));
    } else if (bundle.state == BundleState::kMalformed) {
        Place place = input.places.ofFile();
        place.line = bundle.read.line;
        place.column = bundle.read.column;
        Finding finding = findingOf(kMalformedManifest, bundle, place,
                                    "The manifest is no well-formed XML: " + abridged(bundle.read.problem) +
                                        ". What was read before counts for nothing, and the bundle is dropped.");
        finding.expected = "well-formed XML";
        finding.mend = "Mend the XML at this place.";
        findings.push_back(std::move(finding));
    }
}

} // namespace cli
