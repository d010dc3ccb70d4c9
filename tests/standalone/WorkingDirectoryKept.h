// The working directory, lent to a test.
#pragma once

#include <filesystem>

namespace standalonetest {

/// Gives the process its working directory back.
class WorkingDirectoryKept
{
public:
    WorkingDirectoryKept() = default;
    WorkingDirectoryKept(const WorkingDirectoryKept&) = delete;
    WorkingDirectoryKept& operator=(const WorkingDirectoryKept&) = delete;
    ~WorkingDirectoryKept() { std::filesystem::current_path(before); }

private:
    std::filesystem::path before = std::filesystem::current_path();
};

} // namespace standalonetest
