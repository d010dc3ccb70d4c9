// The fixture of tests on random trees: a folder of their own, and a host that has its home in it.
#pragma once

#include "standalone/Host.h"

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace rehearsal {

class RehearsalFolder : public testing::Test
{
protected:
    RehearsalFolder()
    {
        std::setlocale(LC_ALL, "C.UTF-8");
        const bool hasMemory = std::filesystem::is_directory("/dev/shm"); // files that need no disk
        std::string pattern = std::string(hasMemory ? "/dev/shm" : "/tmp") + "/kest-XXXXXX";
        root = ::mkdtemp(pattern.data());
    }
    ~RehearsalFolder() override
    {
        std::filesystem::current_path("/");
        std::filesystem::remove_all(root);
        std::setlocale(LC_ALL, "C");
    }

    /// What a host is started with whose program folder is `program`. HOME is `home` from now on.
    static standalone::HostSettings settingsFor(const std::filesystem::path& home, const std::filesystem::path& program)
    {
        ::setenv("HOME", home.c_str(), 1);
        standalone::HostSettings settings;
        settings.programFolder = program;
        settings.engineFolder = KEST_RECORDING_ENGINES;
        settings.configurationFile = home / ".config/ORRELIN/standalone.sqlite";
        settings.vernum = L"26.0_1_Linux_test";
        return settings;
    }

    std::filesystem::path root;
};

} // namespace rehearsal
