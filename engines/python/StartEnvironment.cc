#include "engines/python/StartEnvironment.h"

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
        for (const char* libraries : {"/lib64/", "/lib/"}) {
            looked = home;
            looked.append(libraries).append(name);
            if (::access(std::string(looked).append("/encodings/__init__.py").c_str(), R_OK) == 0) {
                return {home, ""};
            }
        }
    }
    return {"", "the standard library of Python " + shortVersion + " is not installed: " +
                    (looked.empty() ? "it is not found beside " + libraryFile : looked + " is not there") +
                    "; install the Debian package lib" + name + "-stdlib"};
}

StartEnvironment::StartEnvironment(const std::string& home) : homeFolder("PYTHONHOME", home.c_str()) {}

std::string StartEnvironment::changes() const
{
    std::string list;
    for (const EnvironmentVariable* variable : {&homeFolder, &utf8Mode, &noOtherLocale, &searchPath}) {
        list += variable->original();
        list.push_back('\0');
    }
    return list;
}

} // namespace engines
