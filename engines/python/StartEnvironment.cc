#include "engines/python/StartEnvironment.h"

#include <map>
#include <set>
#include <string_view>
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
            if (::access((looked + "/encodings/__init__.py").c_str(), R_OK) == 0) {
                return {home, ""};
            }
        }
    }
    return {"", "the standard library of Python " + shortVersion + " is not installed: " +
                    (looked.empty() ? "it is not found beside " + libraryFile : looked + " is not there") +
                    "; install the Debian package lib" + name + "-stdlib"};
}

StartEnvironment::StartEnvironment(const std::string& home)
{
    std::set<std::string> disturbing;
    for (char** entry = ::environ; *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        if (text.starts_with("PYTHON")) {
            disturbing.emplace(text.substr(0, text.find('=')));
        }
    }
    const std::map<std::string, const char*> wanted{{"PYTHONHOME", home.c_str()}, {"PYTHONNOUSERSITE", "1"}};
    for (const auto& [name, value] : wanted) {
        variables.emplace_back(name.c_str(), value);
        disturbing.erase(name);
    }
    for (const std::string& name : disturbing) {
        variables.emplace_back(name.c_str(), nullptr);
    }
}

std::string StartEnvironment::changes() const
{
    std::string list;
    for (const EnvironmentVariable& variable : variables) {
        list += variable.original();
        list.push_back('\0');
    }
    return list;
}

} // namespace engines
