#include "standalone/Configuration.h"

#include "standalone/Folders.h"
#include "standalone/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <utility>

namespace standalone {

namespace {

using Clock = std::chrono::steady_clock;

std::chrono::milliseconds remaining(Clock::time_point deadline)
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return std::max(left, std::chrono::milliseconds{0});
}

std::string systemReason(int error)
{
    return displayable(std::string_view(std::strerror(error)));
}

std::string seconds(std::chrono::milliseconds duration)
{
    return duration.count() % 1000 == 0 ? std::to_string(duration.count() / 1000) + " s"
                                        : std::to_string(duration.count()) + " ms";
}

} // namespace

Configuration::Configuration(std::string file, Journal& events, bool rehearsing)
    : path(std::move(file)), journal(events), rehearses(rehearsing)
{
}

Configuration::Turn::Turn(Configuration& store) : configuration(store)
{
    configuration.startTurn();
}

Configuration::Turn::~Turn()
{
    configuration.endTurn();
}

void Configuration::startTurn()
{
    if (depth == 0) {
        transaction.reset();
        lock.release();
        unusable = false;
        wrote = false;
        isLost = false;
        failure.clear();
        writes.clear();
        try {
            openTurn(Clock::now() + patience);
        } catch (...) { // no memory: a turn that never began must not keep others waiting
            transaction.reset();
            lock.release();
            throw;
        }
    }
    ++depth;
}

void Configuration::openTurn(Clock::time_point deadline)
{
    if (path.empty()) {
        giveUp("The configuration cannot be kept", "no configuration file is set; set HOME");
        return;
    }
    if (rehearses || lockFolder(deadline)) {
        openFile(deadline);
    }
}

bool Configuration::lockFolder(Clock::time_point deadline)
{
    const std::string folder = folderOf(path);
    const std::string folderName = "The configuration folder \"" + displayable(std::string_view(folder)) + "\"";
    if (const int error = makeFolders(folder); error != 0) {
        giveUp(folderName + " could not be made", systemReason(error) + "; make it by hand, writable by its owner");
        return false;
    }
    switch (lock.take(folder, deadline)) {
    case FolderLock::Outcome::kBusy:
        giveUp(folderName + " could not be locked",
               "another host used it for more than " + seconds(patience) + "; wait until that host is done");
        return false;
    case FolderLock::Outcome::kFailed:
        giveUp(folderName + " could not be opened", systemReason(errno) + "; make it readable for its owner");
        return false;
    case FolderLock::Outcome::kUnsupported: // the transaction alone keeps others out
    case FolderLock::Outcome::kHeld:
        break;
    }
    return true;
}

void Configuration::openFile(Clock::time_point deadline)
{
    const std::string notReadable =
        "The configuration file \"" + displayable(std::string_view(path)) + "\" could not be read";
    struct stat found
    {
    };
    if (::stat(path.c_str(), &found) != 0) {
        if (errno != ENOENT) {
            giveUp(notReadable, systemReason(errno) + "; make it readable for its owner");
        }
        return; // no file, nothing stored
    }
    if (!S_ISREG(found.st_mode)) { // opening a pipe would wait for its other end
        giveUp(notReadable, "it is not a regular file; move it away");
        return;
    }
    using Access = ConfigurationFile::Access;
    transaction.emplace();
    if (!transaction->begin(path, rehearses ? Access::kRead : Access::kWrite, remaining(deadline))) {
        giveUp(notReadable, transaction->problem());
        transaction.reset();
    }
}

void Configuration::giveUp(const std::string& what, const std::string& problem)
{
    failTurn(what, problem);
    unusable = true;
}

void Configuration::endTurn()
{
    if (--depth > 0) {
        return;
    }
    try {
        if (isLost) {
            tellLoss();
        } else if (wrote && !transaction->commit()) {
            failTurn("The configuration file \"" + displayable(std::string_view(path)) + "\" could not be written",
                     transaction->problem());
        }
    } catch (...) { // no memory for the notice: the file is what it was, which is all that can be promised then
    }
    transaction.reset();
    lock.release();
}

/// Says why the turn is lost when there was no memory to say it at once.
void Configuration::tellLoss()
{
    if (failure.empty()) {
        failTurn("The configuration file \"" + displayable(std::string_view(path)) + "\" could not be read",
                 "out of memory; close other programs and try again");
    }
}

void Configuration::failTurn(const std::string& what, const std::string& problem)
{
    isLost = true; // first: the rest needs memory
    if (failure == problem) {
        return; // said already
    }
    failure = problem;
    journal.add(HostNotice{what + ": " + problem});
    takeBackWrites();
}

void Configuration::takeBackWrites()
{
    for (const std::size_t index : writes) {
        if (auto* entry = journal.amend<ConfigurationWrite>(index); entry != nullptr && entry->stored) {
            entry->stored = false;
            entry->problem = failure;
        }
    }
    writes.clear();
}

std::optional<std::wstring> Configuration::text(int selector, const std::wstring& key)
{
    std::wstring found;
    return read(selector, key, found) == Reading::kFound ? std::optional(std::move(found)) : std::nullopt;
}

Configuration::Reading Configuration::read(int selector, const std::wstring& key, std::wstring& found)
{
    const Turn turn(*this);
    if (unusable) {
        return Reading::kFailed;
    }
    if (const auto kept = rehearsed.find({selector, key}); kept != rehearsed.end()) {
        found = kept->second;
        return Reading::kFound;
    }
    if (!transaction) {
        return Reading::kMissing;
    }
    Reading reading = Reading::kFailed;
    try {
        reading = transaction->read(selector, key, found);
    } catch (...) { // no memory
        loseTurn();
        throw;
    }
    if (reading == Reading::kFailed) {
        failTurn("The configuration file \"" + displayable(std::string_view(path)) + "\" could not be read",
                 transaction->problem());
    }
    return reading;
}

bool Configuration::store(int selector, const std::wstring& key, const std::wstring& text)
{
    std::size_t index = 0;
    {
        const Turn turn(*this);
        ConfigurationWrite entry = writeInTurn(selector, key, text);
        index = journal.add(std::move(entry));
        writes.push_back(index);
    }
    const auto* entry = journal.amend<ConfigurationWrite>(index);
    return entry != nullptr && entry->stored;
}

ConfigurationWrite Configuration::writeInTurn(int selector, const std::wstring& key, const std::wstring& text)
{
    ConfigurationWrite entry{key, L"", text, false, ""};
    Reading reading = Reading::kFailed;
    if (isLost) {
        tellLoss();
    } else {
        reading = read(selector, key, entry.before);
    }
    if (!isLost && rehearses) {
        rehearsed.insert_or_assign({selector, key}, text);
    } else if (!isLost && (reading == Reading::kMissing || entry.before != text)) {
        if (!makeFile() || !transaction->write(selector, key, text)) {
            failTurn("The configuration file \"" + displayable(std::string_view(path)) + "\" could not be written",
                     transaction->problem());
        }
        wrote = true;
    }
    entry.stored = !isLost;
    entry.problem = failure;
    return entry;
}

bool Configuration::makeFile()
{
    if (transaction) {
        return true;
    }
    transaction.emplace();
    if (!transaction->begin(path, ConfigurationFile::Access::kCreate, patience)) {
        return false;
    }
    if (!transaction->isEmpty()) {
        return transaction->refuse("another program wrote it since this turn began; try again");
    }
    return true;
}

void Configuration::noteRefusal(const std::wstring& key, std::string problem)
{
    journal.add(ConfigurationWrite{key, L"", L"", false, std::move(problem)});
}

} // namespace standalone
