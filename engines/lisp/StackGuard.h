// Keeps endless recursion in LISP's compiled functions from ending the process. Most of LISP looks at the stack by
// itself; EQUAL, COPY-TREE and others run on until the processor stops them.
#pragma once

#include <csignal>
#include <sys/resource.h>

namespace engines {

/// Watches over one visit in LISP. Lives longer than the Visit, so that it knows the host's handling of the signal and
/// puts back the limit of the stack, which is raised where LISP cannot be left at once.
class StackGuard
{
public:
    StackGuard();
    StackGuard(const StackGuard&) = delete;
    StackGuard& operator=(const StackGuard&) = delete;
    ~StackGuard();

    /// Takes the signal over, once, on the thread that LISP was booted on. From then on the engine's Visit does.
    static void install();

private:
    struct sigaction before
    {
    }; ///< of the guard around this one
    rlimit limit{};
};

} // namespace engines
