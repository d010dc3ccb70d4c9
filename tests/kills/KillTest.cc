#include "tests/kills/KillTest.h"

#include "host/Configuration.h"
#include "host/LocaleText.h"
#include "standalone/Configuration.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sqlite3.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr wchar_t kBundleMenusKey[] = L"CUIX/LoadedBundleCuix";
constexpr wchar_t kHostMenusKey[] = L"CUIX/LoadedCuix";
const std::wstring kNone = L"(none)";

std::string bytesOf(const std::wstring& text)
{
    return localetext::narrow(text);
}

std::wstring read(standalone::ConfigurationFile& file, const wchar_t* key)
{
    std::wstring text;
    const auto reading = file.read(TarvixConfig::kMenus, key, text);
    EXPECT_NE(reading, standalone::ConfigurationFile::Reading::kFailed) << file.problem();
    return reading == standalone::ConfigurationFile::Reading::kFound ? text : kNone;
}

/// Whether files in `folder` can be whole before they have a name. Where they cannot, a killed run leaves halves.
bool hasNamelessFiles(const fs::path& folder)
{
    const int file = ::open(folder.c_str(), O_TMPFILE | O_WRONLY, 0600);
    return file >= 0 && ::close(file) == 0;
}

/// "ok", or what SQLite finds wrong with the database at `path`.
std::string soundness(const std::string& path)
{
    sqlite3* database = nullptr;
    std::string answer = "it cannot be opened";
    if (sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
        answer.clear();
        const auto take = [](void* target, int, char** values, char**) {
            *static_cast<std::string*>(target) += values[0];
            return 0;
        };
        if (sqlite3_exec(database, "PRAGMA integrity_check", take, &answer, nullptr) != SQLITE_OK) {
            answer += sqlite3_errmsg(database);
        }
    }
    sqlite3_close(database);
    return answer;
}

} // namespace

const std::wstring KillTest::kOwnMenus = L"/own/first.cuix;/own/zweites Menü.cuix;/own/第三.cuix";

std::ostream& operator<<(std::ostream& stream, const HomeState& state)
{
    return stream << "the bundles' menus " << bytesOf(state.bundleMenus) << "\nthe host's menus "
                  << bytesOf(state.hostMenus) << "\na converted menu of " << state.convertedMenu.size() << " bytes\n";
}

void KillTest::installSet(std::size_t number) const
{
    const bool hasFrames = number != 1; // in the first and the last set
    const bool hasStairs = number != 2;
    fs::remove_all(plugins());
    fs::create_directories(plugins());
    if (hasFrames) {
        install("Frames.bundle", manifestOf(startupEntry("./frames.cuix"), "{Frames}"));
    }
    if (hasStairs) { // which need the windows, listed behind them
        install("Stairs.bundle", manifestOf("<DependentBundles><DependentBundle UpgradeCode=\"{Windows}\"/>"
                                            "</DependentBundles>" +
                                                startupEntry("./stairs.cuix"),
                                            "{Stairs}"));
    }
    const std::string windows = install("Windows.bundle", manifestOf(startupEntry("./windows.mnu"), "{Windows}"));
    std::string menu = "[Windows]\n";
    for (int line = 0; line < 100; ++line) {
        menu += "Window " + std::to_string(line) + " = WINDOW" + std::to_string(number) + "\n";
    }
    write(windows + "/windows.mnu", menu);
    const std::string greeter = install("Greeter.bundle", manifestOf(startupEntry("./greeter.krx"), "{Greeter}"));
    installModule("greeter", greeter, "greeter.krx");
}

void KillTest::beginAfresh(bool hasOwnMenus) const
{
    const std::string folder = home() + "/.config/ORRELIN";
    fs::create_directories(folder);
    fs::remove(configurationFile());
    fs::remove(configurationFile() + "-journal");
    fs::remove_all(folder + "/ConvertedMenus");
    if (hasOwnMenus) {
        standalone::Journal journal;
        standalone::Configuration configuration(configurationFile(), journal);
        EXPECT_TRUE(configuration.store(TarvixConfig::kMenus, kHostMenusKey, kOwnMenus));
    }
}

HomeState KillTest::undisturbed(std::size_t number, bool hasOwnMenus)
{
    installSet(number);
    beginAfresh(hasOwnMenus);
    runToTheEnd();
    return left();
}

HomeState KillTest::left() const
{
    HomeState state{kNone, kNone, ""};
    const fs::path copies = path("copies");
    fs::remove_all(copies);
    fs::create_directories(copies);
    for (const std::string ending : {"", "-journal", "-wal"}) {
        if (fs::exists(configurationFile() + ending)) {
            fs::copy_file(configurationFile() + ending, copies.string() + "/standalone.sqlite" + ending);
        }
    }
    if (const std::string copy = copies / "standalone.sqlite"; fs::exists(copy)) {
        standalone::ConfigurationFile file;
        EXPECT_TRUE(file.begin(copy, standalone::ConfigurationFile::Access::kWrite, std::chrono::milliseconds{0}))
            << file.problem();
        state.bundleMenus = read(file, kBundleMenusKey);
        state.hostMenus = read(file, kHostMenusKey);
        EXPECT_TRUE(file.commit()) << file.problem();
        EXPECT_EQ(soundness(copy), "ok");
    }
    for (const fs::path& menu : convertedMenus()) {
        if (menu.extension() == ".cuix") { // others are what a dead process did not put in place
            state.convertedMenu += contentOf(menu);
        }
    }
    return state;
}

ProcessCommand KillTest::command() const
{
    ProcessCommand command;
    command.words = commandThatStarts(path("tool/bin/kestbundle"));
    command.words.insert(command.words.end(), {"run", "--program-dir", path("program")});
    command.environment = environment;
    command.output = path("output");
    // The leak checker cannot work in a process that is watched already.
    const char* options = std::getenv("ASAN_OPTIONS");
    command.environment.insert(command.environment.begin(),
                               "ASAN_OPTIONS=" + std::string(options != nullptr ? options : "") + ":detect_leaks=0");
    return command;
}

void KillTest::runToTheEnd()
{
    const ToolRun done = run();
    EXPECT_EQ(done.status, 0) << done;
    EXPECT_EQ(done.errors, "");
    EXPECT_NE(done.output.find("\nResult: all went well\n"), std::string::npos) << done;
    for (const fs::path& menu : convertedMenus()) {
        EXPECT_TRUE(menu.extension() == ".cuix" || !hasNamelessFiles(menu.parent_path())) << menu;
    }
}

std::vector<fs::path> KillTest::convertedMenus() const
{
    std::vector<fs::path> paths;
    if (const fs::path folder = home() + "/.config/ORRELIN/ConvertedMenus"; fs::exists(folder)) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            paths.push_back(entry.path());
        }
    }
    return paths;
}
