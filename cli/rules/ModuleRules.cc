#include "cli/rules/ModuleRules.h"

#include "cli/ReportLines.h"
#include "cli/rules/FileRules.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "loading/ModuleKind.h"
#include "manifest/BundleStrConst.h"
#include "standalone/AssemblyFile.h"
#include "standalone/ModuleFile.h"
#include "standalone/ModuleImage.h"
#include "standalone/Utf8.h"
#include "standalone/WholeFile.h"

#include <algorithm>
#include <optional>

namespace cli {

namespace {

/// "a", "a and b", "a, b, c and 4 more".
std::string listed(const std::vector<std::string>& names)
{
    constexpr std::size_t kMostListed = 5;
    std::string text;
    for (std::size_t index = 0; index < std::min(names.size(), kMostListed); ++index) {
        text += (index == 0 ? "" : ", ") + quoted(abridged(names[index]));
    }
    return names.size() > kMostListed ? text + " and " + std::to_string(names.size() - kMostListed) + " more" : text;
}

/// Where a text is none that an engine could read.
struct TextFault
{
    int line = 0; ///< 0: nowhere
    const char* what = "";
};

TextFault faultOf(std::string_view text)
{
    int line = 1;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = standalone::nextCodePoint(text, at);
        if (code == standalone::kNotUtf8 || code == 0) {
            return {line, code == 0 ? "a zero byte" : "bytes that are no UTF-8"};
        }
        line += code == U'\n' ? 1 : 0;
    }
    return {};
}

/// Whether a Python script says in one of its first two lines that it has an encoding of its own.
bool declaresEncoding(std::string_view script)
{
    const std::size_t first = script.find('\n');
    const std::size_t second = first == std::string_view::npos ? first : script.find('\n', first + 1);
    const std::string_view head = script.substr(0, second);
    return head.find("coding:") != std::string_view::npos || head.find("coding=") != std::string_view::npos;
}

bool endsWith(std::wstring_view path, std::wstring_view extension)
{
    return path.size() >= extension.size() &&
           localetext::equalIgnoringCase(path.substr(path.size() - extension.size()), extension);
}

/// One component whose file can be read.
class ModuleCheck
{
public:
    ModuleCheck(const LintInput& given, std::size_t component, Findings& all)
        : input(given),
          index(component),
          path(given.bundle.components[component].record.moduleName),
          file(localetext::narrow(path)),
          name(named(inBundle(given.bundle, path))),
          findings(all)
    {
    }

    void run()
    {
        switch (moduleKindOf(path)) {
        case ModuleKind::kNative:
            judgeNative();
            break;
        case ModuleKind::kManaged:
            if (const std::string problem = standalone::problemOfAssembly(file); !problem.empty()) {
                add(kNotAnAssembly, "The managed component " + name + " cannot be loaded: " + problem + ".",
                    "Name the assembly that the compiler made.");
            }
            break;
        case ModuleKind::kPython:
        case ModuleKind::kLisp:
            judgeScript();
            break;
        case ModuleKind::kOther:
            break;
        }
    }

private:
    void judgeNative()
    {
        const unsigned wanted = input.machine != 0 ? input.machine : standalone::ownMachine();
        const std::optional<unsigned> machine = standalone::machineOfFile(file);
        if (machine && *machine != wanted) {
            add(kOtherMachine,
                "The module " + name + " is made for " + standalone::machineName(*machine) + ", and not for " +
                    standalone::machineName(wanted) + ".",
                "Build it for this machine, or give RuntimeRequirements its Architecture.");
            findings.back().expected = standalone::machineName(wanted);
            findings.back().found = standalone::machineName(*machine);
            return;
        }
        if (!machine) {
            add(kNotAModule, "The file " + name + " is no native module: it does not begin like an ELF file.",
                "Name the shared object that the linker made.");
        } else if (wanted == standalone::ownMachine()) {
            judgeImage(standalone::examineModule(file, input.modules));
        }
    }

    void judgeImage(const standalone::ModuleImage& image)
    {
        if (!image.problem.empty()) {
            add(kNotAModule, "The module " + name + " cannot be loaded: " + image.problem + ".",
                "Build it anew, as a shared object.");
            return;
        }
        if (!image.missingLibraries.empty()) {
            const bool isModule = endsWith(localetext::widen(image.missingLibraries.front()), L".krx");
            add(kMissingLibrary,
                "The module " + name + " needs " + listed(image.missingLibraries) + ", which cannot be found.",
                isModule ? "Depend on the bundle that brings this module, and check both together."
                         : "Ship the library in the bundle and link the module with the run path \"$ORIGIN\", or have "
                           "it installed.");
        }
        if (!image.undefinedSymbols.empty()) {
            add(kUndefinedSymbol,
                "The module " + name + " asks for " + listed(image.undefinedSymbols) +
                    ", which neither the stand-alone host nor the libraries that it needs offer.",
                "Link the module with the library that defines it.");
        }
        if (!image.hasEntry) {
            add(kNoModuleEntry, "The module " + name + " does not export \"kestModuleEntry\", so it cannot be loaded.",
                "Define the function extern \"C\", with default visibility.");
        }
    }

    void judgeScript()
    {
        constexpr std::size_t kLargest = std::size_t{16} << 20;
        std::string text;
        const bool isPython = endsWith(path, L".py");
        const bool isText = isPython || endsWith(path, L".lsp"); // the others may be compiled ones
        if (!isText || !standalone::readWholeFile(file, kLargest, text).empty() ||
            (isPython && declaresEncoding(text))) {
            return;
        }
        if (const TextFault fault = faultOf(text); fault.line != 0) {
            add(kScriptEncoding,
                "The script " + name + " is no plain text: line " + std::to_string(fault.line) + " has " + fault.what +
                    ".",
                "Save the file as UTF-8.");
            findings.back().place = Place{path, fault.line, 0};
        }
    }

    void add(const Rule& rule, std::string what, std::string mend)
    {
        const auto& components = input.reading.components;
        const std::size_t element = index < components.size() ? components[index].entry : ManifestElement::kNone;
        Finding finding = findingAt(rule, input, element, BundleStrConst::entry_ModuleName, std::move(what));
        finding.subject = path;
        finding.mend = std::move(mend);
        findings.push_back(std::move(finding));
    }

    const LintInput& input;
    std::size_t index;
    std::wstring path;
    std::string file; ///< narrow
    std::string name; ///< for sentences
    Findings& findings;
};

} // namespace

std::vector<const Rule*> moduleRules()
{
    return {&kOtherMachine,  &kNotAModule,    &kMissingLibrary, &kUndefinedSymbol,
            &kNoModuleEntry, &kNotAnAssembly, &kScriptEncoding};
}

void addModuleFindings(const LintInput& input, Findings& findings)
{
    for (std::size_t index = 0; index < input.bundle.components.size(); ++index) {
        if (isFileThere(input, index)) {
            ModuleCheck(input, index, findings).run();
        }
    }
}

} // namespace cli
