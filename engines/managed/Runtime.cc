#include "engines/managed/Runtime.h"

#include "engines/EnvironmentVariable.h"
#include "engines/managed/Guest.h"
#include "engines/managed/Text.h"

#include <mono/jit/jit.h>
#include <mono/metadata/assembly.h>
#include <mono/metadata/mono-config.h>
#include <mono/metadata/threads.h>
#include <mono/utils/mono-logger.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <unistd.h>

namespace engines {

extern const unsigned char kestAssembly[];
extern const std::size_t kestAssemblySize;

namespace {

/// What of the assembly "Kest" is called from here. Null before the start.
struct Entries
{
    MonoDomain* domain = nullptr;
    MonoMethod* start = nullptr;
    MonoMethod* load = nullptr;
    MonoMethod* run = nullptr;
    MonoMethod* endingOf = nullptr;
    MonoMethod* failureOf = nullptr;
};
Entries entries;

/// An unhandled exception in a thread of an assembly ends the thread, not the process.
constexpr char kConfiguration[] =
    R"(<configuration><runtime><legacyUnhandledExceptionPolicy enabled="1"/></runtime></configuration>)";

void logMessage(const char* /*domain*/, const char* level, const char* message, mono_bool isFatal, void* /*data*/)
{
    if (isFatal != 0) {
        std::abort(); // the runtime counts on it
    }
    printForManaged(std::string("managed (") + level + "): " + message + "\n");
}

/// What keeps the runtime from starting: it would end the process.
std::string startProblem()
{
    mono_set_dirs(nullptr, nullptr); // the installed ones
    const std::string library = frameworkFolder() + "/mscorlib.dll";
    return ::access(library.c_str(), R_OK) == 0
               ? ""
               : library + " cannot be read (the package libmono-corlib4.5-dll may be missing)";
}

MonoMethod* methodOf(MonoImage* image, const char* type, const char* method, int parameters)
{
    MonoClass* found = mono_class_from_name(image, "KestEngine", type);
    return mono_class_get_method_from_name(found, method, parameters);
}

MonoImage* openKest()
{
    MonoImageOpenStatus status = MONO_IMAGE_OK;
    // The bytes live as long as the process, so they need no copy; the runtime only reads them.
    auto* const bytes = const_cast<unsigned char*>(kestAssembly); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    MonoImage* image = mono_image_open_from_data_with_name(
        reinterpret_cast<char*>(bytes), static_cast<std::uint32_t>(kestAssemblySize), 0, &status, 0, "Kest.dll");
    mono_assembly_load_from_full(image, "Kest.dll", &status, 0);
    return image;
}

/// Calls `method`; `exception` receives what leaves it.
MonoObject* invoke(MonoMethod* method, void** arguments, MonoObject*& exception)
{
    return mono_runtime_invoke(method, nullptr, arguments, &exception);
}

/// Calls `method`, which guards itself and returns a ManagedProblem.
ManagedProblem runGuarded(MonoMethod* method, void** arguments)
{
    mono_thread_attach(entries.domain);
    MonoObject* exception = nullptr;
    MonoObject* problem = invoke(method, arguments, exception);
    if (exception != nullptr) { // memory or stack has run out in the guard itself
        return std::string(mono_class_get_name(mono_object_get_class(exception))) + " in the managed engine";
    }
    if (problem == nullptr) {
        return std::nullopt;
    }
    return utf8Of(reinterpret_cast<MonoString*>(problem));
}

MonoException* exceptionFrom(MonoMethod* method, void** arguments)
{
    MonoObject* exception = nullptr;
    MonoObject* made = invoke(method, arguments, exception);
    return reinterpret_cast<MonoException*>(exception != nullptr ? exception : made);
}

std::string runtimeVersion()
{
    char* text = mono_get_runtime_build_info();
    const std::string version(text); // "6.8.0.105 (Debian ...)"
    mono_free(text);
    return version.substr(0, version.find(' '));
}

/// The runtime's own helper libraries look for its functions among the global symbols.
void makeRuntimeGlobal()
{
    Dl_info found{};
    if (::dladdr(reinterpret_cast<const void*>(&mono_jit_init_version), &found) != 0) {
        ::dlopen(found.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL); // stays: the process ends with it
    }
}

void boot()
{
    makeRuntimeGlobal();
    const EnvironmentVariable suspend("MONO_THREADS_SUSPEND", "preemptive"); // otherwise some calls abort
    // A null reference in a thread or a finalizer is found by a comparison, not by SIGSEGV, which may just be the
    // host's; a crash starts no debugger.
    const EnvironmentVariable debug("MONO_DEBUG", "explicit-null-checks,no-gdb-backtrace");
    mono_trace_set_log_handler(&logMessage, nullptr);
    mono_set_signal_chaining(1);
    mono_set_crash_chaining(1);
    mono_config_parse(nullptr);
    mono_config_parse_memory(kConfiguration);
    entries.domain = mono_jit_init_version("kest", "v4.0.30319");
    mono_thread_set_main(mono_thread_current());
    addManagedCallbacks();
    MonoImage* image = openKest();
    entries.start = methodOf(image, "Guard", "Start", 0);
    entries.load = methodOf(image, "Loader", "Load", 2);
    entries.run = methodOf(image, "Commands", "Run", 1);
    entries.endingOf = methodOf(image, "Guard", "EndingOf", 1);
    entries.failureOf = methodOf(image, "Guard", "FailureOf", 1);
    MonoObject* exception = nullptr;
    invoke(entries.start, nullptr, exception);
}

} // namespace

std::string frameworkFolder()
{
    const char* root = mono_assembly_getrootdir();
    return std::string(root != nullptr ? root : "") + "/mono/4.5";
}

std::string startRuntime()
{
    if (entries.domain != nullptr) {
        return "";
    }
    std::string problem = startProblem();
    if (!problem.empty()) {
        return problem;
    }
    const auto begin = std::chrono::steady_clock::now();
    boot();
    const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - begin;
    if (KestEngineHost* host = kestEngineHost()) {
        host->engineStarted("managed (Mono " + runtimeVersion() + ")", passed.count());
    }
    return "";
}

ManagedProblem loadAssembly(const std::string& path, const std::string& opened)
{
    mono_thread_attach(entries.domain);
    MonoString* text = path == repairedUtf8(path) ? mono_string_new(entries.domain, path.c_str()) : nullptr;
    std::array<void*, 2> arguments{text, mono_string_new(entries.domain, opened.c_str())};
    return runGuarded(entries.load, arguments.data());
}

std::string runManagedCommand(int number)
{
    const ManagedVisit visit;
    std::array<void*, 1> arguments{&number};
    const ManagedProblem problem = runGuarded(entries.run, arguments.data());
    if (!problem) {
        return "";
    }
    printForManaged(*problem + "\n");
    return problem->substr(0, problem->find('\n'));
}

MonoException* endingOfProcess(std::int32_t status)
{
    std::array<void*, 1> arguments{&status};
    return exceptionFrom(entries.endingOf, arguments.data());
}

MonoException* failureOfProcess(MonoString* message)
{
    std::array<void*, 1> arguments{message};
    return exceptionFrom(entries.failureOf, arguments.data());
}

} // namespace engines
