#include "engines/Visit.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

namespace engines {

namespace {

bool isSameHandling(const struct sigaction& one, const struct sigaction& other)
{
    return one.sa_handler == other.sa_handler && one.sa_flags == other.sa_flags;
}

bool isSameStack(const stack_t& one, const stack_t& other)
{
    return one.ss_sp == other.ss_sp && one.ss_size == other.ss_size && one.ss_flags == other.ss_flags;
}

/// The first descriptor that is not one of a standard stream.
constexpr int kFirstOther = 3;

/// The working directory, never in the place of a standard stream that is closed; -1: it is gone.
int openedFolder()
{
    const int opened = ::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0 || opened >= kFirstOther) {
        return opened;
    }
    const int moved = ::fcntl(opened, F_DUPFD_CLOEXEC, kFirstOther);
    ::close(opened);
    return moved;
}

constexpr std::array kTimers{ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF};

bool isArmed(const itimerval& timer)
{
    return timer.it_value.tv_sec != 0 || timer.it_value.tv_usec != 0;
}

/// There is nobody to ask, neither for a script nor for the processes that it starts.
void endInput()
{
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing > STDIN_FILENO) {
        ::dup2(nothing, STDIN_FILENO);
        ::close(nothing);
    } else if (nothing == STDIN_FILENO) {
        ::fcntl(nothing, F_SETFD, 0);
    }
}

} // namespace

Visit::Visit(GuestState& visited)
    : guest(visited),
      locale(std::setlocale(LC_ALL, nullptr)),
      threadLocale(::uselocale(nullptr)),
      folder(openedFolder())
{
    for (int number = 0; number < kFirstOther; ++number) {
        Stream& stream = streams.at(static_cast<std::size_t>(number));
        stream.copy = ::fcntl(number, F_DUPFD_CLOEXEC, kFirstOther);
        stream.wasClosed = stream.copy < 0 && errno == EBADF; // and not that descriptors have run out
        stream.status = ::fcntl(number, F_GETFL);
    }
    if (streams.front().copy >= 0 || streams.front().wasClosed) {
        endInput();
    }
    enterSignals();
    std::fegetenv(&floatingPoint);
    if (guest.hasFloatingPoint) {
        std::fesetenv(&guest.floatingPoint);
    }
}

Visit::~Visit()
{
    std::fegetenv(&guest.floatingPoint);
    guest.hasFloatingPoint = true;
    std::fesetenv(&floatingPoint);
    leaveSignals();
    leaveStreams();
    ::uselocale(threadLocale);
    if (locale != std::setlocale(LC_ALL, nullptr)) {
        std::setlocale(LC_ALL, locale.c_str());
    }
    if (folder >= 0) {
        // It fails when the folder may no longer be entered: then there is no way back for anybody.
        [[maybe_unused]] const int result = ::fchdir(folder);
        ::close(folder);
    }
}

void Visit::enterSignals()
{
    ++guest.visits;
    for (std::size_t index = 0; index < kTimers.size(); ++index) {
        itimerval timer{};
        ::getitimer(kTimers.at(index), &timer);
        hasTimer.at(index) = isArmed(timer);
    }
    ::pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    ::sigaltstack(nullptr, &signalStack);
    if (guest.hasStack) {
        ::sigaltstack(&guest.signalStack, nullptr);
    }
    for (int number = 1; number < GuestState::kSignals; ++number) {
        const auto index = static_cast<std::size_t>(number);
        ::sigaction(number, nullptr, &handlers.at(index));
        if (guest.isHandled.at(index)) {
            ::sigaction(number, &guest.handlers.at(index), nullptr);
        }
    }
    if (handlers.at(SIGPIPE).sa_handler == SIG_DFL && !guest.isHandled.at(SIGPIPE)) {
        std::signal(SIGPIPE, SIG_IGN); // a pipe that nobody reads is an error of the script, not the end of the host
    }
    if (guest.isHandled.at(SIGCHLD)) {
        ::raise(SIGCHLD); // for the children that ended while the engine could not be told
    }
}

/// A timer that a script leaves running would end the host, which does not handle its signal.
void Visit::leaveTimers()
{
    for (std::size_t index = 0; index < kTimers.size(); ++index) {
        itimerval timer{};
        if (!hasTimer.at(index) && ::getitimer(kTimers.at(index), &timer) == 0 && isArmed(timer)) {
            const itimerval none{};
            ::setitimer(kTimers.at(index), &none, nullptr);
        }
    }
}

void Visit::leaveSignals()
{
    leaveTimers();
    --guest.visits;
    for (int number = 1; number < GuestState::kSignals; ++number) {
        const auto index = static_cast<std::size_t>(number);
        struct sigaction now
        {
        };
        ::sigaction(number, nullptr, &now);
        const bool isOfGuest = !isSameHandling(now, handlers.at(index));
        // In a visit within another of the same guest, its handlers were in force when this one began.
        guest.isHandled.at(index) = isOfGuest || (guest.visits > 0 && guest.isHandled.at(index));
        if (isOfGuest) {
            guest.handlers.at(index) = now;
            ::sigaction(number, &handlers.at(index), nullptr);
        }
    }
    stack_t stack{};
    ::sigaltstack(nullptr, &stack);
    const bool isStackOfGuest = !isSameStack(stack, signalStack);
    guest.hasStack = isStackOfGuest || (guest.visits > 0 && guest.hasStack);
    if (isStackOfGuest) {
        guest.signalStack = stack;
        ::sigaltstack(&signalStack, nullptr);
    }
    ::pthread_sigmask(SIG_SETMASK, &mask, nullptr);
}

void Visit::leaveStreams()
{
    for (int number = 0; number < kFirstOther; ++number) {
        const Stream& stream = streams.at(static_cast<std::size_t>(number));
        if (stream.copy < 0) {
            if (stream.wasClosed) {
                ::close(number);
            }
            continue;
        }
        ::dup2(stream.copy, number);
        ::close(stream.copy);
        if (::fcntl(number, F_GETFL) != stream.status) {
            ::fcntl(number, F_SETFL, stream.status);
        }
    }
}

} // namespace engines
