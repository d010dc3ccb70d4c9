#include "cli/CheckCommand.h"

#include "cli/CheckReport.h"
#include "cli/CheckTargets.h"
#include "cli/CheckedBundles.h"
#include "cli/ExitStatus.h"
#include "cli/HostOptions.h"
#include "cli/Library.h"
#include "cli/Shown.h"
#include "cli/Terminal.h"

#include "host/LocaleText.h"
#include "loading/ProductVersion.h"
#include "standalone/ModuleFile.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <unistd.h>

namespace cli {

namespace {

constexpr char kCheckExamples[] =
    R"(Nothing is loaded and nothing is changed: the bundles are only looked at, all of them as one set. What they depend on and
is not among them is taken to be installed elsewhere. The installed bundles and the settings of the user do not count.

Examples:
  kestbundle check Tools.bundle
      Everything that is wrong with one bundle, or could be better.
  kestbundle check --strict build/bundles
      All bundles in a folder; warnings count as errors.
  kestbundle check --arch aarch64 --host-version 27.0 Tools.bundle
      The same for another machine and another version of the host.
  kestbundle check --format sarif . > findings.sarif
      For sites that show findings beside the code.
  kestbundle check --json Tools.bundle | jq -r '.bundles[].findings[] | select(.severity == "error") | .what'
      All errors, a line each.

Each finding has a code; docs/findings.md explains it.

Exit status: 0 no error (with --strict: no warning either), 1 findings, 2 wrong use, or a path that cannot be read.)";

constexpr char kFormats[] = "text, json, sarif";

/// Nobody's home folder: what a user has installed and set has no say.
constexpr char kNoHome[] = "/nonexistent";

bool isVersion(const std::string& text)
{
    const std::size_t point = std::min(text.find('.'), text.size());
    const auto isNumber = [](const std::string& digits) {
        return !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos;
    };
    return isNumber(text.substr(0, point)) && (point == text.size() || isNumber(text.substr(point + 1)));
}

/// "VERNUM" of the host asked for: this machine's, with the fields that were given.
std::wstring vernumOf(const CheckOptions& options)
{
    const std::wstring own = standalone::machineVernum();
    const std::size_t first = own.find(L'_');
    const std::size_t second = own.find(L'_', first + 1);
    const std::size_t third = own.find(L'_', second + 1);
    const auto given = [](const std::string& text, const std::wstring& other) {
        return text.empty() ? other : localetext::widen(text);
    };
    return given(options.hostVersion, own.substr(0, first)) + own.substr(first, second + 1 - first) +
           given(options.os, own.substr(second + 1, third - second - 1)) + L"_" +
           given(options.architecture, own.substr(third + 1));
}

standalone::HostSettings hostOf(const CheckOptions& options)
{
    if (::setenv("HOME", kNoHome, 1) != 0) {
        throw std::bad_alloc();
    }
    standalone::HostSettings settings;
    settings.programFolder = toolFolder();
    settings.engineFolder = libraryFolder();
    settings.configurationFile = kNoHome;
    settings.configurationFile += "/settings.sqlite";
    settings.vernum = vernumOf(options);
    settings.productName = localetext::widen(options.product);
    if (!options.architecture.empty()) {
        const std::optional<unsigned> machine = standalone::machineNumber(localetext::widen(options.architecture));
        if (!machine) {
            throw WrongUse("--arch: the machine \"" + shownLine(plainUtf8FromLocale(options.architecture)) +
                           "\" is not known; give what \"uname -m\" says on it, for example x86_64 or aarch64");
        }
        settings.machine = *machine;
    }
    return settings;
}

/// Says on a terminal how far it is, and leaves no trace of that.
class Progress
{
public:
    explicit Progress(std::size_t all) : count(all), isShown(all > 1 && ::isatty(STDERR_FILENO) == 1) {}
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress()
    {
        if (isShown) {
            std::fputs("\r\x1B[K", stderr);
        }
    }

    /// May be called from several threads at a time: the numbers come in order all the same.
    void showOneMore()
    {
        const std::lock_guard guard(turn);
        ++done;
        const std::size_t percent = done * 100 / count;
        if (isShown && percent > last) {
            last = percent;
            std::fprintf(stderr, "\r%zu of %zu bundles", done, count);
            std::fflush(stderr);
        }
    }

private:
    std::size_t count;
    bool isShown;
    std::mutex turn;
    std::size_t done = 0;
    std::size_t last = 0; ///< percentage that was shown
};

} // namespace

void addCheckCommand(CLI::App& app, Action& chosen)
{
    Subcommand check(app, "check", "Look through bundle folders before they are shipped");
    const auto options = std::make_shared<CheckOptions>();
    check.arguments("PATH", options->paths, "", "A bundle folder, or a folder of bundles", Presence::kRequired);
    check.text("--format", options->format, "FORM", "The form of the report: text, json or sarif (default: text)",
               [](const std::string& given) {
                   const bool isKnown = given == "text" || given == "json" || given == "sarif";
                   return isKnown ? std::string() : "--format must be one of " + std::string(kFormats);
               });
    check.flag("--json", options->isJson, "The same as --format json");
    check.flag("--strict", options->isStrict, "Count warnings as errors");
    check.text("--host-version", options->hostVersion, "VERSION",
               "Check for a host of this product version (default: the autoloader's own)");
    check.text("--os", options->os, "NAME", "Check for this operating system (default: this one)");
    check.text("--arch", options->architecture, "MACHINE", "Check for this machine (default: this one)");
    check.text("--product", options->product, "TEXT", "Check for this product (default: TARVIX)");
    check.footer(kCheckExamples);
    check.does(chosen, [options] { return cli::check(*options); });
}

int check(const CheckOptions& options)
{
    if (!options.hostVersion.empty() && !isVersion(options.hostVersion)) {
        throw WrongUse("--host-version: \"" + shownLine(plainUtf8FromLocale(options.hostVersion)) +
                       "\" is no product version; write one such as 26.0");
    }
    const CheckTargets targets(options.paths);
    const std::wstring version = localetext::widen(options.hostVersion);
    if (!version.empty()) {
        loading::productVersion = version.c_str();
    }
    const Examination examination = examineFolders(hostOf(options), targets.folders(), OtherBundles::kLoaded);
    if (!examination.failure.empty()) {
        throw WrongUse("the bundles cannot be examined: " + examination.failure);
    }
    Progress progress(examination.bundles.size());
    const unsigned machine = examination.host.machine;
    const CheckedBundles checked = checkBundles(examination, machine, [&] { progress.showOneMore(); });
    const bool isBad =
        countOf(checked, Severity::kError) > 0 || (options.isStrict && countOf(checked, Severity::kWarning) > 0);
    const int status = isBad ? kSomethingFailed : kAllWell;
    const CheckReport report{checked, targets, options.isStrict, status};
    if (options.isJson || options.format == "json") {
        printUtf8(stdout, checkJson(report));
    } else if (options.format == "sarif") {
        printUtf8(stdout, checkSarif(report));
    } else {
        print(stdout, checkText(report, hasColours()));
    }
    return status;
}

} // namespace cli
