// One transaction on the configuration file, which is an SQLite database.
#pragma once

#include <chrono>
#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace standalone {

/// A connection with one transaction: begin() first, then reads and writes, then commit(). Without commit() the
/// destructor undoes everything. After any failure problem() says what happened and what to do.
class ConfigurationFile
{
public:
    enum class Reading
    {
        kFound,
        kMissing,
        kFailed,
    };

    ConfigurationFile() noexcept;
    ConfigurationFile(const ConfigurationFile&) = delete;
    ConfigurationFile& operator=(const ConfigurationFile&) = delete;
    ~ConfigurationFile();

    enum class Access
    {
        kRead,   ///< nothing is changed on disk
        kWrite,  ///< every other writer is kept out; a file that may not be written can still be read
        kCreate, ///< the same, and a missing file is made
    };

    /// Opens `path` and starts the transaction. Waits for locks up to `patience`, here and in commit().
    bool begin(const std::string& path, Access access, std::chrono::milliseconds patience);

    /// Whether nothing was ever stored in the file.
    bool isEmpty() const noexcept { return empty; }

    Reading read(int selector, const std::wstring& key, std::wstring& text);
    bool write(int selector, const std::wstring& key, const std::wstring& text);

    /// Makes the writes durable.
    bool commit();

    /// Makes `what` the problem; returns false.
    bool refuse(std::string what);

    /// The reason of the last failure, "; " and what to do about it: UTF-8, one line.
    const std::string& problem() const noexcept { return reason; }

private:
    struct CloseConnection
    {
        void operator()(sqlite3* open) const noexcept;
    };
    struct FinalizeStatement
    {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

    bool execute(const char* sql);
    bool prepare(Statement& statement, const char* sql);
    bool bindKey(sqlite3_stmt* statement, int selector, const std::string& key);
    bool recognise();
    bool wholeNumber(const char* sql, long long& number);
    bool fail();

    std::unique_ptr<sqlite3, CloseConnection> connection; // declared first: closed after the statements are gone
    Statement reader;
    Statement writer;
    bool empty = true;
    std::string reason;
};

} // namespace standalone
