// The whole job in a fresh process: the stand-alone host is made, the library opened, both entry points called.
#include "bench/Measured.h"

#include "standalone/Host.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>

namespace {

using EntryPoint = void (*)();

/// Each bundle of the tree announces as many.
constexpr std::size_t kCommandsOfABundle = 4;

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("usage: kest_bench_whole HOME\n", stderr);
        return 2;
    }
    const std::string home = arguments[1];
    ::setenv("HOME", home.c_str(), 1);
    const bench::Measured measured;

    standalone::HostSettings settings;
    settings.programFolder = home + "/program";
    settings.configurationFile = standalone::userConfigurationFolder() + "/configuration.db";
    settings.vernum = L"26.0_1_Linux_x86_64"; // the bundles of the tree are made for it, wherever they are measured
    standalone::Host host(settings, [](const std::string& text) { std::fputs(text.c_str(), stderr); });
    void* const library = ::dlopen(KEST_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", ::dlerror());
        return 1;
    }
    reinterpret_cast<EntryPoint>(::dlsym(library, "excuteCuix"))();
    reinterpret_cast<EntryPoint>(::dlsym(library, "excute"))();

    measured.report(host.journal().count<standalone::CommandAnnounced>() / kCommandsOfABundle);
    return 0;
}
