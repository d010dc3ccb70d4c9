// A stand-alone host in a folder of its own, and what it printed.
#pragma once

#include "standalone/Host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace standalonetest {

/// A folder that ends with its owner.
class OwnFolder
{
public:
    OwnFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "kest-XXXXXX").string();
        path = ::mkdtemp(pattern.data());
    }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;
    ~OwnFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    /// The path of `name` in the folder.
    std::string operator/(const std::string& name) const { return path + "/" + name; }

    std::string path;
};

inline void writeFile(const std::string& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}

inline std::string fileContent(const std::string& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// The names in the folder at `path`, sorted.
inline std::vector<std::string> namesIn(const std::string& path)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Starts a host on request, after a test has changed `settings`.
class HostFixture : public testing::Test
{
protected:
    HostFixture()
    {
        settings.programFolder = folder.path;
        settings.configurationFile = folder / "configuration/kest.db";
    }

    standalone::Host& startHost()
    {
        running = std::make_unique<standalone::Host>(settings, [this](const std::string& text) { console += text; });
        return *running;
    }

    std::vector<std::string> notices() const
    {
        std::vector<std::string> texts;
        for (const auto& notice : running->journal().only<standalone::HostNotice>()) {
            texts.push_back(notice.text);
        }
        return texts;
    }

    OwnFolder folder;
    standalone::HostSettings settings;
    std::string console;
    std::unique_ptr<standalone::Host> running;
};

} // namespace standalonetest
