#include "engines/lisp/StackGuard.h"

#include <ecl/ecl.h>

#include <array>
#include <cstdint>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace engines {

namespace {

constexpr std::size_t kKibi = 1024;

/// How far beyond the end of the stack an access counts as one of the stack.
constexpr std::size_t kBeyond = 1024 * kKibi;

/// And how far before it: ends are rounded to pages.
constexpr std::size_t kBefore = 16 * kKibi;

/// What the stack grows by where LISP cannot be left at once: an allocation ends within that.
constexpr rlim_t kGrowth = 256 * kKibi;

struct sigaction hostsAction;
pthread_t lispThread;
char* stackTop;
char* stackEnd; ///< of a thread that has a stack of fixed size; null for the first one, whose stack grows
alignas(16) std::array<char, 64 * kKibi> signalStack;

bool isAtEndOfStack(const void* address)
{
    const char* end = stackEnd;
    if (end == nullptr) {
        rlimit now{};
        ::getrlimit(RLIMIT_STACK, &now);
        if (now.rlim_cur == RLIM_INFINITY) {
            return false;
        }
        end = stackTop - now.rlim_cur;
    }
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    const auto limit = reinterpret_cast<std::uintptr_t>(end);
    return at + kBeyond >= limit && at < limit + kBefore;
}

bool growStack()
{
    rlimit now{};
    ::getrlimit(RLIMIT_STACK, &now);
    now.rlim_cur += kGrowth;
    return stackEnd == nullptr && ::setrlimit(RLIMIT_STACK, &now) == 0;
}

/// Jumps to where the host's call in LISP began, if it is in one.
void leaveLisp(cl_env_ptr environment)
{
    const cl_object tag = ecl_symbol_value(ecl_make_symbol("*TAG*", "KEST-HOST"));
    ecl_frame* frame = frs_sch(tag);
    if (frame != nullptr) {
        const cl_object failure = ecl_symbol_value(ecl_make_symbol("*STACK-FULL*", "KEST-HOST"));
        ECL_RPLACA(ECL_CONS_CDR(failure), ecl_symbol_value(ecl_make_symbol("*PLACE*", "KEST-HOST")));
        environment->values[0] = failure;
        environment->nvalues = 1;
        ecl_unwind(environment, frame);
    }
}

void onFault(int number, siginfo_t* information, void* /*context*/)
{
    if (::pthread_equal(lispThread, ::pthread_self()) != 0 && isAtEndOfStack(information->si_addr)) {
        const cl_env_ptr environment = ecl_process_env();
        // In the middle of an allocation the heap is not in order: on to its end.
        if (environment->disable_interrupts == 0) {
            leaveLisp(environment);
        } else if (growStack()) {
            return;
        }
    }
    ::sigaction(number, &hostsAction, nullptr); // the access is made again, and the host has its say
}

} // namespace

StackGuard::StackGuard() : before(hostsAction)
{
    struct sigaction now
    {
    };
    ::sigaction(SIGSEGV, nullptr, &now);
    if ((now.sa_flags & SA_SIGINFO) == 0 || now.sa_sigaction != &onFault) {
        hostsAction = now;
    }
    ::getrlimit(RLIMIT_STACK, &limit);
}

StackGuard::~StackGuard()
{
    ::setrlimit(RLIMIT_STACK, &limit);
    hostsAction = before;
}

void StackGuard::install()
{
    lispThread = ::pthread_self();
    pthread_attr_t attributes;
    void* lowest = nullptr;
    std::size_t size = 0;
    if (::pthread_getattr_np(lispThread, &attributes) != 0) {
        return;
    }
    ::pthread_attr_getstack(&attributes, &lowest, &size);
    ::pthread_attr_destroy(&attributes);
    rlimit limit{};
    ::getrlimit(RLIMIT_STACK, &limit);
    // Not `size`: it leaves out what the system has put on the stack first.
    stackTop = static_cast<char*>(lowest) + limit.rlim_cur;
    stackEnd = ::syscall(SYS_gettid) == ::getpid() ? nullptr : static_cast<char*>(lowest);
    stack_t stack{};
    stack.ss_sp = signalStack.data();
    stack.ss_size = signalStack.size();
    ::sigaltstack(&stack, nullptr);
    struct sigaction action
    {
    };
    action.sa_sigaction = &onFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER; // the handler is left by a jump
    ::sigaction(SIGSEGV, &action, nullptr);
}

} // namespace engines
