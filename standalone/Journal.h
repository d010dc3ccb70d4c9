// What happened in the stand-alone host during one run, in order, for reports and tests.
#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace standalone {

/// The autoloader asked for a reader of the manifest at `path`.
struct ManifestRead
{
    std::wstring path;
    bool opened = false;    ///< false: no reader could be made, `problem` says why
    bool malformed = false; ///< the reader stopped on malformed XML, `problem`, `line` and `column` say why and where
    std::string problem;    ///< UTF-8
    int line = 0;           ///< from 1; 0 when there is none
    int column = 0;         ///< from 1; 0 when there is none
};

/// The dynamic linker was asked for the native module at `path`. Milliseconds, here and below: how long that took.
struct ModuleLoad
{
    std::wstring path;
    bool loaded = false;
    std::string problem; ///< UTF-8; the dynamic-loading interface's own text among others
    int loadType = 0;    ///< set by setKrxLoadType; 0 when it was not called
    double milliseconds = 0;
};

/// An engine loaded the script or managed assembly at `path`, or could not.
struct ScriptLoad
{
    std::wstring path;
    bool loaded = false;
    std::string problem;     ///< UTF-8, one line
    double milliseconds = 0; ///< the start of the engine apart
};

/// An engine has started, once for its life.
struct EngineStart
{
    std::string description; ///< UTF-8; name and version
    double milliseconds = 0;
};

/// The autoloader asked for the library `name` (an engine).
struct EngineOpen
{
    std::wstring name;
    bool opened = false;
    std::string problem; ///< UTF-8
};

/// A LISP expression was handed to the queue.
struct ExpressionQueued
{
    std::wstring expression;
    bool accepted = false;
    std::string problem; ///< UTF-8
};

/// A bundle's command was announced under its name.
struct CommandAnnounced
{
    std::wstring name;
    int kind = 0;
};

/// A module registered a command with a function.
struct CommandRegistered
{
    std::wstring name;
    std::string module; ///< the module that was being loaded; empty when none was
};

/// A legacy menu file was converted, or was not.
struct MenuConversion
{
    std::wstring source;
    std::wstring converted; ///< empty on failure
    std::string problem;    ///< UTF-8
};

/// A configuration value was stored, or was not.
struct ConfigurationWrite
{
    std::wstring key;
    std::wstring before;
    std::wstring after;
    bool stored = false;
    std::string problem; ///< UTF-8
};

/// The host itself has something to say: a folder that cannot be made, a damaged configuration file.
struct HostNotice
{
    std::string text; ///< UTF-8, one sentence, without a line end
};

using JournalEntry = std::variant<ManifestRead, ModuleLoad, ScriptLoad, EngineOpen, EngineStart, ExpressionQueued,
                                  CommandAnnounced, CommandRegistered, MenuConversion, ConfigurationWrite, HostNotice>;

/// The entries of one run in the order in which they happened.
class Journal
{
public:
    /// Adds `entry` and returns its index, by which it can be amended later.
    template <typename Entry>
    std::size_t add(Entry entry)
    {
        all.emplace_back(std::move(entry));
        return all.size() - 1;
    }

    JournalEntry& at(std::size_t index) { return all.at(index); }
    const std::vector<JournalEntry>& entries() const noexcept { return all; }
    void clear() noexcept { all.clear(); }

    /// The entries of one kind, in order.
    template <typename Entry>
    std::vector<Entry> only() const
    {
        std::vector<Entry> found;
        for (const JournalEntry& entry : all) {
            if (const auto* one = std::get_if<Entry>(&entry)) {
                found.push_back(*one);
            }
        }
        return found;
    }

private:
    std::vector<JournalEntry> all;
};

} // namespace standalone
