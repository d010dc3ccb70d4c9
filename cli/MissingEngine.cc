#include "cli/MissingEngine.h"

#include "standalone/DynamicLinker.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <dlfcn.h>
#include <iterator>

namespace cli {

namespace {

/// A library that others need, and what to do when it is not there.
struct Remedy
{
    std::string_view library;
    std::string_view remedy;
};

constexpr Remedy kRemedies[] = {
    {"libecl.so.21.2", "install the Debian package libecl21.2"},
    {"libmonosgen-2.0.so.1", "install the Debian package libmonosgen-2.0-1"},
    {"libKestLispEvaluator.so", "this installation of kestbundle lacks its engine for LISP files"},
    {"libVxPythonLoad.so", "this installation of kestbundle lacks its engine for Python scripts"},
    {"VxManagedCommand.dll", "this installation of kestbundle lacks its engine for managed assemblies"},
};

/// "libpython3.N.so", by which scripts ask for Python, comes with the development package only. Empty text for any
/// other library.
std::string pythonRemedy(std::string_view library)
{
    constexpr std::string_view kBegin = "libpython3.";
    constexpr std::string_view kEnd = ".so";
    if (!library.starts_with(kBegin) || !library.ends_with(kEnd) || library.size() <= kBegin.size() + kEnd.size()) {
        return "";
    }
    library.remove_suffix(kEnd.size());
    const bool isVersion = library.substr(kBegin.size()).find_first_not_of("0123456789") == std::string_view::npos;
    return isVersion ? "install the Debian package " + std::string(library) + "-dev" : "";
}

std::string remedyFor(std::string_view library)
{
    const auto* known = std::find_if(std::begin(kRemedies), std::end(kRemedies),
                                     [&](const Remedy& one) { return one.library == library; });
    return known != std::end(kRemedies) ? std::string(known->remedy) : pythonRemedy(library);
}

/// Opens `name` as the autoloader does and closes it again. Returns why that failed, or empty text.
std::string problemOfOpening(const std::string& name, const char* exported = nullptr)
{
    void* library = ::dlopen(name.c_str(), RTLD_LAZY);
    if (library == nullptr) {
        const char* const text = ::dlerror(); // none where the host only rehearses and has looked for the file itself
        return text != nullptr ? standalone::displayable(std::string_view(text))
                               : standalone::displayable(std::string_view(name)) + ": no such library is installed";
    }
    const bool isComplete = exported == nullptr || ::dlsym(library, exported) != nullptr;
    std::string problem = isComplete ? "" : standalone::dynamicLoadingReason();
    ::dlclose(library);
    return problem;
}

} // namespace

std::string withRemedy(std::string problem)
{
    // The dynamic linker names a library that it has not found without a folder, and a damaged one with it.
    for (std::size_t end = problem.find(": "); end != std::string::npos; end = problem.find(": ", end + 1)) {
        const std::size_t before = problem.find_last_of(" (", end);
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        if (const std::string remedy = remedyFor(std::string_view(problem).substr(begin, end - begin));
            !remedy.empty()) {
            problem.append("; ").append(remedy);
            break;
        }
    }
    return problem;
}

std::string pythonProblem(const std::string& version)
{
    constexpr char kForm[] = "PythonVersion is the name of an installed Python, for example python3.11";
    if (version.find('/') != std::string::npos) { // led to another file from the script's folder than from here
        return std::string("its PythonVersion is a path; ") + kForm;
    }
    const std::string first = problemOfOpening("lib" + version + ".so");
    const std::string second = first.empty() ? "" : problemOfOpening("lib" + version + "m.so");
    if (!first.empty() && !second.empty()) {
        const std::string problem = "no library of its PythonVersion can be opened (" + first + "; " + second + ")";
        const std::string remedied = withRemedy(problem);
        return remedied != problem ? remedied : problem + "; " + kForm;
    }
    if (const std::string engine = problemOfOpening("libVxPythonLoad.so", "loadPythonFile"); !engine.empty()) {
        return withRemedy("the Python engine cannot be used: " + engine);
    }
    return "the Python engine gave no reason";
}

} // namespace cli
