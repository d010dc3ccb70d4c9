#include "tests/cli/FaultFixture.h"

#include <algorithm>
#include <filesystem>
#include <sqlite3.h>
#include <stdexcept>

namespace fs = std::filesystem;

std::vector<std::string> explainedFaults()
{
    std::vector<std::string> faults;
    for (const fs::directory_entry& entry : fs::directory_iterator(KEST_FIXTURE_FOLDER)) {
        const std::string name = entry.path().filename().string();
        if (!name.starts_with("check-") && !name.starts_with("graph-")) { // of those subcommands
            faults.push_back(name);
        }
    }
    std::sort(faults.begin(), faults.end());
    return faults;
}

FaultFixture::FaultFixture()
{
    fs::create_directories(plugins());
    installEvaluator();
    installPythonStandIn();
}

void FaultFixture::installFault(const std::string& fault)
{
    fs::copy(std::string(KEST_FIXTURE_FOLDER) + "/" + fault, plugins(),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks | fs::copy_options::overwrite_existing);
    makeExtras(fault);
    noteInstalled();
    takePermissions(fault);
}

void FaultFixture::makeExtras(const std::string& fault)
{
    const std::string contents = plugins() + "Tools.bundle/Contents/";
    if (fault == "engine-missing") {
        fs::remove(path("tool/lib/libKestLispEvaluator.so"));
    } else if (fault == "vernum-too-short") {
        vernum = "26.0_1_Linux";
    } else if (fault == "host-notice") {
        write(configurationFile(), "no database");
    } else if (fault == "log-not-opened") {
        fs::create_directories(logFile());
    } else if (fault == "entries-run-together") {
        store("CUIX/LoadedCuix", "/host/first.cuix;;/host/second.cuix");
    } else if (fault == "host-entry-damaged") {
        store("CUIX/LoadedCuix", "/m/old.cuix;/host/m/old.cuix");
        store("CUIX/LoadedBundleCuix", "/m/old.cuix");
    } else if (fault == "lisp-path-changed") {
        write(contents + "a\"b.lsp", "(princ)\n");
        write(contents + "a\\b.lsp", "(princ)\n");
    } else if (fault == "semicolon-in-menu-path") {
        write(contents + "a;b.cuix", "x\n");
    } else if (fault == "broken-link") {
        fs::create_symlink("nowhere/Gone.bundle", plugins() + "Gone.bundle");
        fs::create_symlink("Round.bundle", plugins() + "Round.bundle");
    }
}

void FaultFixture::noteInstalled()
{
    for (const fs::directory_entry& entry : fs::directory_iterator(plugins())) {
        if (entry.path().extension() != ".txt") {
            installed.push_back(entry.path().filename().string());
        }
    }
    std::sort(installed.begin(), installed.end());
}

void FaultFixture::takePermissions(const std::string& fault)
{
    if (fault == "folder-not-listable") {
        fs::permissions(plugins() + "Tools.bundle", fs::perms::none);
    } else if (fault == "manifest-not-opened") {
        fs::permissions(plugins() + "Tools.bundle/PackageContents.xml", fs::perms::none);
    } else if (fault == "root-not-listable") {
        fs::permissions(plugins(), fs::perms::none);
    }
    if (fault.ends_with("not-listable") || fault == "manifest-not-opened") {
        runUnprivileged();
    }
}

void FaultFixture::store(const std::string& key, const std::string& text) const
{
    fs::create_directories(fs::path(configurationFile()).parent_path());
    sqlite3* database = nullptr;
    const std::string statement =
        "CREATE TABLE IF NOT EXISTS value (path INTEGER NOT NULL, key TEXT NOT NULL, text TEXT NOT NULL, PRIMARY KEY "
        "(path, key)) STRICT, WITHOUT ROWID; PRAGMA application_id = 1262834516; PRAGMA user_version = 1; INSERT INTO "
        "value VALUES (4, '" +
        key + "', '" + text + "');";
    const bool isStored = sqlite3_open(configurationFile().c_str(), &database) == SQLITE_OK &&
                          sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(database);
    if (!isStored) {
        throw std::runtime_error("the configuration value could not be stored");
    }
}

ToolRun FaultFixture::tell(std::vector<std::string> arguments)
{
    arguments.insert(arguments.end(), {"--program-dir", path("program"), "--vernum", vernum});
    ToolRun done = runTool(arguments);
    done.output = normalised(done.output);
    done.errors = normalised(done.errors);
    return done;
}
