// The managed engine in a stand-alone host, and the assemblies that were compiled for the tests.
#pragma once

#include "tests/engines/EngineTest.h"
#include "tests/engines/ProcessState.h"

#include "host/Engines.h"
#include "host/LocaleText.h"

#ifndef KEST_TEST_ASSEMBLIES
#define KEST_TEST_ASSEMBLIES "" // the engine is not built, and no test runs
#endif

namespace enginetest {

class ManagedFixture : public EngineTest
{
protected:
    void SetUp() override
    {
        if (KEST_HAS_MANAGED == 0) {
            GTEST_SKIP() << "the managed engine is not built";
        }
    }

    /// Copies the compiled assembly `name` (without ".dll") to `to` in the test's folder, and returns its path.
    std::string place(const std::string& name, const std::string& to) const
    {
        const std::filesystem::path path(folder / to);
        std::filesystem::create_directories(path.parent_path());
        std::filesystem::copy_file(KEST_TEST_ASSEMBLIES "/" + name + ".dll", path,
                                   std::filesystem::copy_options::overwrite_existing);
        return path.string();
    }

    std::string place(const std::string& name) const { return place(name, name + ".dll"); }

    /// Has the engine load `path`; what was printed before is forgotten.
    bool load(const std::string& path)
    {
        console.clear();
        void* library = open("VxManagedCommand.dll");
        const auto netLoad = reinterpret_cast<engines::NetLoad>(::dlsym(library, "netLoad"));
        return netLoad != nullptr && netLoad(CStdStr<wchar_t>(localetext::widen(path)), 0);
    }

    /// Loads the compiled assembly `name` from the test's folder.
    bool loadPlaced(const std::string& name) { return load(place(name)); }

    /// Why the last load failed; empty when it did not.
    std::string problem() const { return normalised(loads().back().problem); }

    /// What was printed, without lines of a stack trace.
    std::string printed() const
    {
        std::istringstream lines(normalised(console));
        std::string kept;
        for (std::string line; std::getline(lines, line);) {
            if (!line.starts_with("  at ") && !line.starts_with("  ... and ") && !line.starts_with("   --- End")) {
                kept += line + "\n";
            }
        }
        return kept;
    }

    /// Whether a stack trace that names `method` was printed.
    bool hasTraceOf(const std::string& method) const { return console.find("\n  at " + method) != std::string::npos; }
};

} // namespace enginetest
