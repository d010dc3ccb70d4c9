#include "engines/python/StartEnvironment.h"

#include <array>
#include <cstdlib>
#include <unistd.h>

namespace engines {

StandardLibrary findStandardLibrary(const std::string& libraryFile, const std::string& version)
{
    const std::string shortVersion = version.substr(0, version.find('.', version.find('.') + 1));
    const std::string name = "python" + shortVersion;
    std::string looked;
    // The prefix is what stands before a folder "lib": the innermost one that has the library counts.
    for (std::size_t end = libraryFile.rfind("/lib"); end != std::string::npos && end > 0;
         end = libraryFile.rfind("/lib", end - 1)) {
        const std::string home = libraryFile.substr(0, end);
        for (const std::string& folder : {home + "/lib/" + name, home + "/lib64/" + name}) {
            if (::access((folder + "/encodings/__init__.py").c_str(), R_OK) == 0) {
                return {home, ""};
            }
        }
        looked = home + "/lib/" + name;
    }
    return {"", "the standard library of Python " + shortVersion + " is not installed: " +
                    (looked.empty() ? "it is not found beside " + libraryFile : looked + " is not there") +
                    "; install the Debian package lib" + name + "-stdlib"};
}

StartEnvironment::StartEnvironment(const std::string& home)
{
    set("PYTHONHOME", home.c_str());
    set("PYTHONUTF8", "1");
    set("PYTHONCOERCECLOCALE", "0");
    set("PYTHONPATH", nullptr); // it goes into the search path after the start
}

StartEnvironment::~StartEnvironment()
{
    for (const auto& [name, value] : before) {
        if (value) {
            ::setenv(name.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name.c_str());
        }
    }
}

void StartEnvironment::set(const char* name, const char* value)
{
    const char* const now = std::getenv(name);
    before.emplace_back(name, now != nullptr ? std::optional<std::string>(now) : std::nullopt);
    if (value != nullptr) {
        ::setenv(name, value, 1);
    } else {
        ::unsetenv(name);
    }
}

std::string StartEnvironment::changes() const
{
    std::string list;
    for (const auto& [name, value] : before) {
        list += name + (value ? "=" + *value : "");
        list.push_back('\0');
    }
    return list;
}

} // namespace engines
