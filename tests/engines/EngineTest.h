// The fixture of the engines' tests: a stand-alone host in this process, and the engines as they were built. Each test
// is a process of its own, since an engine that has started stays.
#pragma once

#include "standalone/CommandTable.h"
#include "standalone/EngineServices.h"
#include "tests/standalone/HostFixture.h"

#include <clocale>
#include <dlfcn.h>
#include <utility>

namespace enginetest {

class EngineTest : public standalonetest::HostFixture
{
protected:
    EngineTest()
    {
        std::setlocale(LC_ALL, "C.UTF-8");
        settings.engineFolder = KEST_ENGINE_FOLDER;
        startHost();
    }

    /// Writes `content` to the file `name` in the test's folder, makes the folders above it, and returns its path.
    std::string write(const std::string& name, const std::string& content) const
    {
        const std::string path = folder / name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        standalonetest::writeFile(path, content);
        return path;
    }

    /// Opens the engine library `file`; it stays open.
    static void* open(const std::string& file)
    {
        void* library = ::dlopen((std::string(KEST_ENGINE_FOLDER "/") + file).c_str(), RTLD_LAZY);
        if (library == nullptr) {
            ADD_FAILURE() << ::dlerror();
        }
        return library;
    }

    /// What engines told the host of their loads, in order; times left out.
    std::vector<standalone::ScriptLoad> loads() const
    {
        auto found = running->journal().only<standalone::ScriptLoad>();
        for (auto& load : found) {
            load.milliseconds = 0;
        }
        return found;
    }

    /// Runs the host's command `name`; what was printed before is forgotten.
    standalone::RunResult run(const std::wstring& name)
    {
        console.clear();
        return running->commands().run(name);
    }

    /// `text` with the test's folder as "/T".
    std::string normalised(std::string text) const
    {
        for (std::size_t at = text.find(folder.path); at != std::string::npos; at = text.find(folder.path)) {
            text.replace(at, folder.path.size(), "/T");
        }
        return text;
    }
};

} // namespace enginetest
