#include "tests/faults/FaultPoint.h"

#include <cerrno>
#include <cstring>
#include <execinfo.h>
#include <pthread.h>
#include <unistd.h>

namespace faults {

namespace {

const Way* armed = nullptr;
long target = 0;
Progress* current = nullptr;
bool showsStack = false;
pthread_t thread;
thread_local int openings = 0;

} // namespace

void arm(const Way& way, long which, Progress& progress, bool isShown)
{
    void* warm[1];
    ::backtrace(warm, 1); // loads what it needs at its first use
    progress = Progress();
    current = &progress;
    target = which;
    showsStack = isShown;
    thread = ::pthread_self(); // engines have threads that count differently in each run
    armed = &way;
}

void disarm() noexcept
{
    armed = nullptr;
}

MemoryAtHand::MemoryAtHand() noexcept
{
    ++openings;
}

MemoryAtHand::~MemoryAtHand()
{
    --openings;
}

const Way* strike(Kind kind, const char* call) noexcept
{
    const Way* const way = armed;
    if (way == nullptr || way->kind != kind || ::pthread_equal(thread, ::pthread_self()) == 0) {
        return nullptr;
    }
    if (kind == Kind::kNew && openings > 0) {
        return nullptr;
    }
    const long number = ++current->calls;
    if (target == 0 || number < target || (number > target && !way->isLasting)) {
        return nullptr;
    }
    if (++current->strikes == 1) {
        std::strncpy(current->call, call, sizeof current->call - 1);
        if (showsStack) {
            armed = nullptr; // what shows it makes calls itself
            void* frames[40];
            ::backtrace_symbols_fd(frames, ::backtrace(frames, 40), STDERR_FILENO);
            armed = way;
        }
    }
    if (way->error != 0) {
        errno = way->error;
    }
    return way;
}

} // namespace faults
