#include "standalone/Host.h"

#include "standalone/CommandTable.h"
#include "standalone/Configuration.h"
#include "standalone/DynamicLinker.h"
#include "standalone/EngineServices.h"
#include "standalone/Folders.h"
#include "standalone/LispQueue.h"
#include "standalone/Rehearsal.h"
#include "standalone/Utf8.h"

#include "host/LocaleText.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <sys/utsname.h>
#include <utility>

namespace standalone {

namespace {

Host* livingHost = nullptr;

HostSettings completed(HostSettings settings)
{
    if (settings.vernum.empty()) {
        settings.vernum = machineVernum();
    }
    if (settings.productName.empty()) {
        settings.productName = kDefaultProductName;
    }
    if (!settings.configurationFile.empty()) { // scripts change the working directory while the host runs
        settings.configurationFile = std::filesystem::absolute(settings.configurationFile);
    }
    return settings;
}

} // namespace

std::wstring machineVernum()
{
    utsname machine{};
    ::uname(&machine); // fails for a bad address only
    return L"26.0_1_" + localetext::widen(machine.sysname) + L"_" + localetext::widen(machine.machine);
}

std::string userConfigurationFolder()
{
    const char* home = std::getenv("HOME");
    return home != nullptr ? std::string(home) + "/.config/ORRELIN" : std::string();
}

struct Host::Services
{
    Services(Host& host, HostSettings&& given, std::function<void(const std::string&)>&& printer)
        : settings(completed(std::move(given))),
          version(displayable(std::wstring_view(settings.vernum))),
          console(std::move(printer)),
          configuration(settings.configurationFile, journal, settings.rehearses),
          commands(journal),
          lispQueue(host),
          moduleLinker(host),
          engineServices(host)
    {
        if (settings.rehearses) {
            rehearsal.emplace(host);
        }
    }

    HostSettings settings;
    std::string version;
    std::function<void(const std::string&)> console;
    Journal journal;
    Configuration configuration;
    CommandRegistry commands;
    LispQueue lispQueue;
    ModuleLinker moduleLinker;
    EngineServices engineServices;
    std::optional<Rehearsal> rehearsal;
};

Host::Host(HostSettings settings, std::function<void(const std::string&)> console)
{
    if (livingHost != nullptr) {
        throw std::logic_error("there is a stand-alone host in this process already");
    }
    services = std::make_unique<Services>(*this, std::move(settings), std::move(console));
    const std::string& file = services->settings.configurationFile;
    if (!file.empty() && !services->rehearsal) {
        const std::string folder = folderOf(file);
        if (const int error = makeFolders(folder); error != 0) {
            notice("The configuration folder \"" + displayable(std::string_view(folder)) + "\" could not be made: " +
                   displayable(std::string_view(std::strerror(error))) + "; make it by hand, writable by its owner");
        }
    }
    livingHost = this;
}

Host::~Host()
{
    livingHost = nullptr;
}

Host& Host::current()
{
    if (livingHost == nullptr) {
        throw std::logic_error("there is no stand-alone host in this process");
    }
    return *livingHost;
}

Host* Host::living() noexcept
{
    return livingHost;
}

const HostSettings& Host::settings() const noexcept
{
    return services->settings;
}

const std::string& Host::versionText() const noexcept
{
    return services->version;
}

wchar_t* Host::vernum() noexcept
{
    return services->settings.vernum.data();
}

Journal& Host::journal() noexcept
{
    return services->journal;
}

Configuration& Host::configuration() noexcept
{
    return services->configuration;
}

CommandRegistry& Host::commands() noexcept
{
    return services->commands;
}

LispQueue& Host::lispQueue() noexcept
{
    return services->lispQueue;
}

ModuleLinker& Host::moduleLinker() noexcept
{
    return services->moduleLinker;
}

EngineServices& Host::engineServices() noexcept
{
    return services->engineServices;
}

Rehearsal* Host::rehearsal() noexcept
{
    return services->rehearsal ? &*services->rehearsal : nullptr;
}

void Host::print(const std::string& text)
{
    if (services->console) {
        services->console(text);
    }
}

void Host::notice(std::string text)
{
    services->journal.add(HostNotice{std::move(text)});
}

} // namespace standalone
