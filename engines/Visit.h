// Keeps an engine a polite guest: what the process is to the host comes back when the engine has run.
#pragma once

#include <array>
#include <cfenv>
#include <clocale>
#include <csignal>
#include <locale.h> // NOLINT(modernize-deprecated-headers): uselocale() is in this one
#include <string>

namespace engines {

/// What an engine had set up for itself when it was left last. One for each engine, for the life of the process.
struct GuestState
{
    static constexpr int kSignals = 32; ///< real-time signals begin there: those are an engine's to keep

    int visits = 0;                         ///< that are going on, one within the other
    std::array<bool, kSignals> isHandled{}; ///< the engine's own handler, put back at each visit
    std::array<struct sigaction, kSignals> handlers{};
    bool hasStack = false;
    stack_t signalStack{};
    bool hasFloatingPoint = false;
    std::fenv_t floatingPoint{};
};

/// One visit of the host in an engine, on the host's thread. While it lives, the engine's signal handlers, alternative
/// signal stack and floating-point environment are in force. At its end these are what they were for the host, and so
/// are signal mask, interval timers, locale, working directory and the descriptors of the standard streams, whatever a
/// script did to them. Meanwhile standard input is at its end, and a pipe that nobody reads is an error of who writes
/// to it, not the end of the process. Visits nest, also of different engines.
class Visit
{
public:
    explicit Visit(GuestState& visited);
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    ~Visit();

private:
    struct Stream
    {
        int copy = -1;          ///< of the descriptor; -1: there is none
        bool wasClosed = false; ///< there was nothing to copy
        int status = 0;         ///< its status flags
    };

    void enterSignals();
    void leaveSignals();
    void leaveTimers();
    void leaveStreams();

    GuestState& guest;
    std::array<struct sigaction, GuestState::kSignals> handlers{};
    sigset_t mask{};
    stack_t signalStack{};
    std::array<bool, 3> hasTimer{}; ///< by the kind of the interval timer
    std::fenv_t floatingPoint{};
    std::string locale;
    locale_t threadLocale;
    int folder; ///< -1: the working directory is gone
    std::array<Stream, 3> streams{};
};

} // namespace engines
