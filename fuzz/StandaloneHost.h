// The stand-alone host, without a folder of its own.
#pragma once

#include "standalone/Host.h"

namespace fuzz {

using StandaloneHost = standalone::Host;

/// The one host of the process: it keeps no configuration, has no engines and prints nothing.
inline StandaloneHost& standaloneHost()
{
    static StandaloneHost host(
        [] {
            standalone::HostSettings settings;
            settings.programFolder = "/program/";
            settings.vernum = L"26.0_1_Linux_x86_64";
            return settings;
        }(),
        nullptr);
    return host;
}

} // namespace fuzz
