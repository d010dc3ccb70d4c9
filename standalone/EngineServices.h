// What the stand-alone host offers to its engines, and the time that loading takes.
#pragma once

#include "standalone/CommandTable.h"

#include "host/EngineHost.h"

#include <chrono>
#include <deque>
#include <string>

namespace standalone {

class Host;

/// Measures one load. The start of an engine meanwhile is not part of it: it is told on its own.
class LoadTimer
{
public:
    explicit LoadTimer(Host& timed);

    /// Since this was made.
    double milliseconds() const;

private:
    Host& host;
    std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
    double startsBefore;
};

/// The host as its engines see it. What they tell stands in the journal.
class EngineServices final : public KestEngineHost
{
public:
    explicit EngineServices(Host& owner);
    EngineServices(const EngineServices&) = delete;
    EngineServices& operator=(const EngineServices&) = delete;
    ~EngineServices() = default;

    const std::string& versionText() const noexcept override;
    void print(const std::string& text) noexcept override;
    bool registerCommand(const std::string& name, KestEngineCommand run, int number) noexcept override;
    void engineStarted(const std::string& description, double milliseconds) noexcept override;
    void beginComponent(const std::wstring& path) noexcept override;
    void endComponent(const std::string& problem) noexcept override;

    /// What all starts of engines have taken together.
    double startMilliseconds() const noexcept { return startTime; }

private:
    struct Loading
    {
        Loading(Host& host, std::size_t journalEntry, const std::string& path);

        std::size_t entry; ///< in the journal
        CommandRegistry::Registration registration;
        LoadTimer timer;
    };

    Host& host;
    std::deque<Loading> loading; ///< innermost last
    double startTime = 0;
};

} // namespace standalone
