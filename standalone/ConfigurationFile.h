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

    /// Opens `path` and starts the transaction, which keeps every other writer out. Waits for locks up to `patience`,
    /// here and in commit(). A file that may not be written can still be read. With `create` a missing file is made.
    bool begin(const std::string& path, bool create, std::chrono::milliseconds patience);

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
