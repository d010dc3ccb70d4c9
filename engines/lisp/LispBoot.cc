#include "engines/lisp/LispBoot.h"

#include "engines/EnvironmentVariable.h"
#include "engines/lisp/HostFunctions.h"
#include "engines/lisp/LispText.h"
#include "engines/lisp/StackGuard.h"

#include <csignal>
#include <gc/gc.h>
#include <sys/resource.h>

namespace engines {

extern const unsigned char kLispWorld[];
extern const std::size_t kLispWorldSize;

namespace {

constexpr std::size_t kMebi = std::size_t{1} << 20;

/// What remains of the stack when LISP says that it is full: for the handling of that, and for the collector.
constexpr std::size_t kStackReserve = 2 * kMebi;

/// So that a script that fills the memory fails by itself, before the host does.
constexpr std::size_t kHeapLimit = 1024 * kMebi;

void chooseOptions()
{
    for (const int option : {ECL_OPT_INCREMENTAL_GC, ECL_OPT_TRAP_SIGSEGV, ECL_OPT_TRAP_SIGINT, ECL_OPT_TRAP_SIGILL,
                             ECL_OPT_TRAP_SIGBUS, ECL_OPT_TRAP_SIGPIPE, ECL_OPT_TRAP_INTERRUPT_SIGNAL,
                             ECL_OPT_SIGNAL_HANDLING_THREAD, ECL_OPT_SET_GMP_MEMORY_FUNCTIONS}) {
        ecl_set_option(option, 0);
    }
    ecl_set_option(ECL_OPT_C_STACK_SAFETY_AREA, static_cast<cl_fixnum>(kStackReserve));
    ecl_set_option(ECL_OPT_HEAP_SIZE, static_cast<cl_fixnum>(kHeapLimit));
    // The usual ones of the collector are another collector's as well.
    GC_set_suspend_signal(SIGRTMIN + 6);
    GC_set_thr_restart_signal(SIGRTMIN + 7);
}

/// One form after the other: later ones are read in the package that earlier ones make.
bool defineWorld()
{
    volatile bool isDefined = false;
    const cl_env_ptr environment = ecl_process_env();
    ECL_CATCH_ALL_BEGIN(environment)
    {
        const cl_object input = ecl_make_string_input_stream(
            lispText(reinterpret_cast<const char*>(kLispWorld), kLispWorldSize), 0, kLispWorldSize);
        const cl_object package = ecl_symbol_value(ecl_make_symbol("*PACKAGE*", "CL"));
        const cl_object end = ecl_make_symbol("END-OF-WORLD", "CL-USER");
        bool hasFunctions = false;
        for (;;) {
            const cl_object form = cl_read(3, input, ECL_NIL, end);
            if (form == end) {
                break;
            }
            cl_eval(form);
            if (!hasFunctions) {
                defineHostFunctions(); // the first form made their package
                hasFunctions = true;
            }
        }
        cl_set(ecl_make_symbol("*PACKAGE*", "CL"), package);
        isDefined = true;
    }
    ECL_CATCH_ALL_END;
    return isDefined;
}

} // namespace

bool bootLisp()
{
    chooseOptions();
    {
        const EnvironmentVariable oneMarker("GC_MARKERS", "1"); // no threads of the collector
        static char name[] = "kest";
        static char* arguments[] = {name, nullptr};
        cl_boot(1, arguments);
    }
    StackGuard::install();
    return defineWorld();
}

} // namespace engines
