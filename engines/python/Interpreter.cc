#include "engines/python/Interpreter.h"

#include "engines/python/StartEnvironment.h"

#include "host/EngineHost.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace engines {

extern const unsigned char kPythonRuntime[]; // made from kest_engine.py

namespace {

constexpr int kOldestMinor = 8; ///< of Python 3

/// Version "3.11.2" of the text "3.11.2 (main, ...) [GCC ...]".
std::string versionIn(std::string_view text)
{
    return std::string(text.substr(0, text.find(' ')));
}

} // namespace

/// The interpreter's lock, and the host's ear, for one call into Python.
class Interpreter::Turn
{
public:
    explicit Turn(Interpreter& turned) : interpreter(turned), before(turned.visitor), state(turned.api.gilEnsure())
    {
        interpreter.visitor = std::this_thread::get_id();
        tellPrintedApart();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn()
    {
        tellPrintedApart();
        interpreter.visitor = before;
        interpreter.api.gilRelease(state);
    }

private:
    void tellPrintedApart()
    {
        KestEngineHost* host = kestEngineHost();
        if (host != nullptr && !interpreter.printedApart.empty()) {
            host->print(std::exchange(interpreter.printedApart, {}));
        }
    }

    Interpreter& interpreter;
    std::thread::id before;
    int state;
};

Interpreter& Interpreter::current()
{
    static auto* theOne = new Interpreter; // never destroyed: threads of scripts outlive everything
    return *theOne;
}

std::string Interpreter::start(const std::string& name)
{
    if (isRunning && name == library) {
        return "";
    }
    if (!startProblem.empty()) {
        return startProblem;
    }
    PythonApi asked;
    if (std::string problem = asked.open(name); !problem.empty()) {
        return problem;
    }
    if (isRunning) {
        return asked.getVersion == api.getVersion
                   ? ""
                   : name + " cannot be used: the process runs Python " + versionIn(api.getVersion()) + " of " +
                         library + " already, and there is room for one";
    }
    api = asked;
    library = name;
    std::string problem = boot();
    isRunning = problem.empty();
    return problem;
}

std::string Interpreter::boot()
{
    if (api.isInitialized() != 0) {
        return "the process has started Python already, and not through this engine";
    }
    const auto begin = std::chrono::steady_clock::now();
    const std::string version = versionIn(api.getVersion());
    int minor = 0;
    // NOLINTNEXTLINE(cert-err34-c): it cannot be out of range
    if (std::sscanf(version.c_str(), "3.%d", &minor) != 1 || minor < kOldestMinor) {
        return library + " is Python " + version + "; 3." + std::to_string(kOldestMinor) + " or later is needed";
    }
    const StandardLibrary standardLibrary = findStandardLibrary(api.libraryFile(), version);
    if (!standardLibrary.problem.empty()) {
        return standardLibrary.problem; // Python itself would end the process
    }
    std::string problem;
    {
        const StartEnvironment environment(standardLibrary.home);
        if (api.utf8Mode != nullptr) {
            *api.utf8Mode = 1; // texts and file names are UTF-8 whatever the locale is
        }
        api.initializeEx(0);
        visitor = std::this_thread::get_id();
        problem = defineRuntime(environment.changes());
        visitor = {};
        api.saveThread();
    }
    startProblem = problem;
    if (KestEngineHost* host = kestEngineHost(); host != nullptr && problem.empty()) {
        const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - begin;
        host->engineStarted("Python " + version, passed.count());
    }
    std::atexit([] { Interpreter::current().end(); });
    return problem;
}

std::string Interpreter::defineRuntime(const std::string& environment)
{
    static PyMethod methods[] = {
        {"host_print", &Interpreter::print, kPyOneArgument, nullptr},
        {"host_register", &Interpreter::registerCommand, kPyArguments, nullptr},
        {"host_version", &Interpreter::hostVersion, kPyNoArguments, nullptr},
    };
    constexpr char kName[] = "kest_engine";
    PyObject* const names = api.moduleDict(api.addModule(kName));
    for (PyMethod& method : methods) {
        PyObject* function = api.functionNew(&method, nullptr, nullptr);
        api.dictSet(names, method.name, function);
        api.decRef(function);
    }
    PyObject* const builtins = api.addModule("builtins");
    api.dictSet(names, "__builtins__", builtins);
    PyObject* const code = api.compile(reinterpret_cast<const char*>(kPythonRuntime), kName, kPyFileInput);
    PyObject* const result = code != nullptr ? api.evalCode(code, names, names) : nullptr;
    PyObject* const bootFunction = result != nullptr ? api.dictGet(names, "boot") : nullptr;
    PyObject* const text = api.bytesFromString(environment.data(), static_cast<std::ptrdiff_t>(environment.size()));
    PyObject* const booted = bootFunction != nullptr ? api.callFunction(bootFunction, "O", text) : nullptr;
    if (booted == nullptr) {
        api.errorPrint(); // to the standard error of the process: there is no console yet
        return "the start of Python " + versionIn(api.getVersion()) + " failed: its standard library is incomplete";
    }
    loadFunction = api.dictGet(names, "load");
    runFunction = api.dictGet(names, "run_command");
    endFunction = api.dictGet(names, "end");
    for (PyObject* object : {loadFunction, runFunction, endFunction}) {
        api.incRef(object); // a script can take them out of the module
    }
    for (PyObject* object : {code, result, text, booted}) {
        api.decRef(object);
    }
    return "";
}

std::string Interpreter::load(const std::string& path)
{
    const Turn turn(*this);
    PyObject* const bytes = api.bytesFromString(path.data(), static_cast<std::ptrdiff_t>(path.size()));
    std::string problem = problemIn(api.callFunction(loadFunction, "O", bytes));
    api.decRef(bytes);
    return problem;
}

std::string Interpreter::runCommand(int number)
{
    const Turn turn(*this);
    return problemIn(api.callFunction(runFunction, "i", number));
}

void Interpreter::end()
{
    if (!isRunning) {
        return;
    }
    api.gilEnsure(); // never released: threads of scripts must not run into what is being torn down
    visitor = std::this_thread::get_id();
    if (PyObject* result = api.callFunction(endFunction, nullptr); result != nullptr) {
        api.decRef(result);
    } else {
        api.errorClear();
    }
    std::fwrite(printedApart.data(), 1, printedApart.size(), stderr);
}

/// What a function of the runtime returned: nothing, or bytes that say what went wrong.
std::string Interpreter::problemIn(PyObject* result)
{
    if (result == nullptr) {
        api.errorClear();
        return "the engine itself failed: a script has damaged what it needs of Python";
    }
    char* text = nullptr;
    std::ptrdiff_t size = 0;
    std::string problem;
    if (api.bytesAsString(result, &text, &size) == 0) {
        problem.assign(text, static_cast<std::size_t>(size));
    } else {
        api.errorClear(); // it is None
    }
    api.decRef(result);
    return problem;
}

PyObject* Interpreter::print(PyObject* /*self*/, PyObject* bytes)
{
    Interpreter& interpreter = current();
    char* text = nullptr;
    std::ptrdiff_t size = 0;
    if (interpreter.api.bytesAsString(bytes, &text, &size) != 0) {
        return nullptr;
    }
    const std::string printed(text, static_cast<std::size_t>(size));
    KestEngineHost* host = kestEngineHost();
    if (interpreter.visitor != std::this_thread::get_id()) {
        interpreter.printedApart += printed;
    } else if (host != nullptr) {
        host->print(printed);
    } else {
        std::fwrite(printed.data(), 1, printed.size(), stderr); // the process is ending
    }
    return interpreter.api.longFrom(0);
}

PyObject* Interpreter::registerCommand(PyObject* /*self*/, PyObject* arguments)
{
    Interpreter& interpreter = current();
    char* name = nullptr;
    std::ptrdiff_t size = 0;
    if (interpreter.api.bytesAsString(interpreter.api.tupleItem(arguments, 0), &name, &size) != 0) {
        return nullptr;
    }
    const auto number = static_cast<int>(interpreter.api.longAs(interpreter.api.tupleItem(arguments, 1)));
    KestEngineHost* host = kestEngineHost();
    const bool mayAsk = host != nullptr && interpreter.visitor == std::this_thread::get_id();
    const auto run = [](int asked) {
        const Visit visit(pythonGuest());
        return current().runCommand(asked);
    };
    const bool isAccepted =
        mayAsk && host->registerCommand(std::string(name, static_cast<std::size_t>(size)), run, number);
    return interpreter.api.longFrom(isAccepted ? 1 : 0);
}

PyObject* Interpreter::hostVersion(PyObject* /*self*/, PyObject* /*nothing*/)
{
    KestEngineHost* host = kestEngineHost();
    const std::string version = host != nullptr ? host->versionText() : "";
    return current().api.bytesFromString(version.data(), static_cast<std::ptrdiff_t>(version.size()));
}

GuestState& pythonGuest()
{
    static GuestState theOne;
    return theOne;
}

} // namespace engines
