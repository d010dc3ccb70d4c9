#include "engines/Visit.h"

#include <cstring>
#include <fcntl.h>
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

} // namespace

Visit::Visit(GuestState& visited)
    : guest(visited),
      locale(std::setlocale(LC_ALL, nullptr)),
      threadLocale(::uselocale(nullptr)),
      folder(::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC))
{
    for (int number = 0; number < kFirstOther; ++number) {
        Stream& stream = streams.at(static_cast<std::size_t>(number));
        stream.copy = ::fcntl(number, F_DUPFD_CLOEXEC, kFirstOther);
        stream.status = ::fcntl(number, F_GETFL);
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
}

void Visit::leaveSignals()
{
    for (int number = 1; number < GuestState::kSignals; ++number) {
        const auto index = static_cast<std::size_t>(number);
        struct sigaction now
        {
        };
        ::sigaction(number, nullptr, &now);
        const bool isOfGuest = !isSameHandling(now, handlers.at(index));
        guest.isHandled.at(index) = isOfGuest;
        if (isOfGuest) {
            guest.handlers.at(index) = now;
            ::sigaction(number, &handlers.at(index), nullptr);
        }
    }
    stack_t stack{};
    ::sigaltstack(nullptr, &stack);
    guest.hasStack = !isSameStack(stack, signalStack);
    if (guest.hasStack) {
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
            ::close(number); // it was closed before
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
