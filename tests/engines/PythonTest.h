// The fixture of the tests of the Python engine.
#pragma once

#include "host/Engines.h"
#include "host/LocaleText.h"
#include "tests/engines/EngineTest.h"

namespace enginetest {

/// Runs scripts with the Python library that the environment variable KEST_TEST_PYTHON names, else with Debian's.
class PythonTest : public EngineTest
{
protected:
    void SetUp() override
    {
        for (const char* name : {"PYTHONDONTWRITEBYTECODE", "PYTHONHOME", "PYTHONPATH", "PYTHONUNBUFFERED"}) {
            ::unsetenv(name);
        }
        const char* asked = std::getenv("KEST_TEST_PYTHON");
        pythonLibrary = asked != nullptr ? asked : "libpython3.11.so";
        if (void* library = ::dlopen(pythonLibrary.c_str(), RTLD_LAZY)) {
            ::dlclose(library); // as the autoloader does
        } else {
            GTEST_SKIP() << pythonLibrary << " is not installed";
        }
        void* engine = open("libVxPythonLoad.so");
        ASSERT_NE(engine, nullptr);
        setPythonVersion = reinterpret_cast<engines::SetPythonVersion>(::dlsym(engine, "setPythonVersion"));
        loadPythonFile = reinterpret_cast<engines::LoadPythonFile>(::dlsym(engine, "loadPythonFile"));
        ASSERT_NE(setPythonVersion, nullptr);
        ASSERT_NE(loadPythonFile, nullptr);
        setPythonVersion(pythonLibrary);
    }

    /// What loadPythonFile returns for the script at `path`.
    int load(const std::string& path) const { return loadPythonFile(localetext::widen(path).c_str()); }

    /// Writes a script, loads it, and returns what it printed, with the test's folder as "/T".
    std::string printedBy(const std::string& content, const std::string& name = "script.py")
    {
        console.clear();
        status = load(write(name, content));
        return normalised(console);
    }

    /// The problem of the last load as the host was told it.
    std::string problem() const { return loads().empty() ? "" : normalised(loads().back().problem); }

    std::string pythonLibrary;
    engines::SetPythonVersion setPythonVersion = nullptr;
    engines::LoadPythonFile loadPythonFile = nullptr;
    int status = -1; ///< of the last load
};

} // namespace enginetest
