#include "standalone/EngineServices.h"

#include "standalone/Host.h"

#include "host/LocaleText.h"

namespace standalone {

LoadTimer::LoadTimer(Host& timed) : host(timed), startsBefore(timed.engineServices().startMilliseconds()) {}

double LoadTimer::milliseconds() const
{
    const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - begin;
    return passed.count() - (host.engineServices().startMilliseconds() - startsBefore);
}

EngineServices::EngineServices(Host& owner) : host(owner) {}

EngineServices::Loading::Loading(Host& host, std::size_t journalEntry, const std::string& path)
    : entry(journalEntry), registration(host.commands(), path), timer(host)
{
}

const std::string& EngineServices::versionText() const noexcept
{
    return host.versionText();
}

void EngineServices::print(const std::string& text) noexcept
{
    host.print(text);
}

bool EngineServices::registerCommand(const std::string& name, KestEngineCommand run, int number) noexcept
{
    return host.commands().addOfEngine(name, run, number);
}

void EngineServices::engineStarted(const std::string& description, double milliseconds) noexcept
{
    startTime += milliseconds;
    host.journal().add(EngineStart{description, milliseconds});
}

void EngineServices::beginComponent(const std::wstring& path) noexcept
{
    const std::size_t entry = host.journal().add(ScriptLoad{path, false, "", 0});
    loading.emplace_back(host, entry, localetext::narrow(path));
}

void EngineServices::endComponent(const std::string& problem) noexcept
{
    if (loading.empty()) {
        return;
    }
    Loading& ended = loading.back();
    if (auto* const noted = host.journal().amend<ScriptLoad>(ended.entry)) {
        noted->loaded = problem.empty();
        noted->problem = problem;
        noted->milliseconds = ended.timer.milliseconds();
    }
    if (!problem.empty()) {
        ended.registration.takeBack();
    }
    loading.pop_back();
}

} // namespace standalone

KestEngineHost* kestEngineHost() noexcept
{
    standalone::Host* host = standalone::Host::living();
    return host != nullptr ? &host->engineServices() : nullptr;
}
