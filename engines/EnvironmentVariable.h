// Environment variables for the start of an engine.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace engines {

/// While it lives, the environment variable has a value of ours, or none when `value` is null.
class EnvironmentVariable
{
public:
    EnvironmentVariable(const char* variable, const char* value) : name(variable)
    {
        if (const char* found = std::getenv(variable)) {
            before = found;
        }
        set(value);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable() { set(before ? before->c_str() : nullptr); }

    /// As it was, and will be again: NAME=VALUE, or NAME when it was not set.
    std::string original() const { return name + (before ? "=" + *before : ""); }

private:
    void set(const char* value) const
    {
        if (value != nullptr) {
            ::setenv(name.c_str(), value, 1);
        } else {
            ::unsetenv(name.c_str());
        }
    }

    std::string name;
    std::optional<std::string> before;
};

} // namespace engines
