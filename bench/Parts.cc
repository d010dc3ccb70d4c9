// Single steps of the whole job, for Google Benchmark.
#include "bench/BundleTree.h"

#include "bundle/BundleManager.h"
#include "host/Configuration.h"
#include "manifest/Bundle.h"
#include "menus/VariantText.h"
#include "standalone/Host.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

/// A stand-alone host with a home of its own.
class OwnHost
{
public:
    OwnHost()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "kest-bench-XXXXXX").string();
        home = ::mkdtemp(pattern.data());
        ::setenv("HOME", home.c_str(), 1);
        standalone::HostSettings settings;
        settings.programFolder = home / "program";
        settings.configurationFile = standalone::userConfigurationFolder() + "/configuration.db";
        settings.vernum = L"26.0_1_Linux_x86_64";
        host = std::make_unique<standalone::Host>(settings, nullptr);
    }
    OwnHost(const OwnHost&) = delete;
    OwnHost& operator=(const OwnHost&) = delete;
    ~OwnHost()
    {
        host.reset();
        std::filesystem::remove_all(home);
    }

    std::filesystem::path home;
    std::unique_ptr<standalone::Host> host;
};

void openTheLibraryAndScanNothing(benchmark::State& state)
{
    const OwnHost own;
    for ([[maybe_unused]] auto _ : state) {
        void* const library = ::dlopen(KEST_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
        reinterpret_cast<void (*)()>(::dlsym(library, "excuteCuix"))();
        reinterpret_cast<void (*)()>(::dlsym(library, "excute"))();
        ::dlclose(library);
    }
}
BENCHMARK(openTheLibraryAndScanNothing)->Unit(benchmark::kMicrosecond);

void readAManifest(benchmark::State& state)
{
    OwnHost own;
    bench::TreeDescription tree;
    tree.bundles = 100;
    tree.manifestBytes = static_cast<std::size_t>(state.range(0));
    tree.commandsPerBundle = tree.manifestBytes / 200; // about half of the text
    const std::filesystem::path file = own.home / "PackageContents.xml";
    std::ofstream(file) << bench::manifestOf(tree, 1);
    for ([[maybe_unused]] auto _ : state) {
        KestBundle bundle(own.home.wstring(), file.wstring());
        bundle.parseXml();
        own.host->journal().clear();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readAManifest)->Arg(2'000)->Arg(20'000)->Arg(200'000)->Unit(benchmark::kMicrosecond);

void askForAnUnknownCommand(benchmark::State& state)
{
    const OwnHost own;
    KestBundleManager manager;
    for (std::int64_t command = 0; command < state.range(0); ++command) {
        manager.commandMap.emplace(L"DRAW_" + std::to_wstring(command), L"/bundle/draw.lsp");
    }
    for ([[maybe_unused]] auto _ : state) {
        manager.loadCommandBundle(L"draw_unknown");
    }
}
BENCHMARK(askForAnUnknownCommand)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kNanosecond);

CStdStr<wchar_t> menuList(const wchar_t* kind, std::int64_t count)
{
    CStdStr<wchar_t> list;
    for (std::int64_t menu = 0; menu < count; ++menu) {
        list += menu > 0 ? L";" : L"";
        list +=
            L"/home/anna/.config/ORRELIN/ApplicationPlugins/" + (kind + std::to_wstring(menu)) + L".bundle/menu.cuix";
    }
    return list;
}

/// The host's list holds as many menus of its own as there are old ones and new ones.
void updateTheHostsMenus(benchmark::State& state)
{
    const OwnHost own;
    KestBundleManager manager;
    const CStdStr<wchar_t> oldMenus = menuList(L"old", state.range(0));
    const CStdStr<wchar_t> newMenus = menuList(L"new", state.range(0));
    KestVariant before;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        setVariantText(before, oldMenus);
        kestConfig()->setValue(TarvixConfig::kMenus, L"CUIX/LoadedBundleCuix", before);
        setVariantText(before, menuList(L"host", state.range(0)) + L";" + oldMenus);
        kestConfig()->setValue(TarvixConfig::kMenus, L"CUIX/LoadedCuix", before);
        state.ResumeTiming();
        manager.writeCuixToConfig(newMenus);
    }
}
BENCHMARK(updateTheHostsMenus)->Arg(100)->Arg(1'000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
