// Many components of all kinds in one process, loaded by the autoloader itself.
#include "bundle/EntryPoints.h"
#include "host/LocaleText.h"
#include "standalone/LispQueue.h"
#include "tests/engines/EngineTest.h"
#include "tests/engines/ProcessState.h"

#include <random>

namespace {

constexpr unsigned kRounds = 10;
constexpr int kComponents = 200;
constexpr int kFailsEvery = 7;
constexpr int kStartsEvery = 5; ///< is loaded at start-up

/// One component: its file's name without the extension is its command.
struct Component
{
    std::string name;
    std::string extension;
    bool isGood;
    bool isStartup;
};

class StressTest : public enginetest::EngineTest
{
protected:
    StressTest()
    {
        const std::vector<std::string> extensions = availableKinds();
        for (int number = 0; number < kComponents; ++number) {
            const bool isGood = number % kFailsEvery != 0;
            components.push_back({(isGood ? "C" : "BAD") + std::to_string(number),
                                  extensions[static_cast<std::size_t>(number) % extensions.size()], isGood,
                                  number % kStartsEvery == 0});
        }
        ::setenv("HOME", folder.path.c_str(), 1);
    }

    /// Extensions of the kinds whose engine is there.
    static std::vector<std::string> availableKinds()
    {
        std::vector<std::string> kinds{".krx"};
        if (KEST_HAS_LISP != 0) {
            kinds.emplace_back(".lsp");
        }
        if (KEST_HAS_MANAGED != 0) {
            kinds.emplace_back(".dll");
        }
        if (void* library = ::dlopen("libpython3.11.so", RTLD_LAZY)) {
            ::dlclose(library);
            kinds.emplace_back(".py");
        }
        return kinds;
    }

    /// Writes a bundle of four components each, in the order of `components`.
    void install() const
    {
        constexpr std::size_t kInBundle = 4;
        for (std::size_t first = 0; first < components.size(); first += kInBundle) {
            const std::string bundle = ".config/ORRELIN/ApplicationPlugins/B" + std::to_string(first) + ".bundle";
            std::filesystem::create_directories(folder / bundle);
            std::string entries;
            for (std::size_t i = first; i < std::min(first + kInBundle, components.size()); ++i) {
                entries += entryOf(components[i]);
                writeModule(components[i], bundle + "/" + components[i].name + components[i].extension);
            }
            write(bundle + "/PackageContents.xml",
                  "<ApplicationPackage SchemaVersion=\"1.0\" Name=\"Stress\" UpgradeCode=\"{" + std::to_string(first) +
                      "}\"><Components>" + entries + "</Components></ApplicationPackage>");
        }
    }

    static std::string entryOf(const Component& component)
    {
        return "<ComponentEntry ModuleName=\"./" + component.name + component.extension +
               "\" PythonVersion=\"python3.11\" LoadOnTARVIXStartup=\"" + (component.isStartup ? "True" : "False") +
               "\" LoadOnCommandInvocation=\"True\"><Commands><Command Global=\"" + component.name + "\" Local=\"" +
               component.name + "\"/></Commands></ComponentEntry>";
    }

    void writeModule(const Component& component, const std::string& name) const
    {
        const std::string& command = component.name;
        if (component.extension == ".py") {
            write(name, "import kest\nkest.register_command('" + command + "', lambda: print('" + command +
                            " ran'))\n" + (component.isGood ? "" : "1 / 0\n"));
        } else if (component.extension == ".lsp") {
            write(name, "(kest-register-command \"" + command + "\" (lambda () (format t \"" + command +
                            " ran~%\")))\n" + (component.isGood ? "" : "(car 7)\n"));
        } else {
            const char* made = component.extension == ".krx" ? "/Native.krx" : "/Managed.dll";
            std::filesystem::copy_file(KEST_STRESS_FOLDER + std::string(made), folder / name);
        }
    }

    /// Asks for every component's command, in the order of `order`, as a host does, and runs it when it is there.
    void runCommands(const std::vector<Component>& order)
    {
        for (const Component& component : order) {
            const std::wstring name = localetext::widen(component.name);
            if (!running->commands().has(name)) {
                loadIfCmdNeeded(name.c_str());
                running->lispQueue().evaluateQueued();
            }
            if (!component.isGood) {
                EXPECT_FALSE(running->commands().has(name)) << component.name << component.extension;
                continue;
            }
            const standalone::RunResult result = run(name);
            EXPECT_TRUE(result.ran) << component.name << component.extension << ": " << result.problem;
            EXPECT_EQ(console, component.name + " ran\n");
        }
    }

    /// One life of the autoloader and its host.
    void liveOnce(unsigned number)
    {
        SCOPED_TRACE("round " + std::to_string(number));
        std::vector<Component> order = components;
        std::mt19937 random(number);
        std::shuffle(order.begin(), order.end(), random);
        running.reset();
        startHost();
        void* library = ::dlopen(KEST_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << ::dlerror();
        loadIfCmdNeeded = reinterpret_cast<decltype(loadIfCmdNeeded)>(::dlsym(library, "loadIfCmdNeeded"));
        for (const char* entry : {"excuteCuix", "excute"}) {
            reinterpret_cast<void (*)()>(::dlsym(library, entry))();
        }
        running->lispQueue().evaluateQueued();
        runCommands(order);
        ::dlclose(library);
    }

    std::vector<Component> components;
    decltype(&::loadIfCmdNeeded) loadIfCmdNeeded = nullptr;
};

TEST_F(StressTest, TwoHundredComponentsOfAllKindsInRandomOrderTenTimes)
{
    std::mt19937 random(0);
    std::shuffle(components.begin(), components.end(), random);
    install();
    const std::vector<std::string> before = enginetest::processState();
    const std::filesystem::path directory = std::filesystem::current_path();
    for (unsigned number = 1; number <= kRounds; ++number) {
        liveOnce(number);
        std::filesystem::current_path(directory); // scripts that load stay in their folder
        EXPECT_EQ(enginetest::processState(), before);
    }
}

} // namespace
