#include "cli/Library.h"

#include "standalone/Folders.h"
#include "standalone/Utf8.h"

#include <dlfcn.h>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace cli {

namespace {

constexpr char kLibraryName[] = "libkestbundle.so";

std::string linkerReason()
{
    const char* text = ::dlerror();
    return standalone::displayable(std::string_view(text != nullptr ? text : "the system gives no reason"));
}

/// Sets `function` to the export `name`; false when there is none.
template <typename Function>
bool find(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

} // namespace

std::string Library::open()
{
    std::string problems;
    for (const std::string& place : {libraryFolder() + "/" + kLibraryName, std::string(kLibraryName)}) {
        handle = ::dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
        const std::string problem = handle != nullptr ? bind() : linkerReason();
        if (problem.empty()) {
            return "";
        }
        close();
        problems += (problems.empty() ? "" : "\n") + problem;
    }
    return problems;
}

std::string Library::bind()
{
    const bool isComplete = find(handle, "excuteCuix", excuteCuix) && find(handle, "excute", excute) &&
                            find(handle, "loadIfCmdNeeded", loadIfCmdNeeded);
    return isComplete ? "" : linkerReason();
}

void Library::close() noexcept
{
    if (handle != nullptr) {
        ::dlclose(handle);
        handle = nullptr;
    }
    excuteCuix = nullptr;
    excute = nullptr;
    loadIfCmdNeeded = nullptr;
}

std::string toolFolder()
{
    std::error_code error;
    const std::filesystem::path tool = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : standalone::folderOf(tool.string());
}

std::string libraryFolder()
{
    return standalone::folderOf(toolFolder()) + "/lib";
}

} // namespace cli
