// What happened in the stand-alone host during one run, in order, for reports and tests.
#pragma once

#include "standalone/PackedTexts.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
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

/// The entries of one run in the order in which they happened. What every bundle brings is kept packed, and unpacked
/// for who asks.
class Journal
{
public:
    /// Adds `entry` and returns its index, by which it can be amended later.
    template <typename Entry>
    std::size_t add(Entry entry)
    {
        all.emplace_back(std::make_unique<JournalEntry>(std::move(entry)));
        return all.size() - 1;
    }

    /// Adds a ManifestRead that was opened.
    std::size_t addRead(std::wstring_view path);
    /// Adds a CommandAnnounced.
    std::size_t addAnnouncement(std::wstring_view name, int kind);

    /// The entry at `index`, to be changed before the next one is added; null when there is none of this kind: the
    /// journal may have been cleared meanwhile. Announcements stay as they are.
    template <typename Entry>
    Entry* amend(std::size_t index)
    {
        static_assert(!std::is_same_v<Entry, CommandAnnounced>);
        return index < all.size() ? std::get_if<Entry>(unpackedForChange(index)) : nullptr;
    }

    std::size_t size() const noexcept { return all.size(); }
    JournalEntry at(std::size_t index) const { return unpacked(all.at(index)); }

    /// The entries from the index `begin` on.
    std::vector<JournalEntry> since(std::size_t begin) const;

    /// Forgets all entries, and gives their memory back.
    void clear() noexcept;

    /// The entries of one kind, in order.
    template <typename Entry>
    std::vector<Entry> only() const
    {
        std::vector<Entry> found;
        for (const Kept& kept : all) {
            if (isOfKind<Entry>(kept)) {
                found.push_back(std::get<Entry>(unpacked(kept)));
            }
        }
        return found;
    }

    /// How many entries of one kind there are.
    template <typename Entry>
    std::size_t count() const
    {
        return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), isOfKind<Entry>));
    }

private:
    /// A manifest that was opened and is not known to be malformed.
    struct PackedRead
    {
        std::string_view path;
    };
    struct PackedAnnouncement
    {
        std::string_view name;
        int kind;
    };
    using Kept = std::variant<PackedRead, PackedAnnouncement, std::unique_ptr<JournalEntry>>;

    template <typename Entry>
    static bool isOfKind(const Kept& kept)
    {
        if (const auto* const entry = std::get_if<std::unique_ptr<JournalEntry>>(&kept)) {
            return std::holds_alternative<Entry>(**entry);
        }
        return std::holds_alternative<PackedRead>(kept) ? std::is_same_v<Entry, ManifestRead>
                                                        : std::is_same_v<Entry, CommandAnnounced>;
    }
    static JournalEntry unpacked(const Kept& kept);
    JournalEntry* unpackedForChange(std::size_t index);

    std::vector<Kept> all;
    PackedTexts texts; ///< of the packed entries
};

} // namespace standalone
