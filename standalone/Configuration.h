// The stand-alone host's configuration store: texts by path selector and key, kept in one SQLite file.
#pragma once

#include "standalone/ConfigurationFile.h"
#include "standalone/FolderLock.h"
#include "standalone/Journal.h"

#include "host/ErrorStatus.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace standalone {

/// What TarvixConfig::getValue() and setValue() answer beside eOk, eInvalidInput and eOutOfMemory.
inline constexpr Kest::ErrorStatus kKeyNotFound = static_cast<Kest::ErrorStatus>(40);
inline constexpr Kest::ErrorStatus kStoreFailed = static_cast<Kest::ErrorStatus>(41);

/// The store. It is used in turns: within a turn no other host reads or writes it, and what is written there is kept
/// as a whole or not at all. The first read or write that fails undoes the turn and refuses its later writes, because
/// a menu list that could not be read looks empty to whoever writes it back. Failures are notices in the journal.
class Configuration
{
public:
    using Reading = ConfigurationFile::Reading;

    /// `file` is absolute; it is made by the first write, and its folder, if missing, by the first turn. Nothing is
    /// touched before that. `events` must outlive the store. A store that rehearses reads the file, and keeps what is
    /// written for itself.
    Configuration(std::string file, Journal& events, bool rehearsing = false);
    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

    /// While it lives, the turn is this host's; turns may be nested, the outermost counts. What was written is made
    /// durable when it ends, also when an exception ends it. A turn that cannot be had within the patience still
    /// lives, but each of its reads and writes fails.
    class Turn
    {
    public:
        explicit Turn(Configuration& store);
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn();

    private:
        Configuration& configuration;
    };

    /// How long a turn waits for others; 10 s unless set.
    void setPatience(std::chrono::milliseconds longest) noexcept { patience = longest; }

    /// The text under `key`, or nothing when it is missing or cannot be read. Outside a turn, a turn of its own.
    std::optional<std::wstring> text(int selector, const std::wstring& key);

    /// The same, keeping the two kinds of nothing apart. Writes `found` only when it answers kFound.
    Reading read(int selector, const std::wstring& key, std::wstring& found);

    /// Stores `text` under `key`, and says so in the journal. Outside a turn, a turn of its own. Returns false when
    /// it was refused; within a turn true can still be taken back at its end, which the journal entry then says.
    bool store(int selector, const std::wstring& key, const std::wstring& text);

    /// What was read did not reach whoever asked for it: like a read that failed, this loses the turn.
    void loseTurn() noexcept { isLost = true; }

    /// Notes in the journal that a value for `key` was refused before it came to storing it.
    void noteRefusal(const std::wstring& key, std::string problem);

    const std::string& file() const noexcept { return path; }

private:
    void startTurn();
    void endTurn();
    void openTurn(std::chrono::steady_clock::time_point deadline);
    bool lockFolder(std::chrono::steady_clock::time_point deadline);
    void openFile(std::chrono::steady_clock::time_point deadline);
    void giveUp(const std::string& what, const std::string& problem);
    ConfigurationWrite writeInTurn(int selector, const std::wstring& key, const std::wstring& text);
    bool makeFile();
    void tellLoss();
    void failTurn(const std::string& what, const std::string& problem);
    void takeBackWrites();

    std::string path;
    Journal& journal;
    bool rehearses;
    std::map<std::pair<int, std::wstring>, std::wstring> rehearsed; ///< by selector and key
    std::chrono::milliseconds patience{10'000};

    int depth = 0;
    FolderLock lock;
    std::optional<ConfigurationFile> transaction; ///< none while there is no file
    bool unusable = false;                        ///< the turn was not had: reads fail as well
    bool wrote = false;
    bool isLost = false;             ///< the turn is undone at its end
    std::string failure;             ///< why the turn is lost; empty while it is not, or nobody has said it yet
    std::vector<std::size_t> writes; ///< the turn's entries in the journal
};

} // namespace standalone
