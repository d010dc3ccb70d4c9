#include "cli/HostOptions.h"

#include "cli/ExitStatus.h"
#include "cli/Library.h"
#include "cli/OptionFolder.h"
#include "host/LocaleText.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace cli {

namespace {

/// Sets HOME to the folder asked for. Throws WrongUse when there is none.
void setHome(const HostOptions& options)
{
    std::string home;
    if (!options.home.empty()) {
        home = existingFolder("--home", options.home);
    } else if (const char* environment = std::getenv("HOME")) {
        home = existingFolder("HOME", environment);
    } else {
        throw WrongUse("HOME is not set; set it, or say --home DIR");
    }
    if (::setenv("HOME", home.c_str(), 1) != 0) { // another home must not be touched instead
        throw std::system_error(errno, std::generic_category(), "HOME cannot be set");
    }
}

} // namespace

void addHostOptions(Subcommand& subcommand, HostOptions& options)
{
    subcommand.text("--home", options.home, "DIR", "Use DIR as the home folder (default: HOME)");
    subcommand.text("--program-dir", options.programDir, "DIR",
                    "Use DIR as the host's program folder (default: this tool's)");
    subcommand.text("--vernum", options.vernum, "TEXT", "The value of VERNUM (default: what this machine is)");
    subcommand.text("--product", options.product, "TEXT", "The host's product name (default: TARVIX)");
    subcommand.text("--config", options.config, "FILE",
                    "The configuration file (default: .config/ORRELIN/standalone.sqlite in the home folder)");
}

standalone::HostSettings settingsFrom(const HostOptions& options)
{
    setHome(options);
    standalone::HostSettings settings;
    settings.programFolder =
        options.programDir.empty() ? toolFolder() : existingFolder("--program-dir", options.programDir);
    settings.engineFolder = libraryFolder();
    settings.configurationFile =
        options.config.empty() ? standalone::userConfigurationFolder() + "/standalone.sqlite" : options.config;
    settings.vernum = localetext::widen(options.vernum);
    settings.productName = localetext::widen(options.product);
    return settings;
}

} // namespace cli
