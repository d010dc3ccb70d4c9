// What every fuzz target is made of.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// A target: a rule of the product that must hold for any input. `run` throws Broken when it does not.
struct Target
{
    std::string name; ///< of its folders of inputs
    void (*run)(std::string_view bytes);
};

/// The targets that are linked into this program.
std::vector<Target>& targets();

/// Adds a target when the program starts.
struct Register
{
    Register(const char* name, void (*run)(std::string_view bytes)) { targets().push_back({name, run}); }
};

/// Makes the process fit for targets: locale and HOME. Once, before the first run.
void prepareProcess();

/// A rule that does not hold.
struct Broken : std::logic_error
{
    using std::logic_error::logic_error;
};

inline void require(bool holds, const std::string& rule)
{
    if (!holds) {
        throw Broken(rule);
    }
}

std::string shown(const std::string& text);
std::string shown(const std::wstring& text);
std::string shown(const std::vector<std::string>& lines);

template <typename Value>
void requireEqual(const Value& actual, const Value& expected, const std::string& rule)
{
    if (actual != expected) {
        throw Broken(rule + "\n  actual:   " + shown(actual) + "\n  expected: " + shown(expected));
    }
}

} // namespace fuzz
