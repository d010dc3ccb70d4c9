#include "standalone/ConfigurationFile.h"

#include "standalone/StoredText.h"
#include "standalone/Utf8.h"

#include <sqlite3.h>

namespace standalone {

namespace {

// What marks a database as ours, in its header: "KEST", and the version of the table below.
constexpr long long kApplicationId = 0x4B455354;
constexpr long long kLayoutVersion = 1;
constexpr char kMakeLayout[] = "CREATE TABLE value (path INTEGER NOT NULL, key TEXT NOT NULL, text TEXT NOT NULL, "
                               "PRIMARY KEY (path, key)) STRICT, WITHOUT ROWID;"
                               "PRAGMA application_id = 1262834516;"
                               "PRAGMA user_version = 1;";
static_assert(kApplicationId == 1262834516);

const char* remedyFor(int code)
{
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "close the program that uses it and try again";
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_CANTOPEN:
    case SQLITE_AUTH:
        return "make it and its folder writable";
    case SQLITE_FULL:
    case SQLITE_IOERR:
        return "make room on its disk, or mend the disk, and try again";
    case SQLITE_NOMEM:
        return "close other programs and try again";
    default:
        return "move it away to start with new lists";
    }
}

} // namespace

ConfigurationFile::ConfigurationFile() noexcept = default;
ConfigurationFile::~ConfigurationFile() = default;

void ConfigurationFile::CloseConnection::operator()(sqlite3* open) const noexcept
{
    sqlite3_close(open); // undoes a transaction that was not committed
}

void ConfigurationFile::FinalizeStatement::operator()(sqlite3_stmt* statement) const noexcept
{
    sqlite3_finalize(statement);
}

bool ConfigurationFile::begin(const std::string& path, Access access, std::chrono::milliseconds patience)
{
    sqlite3* opened = nullptr;
    const int flags = SQLITE_OPEN_PRIVATECACHE |
                      (access == Access::kRead ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) |
                      (access == Access::kCreate ? SQLITE_OPEN_CREATE : 0);
    const int code = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
    connection.reset(opened);
    if (code != SQLITE_OK) {
        return fail();
    }
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_busy_timeout(opened, static_cast<int>(patience.count()));
    const bool readOnly = sqlite3_db_readonly(opened, "main") == 1;
    return execute("PRAGMA synchronous = FULL") && execute(readOnly ? "BEGIN" : "BEGIN IMMEDIATE") && recognise();
}

bool ConfigurationFile::recognise()
{
    long long tables = 0;
    long long application = 0;
    long long version = 0;
    if (!wholeNumber("SELECT count(*) FROM sqlite_schema", tables) ||
        !wholeNumber("PRAGMA application_id", application) || !wholeNumber("PRAGMA user_version", version)) {
        return false;
    }
    empty = tables == 0;
    if (!empty && application != kApplicationId) {
        return refuse("it belongs to another program; move it away to start with new lists");
    }
    if (!empty && version != kLayoutVersion) {
        return refuse("it has the layout version " + std::to_string(version) + " and this host knows version " +
                      std::to_string(kLayoutVersion) + "; use the host that wrote it, or move it away");
    }
    return true;
}

ConfigurationFile::Reading ConfigurationFile::read(int selector, const std::wstring& key, std::wstring& text)
{
    if (empty) {
        return Reading::kMissing;
    }
    const std::string storedKey = storedText(key);
    if (!prepare(reader, "SELECT text FROM value WHERE path = ? AND key = ?") ||
        !bindKey(reader.get(), selector, storedKey)) {
        return Reading::kFailed;
    }
    const int code = sqlite3_step(reader.get());
    if (code == SQLITE_DONE) {
        sqlite3_reset(reader.get());
        return Reading::kMissing;
    }
    if (code != SQLITE_ROW) {
        fail();
        return Reading::kFailed;
    }
    const bool isText = sqlite3_column_type(reader.get(), 0) == SQLITE_TEXT;
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(reader.get(), 0));
    if (isText && bytes == nullptr) { // out of memory
        fail();
        return Reading::kFailed;
    }
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(reader.get(), 0));
    auto wide = isText ? textFromStored(std::string_view(bytes, size)) : std::nullopt;
    sqlite3_reset(reader.get());
    if (!wide) {
        refuse("the value of " + displayable(key) + " is not text in UTF-8; move it away to start with new lists");
        return Reading::kFailed;
    }
    text = std::move(*wide);
    return Reading::kFound;
}

bool ConfigurationFile::write(int selector, const std::wstring& key, const std::wstring& text)
{
    if (empty && !execute(kMakeLayout)) {
        return false;
    }
    empty = false;
    const std::string storedKey = storedText(key);
    const std::string stored = storedText(text);
    if (!prepare(writer, "INSERT INTO value (path, key, text) VALUES (?, ?, ?) "
                         "ON CONFLICT (path, key) DO UPDATE SET text = excluded.text") ||
        !bindKey(writer.get(), selector, storedKey)) {
        return false;
    }
    if (sqlite3_bind_text64(writer.get(), 3, stored.data(), stored.size(), SQLITE_TRANSIENT, SQLITE_UTF8) !=
            SQLITE_OK ||
        sqlite3_step(writer.get()) != SQLITE_DONE) {
        return fail();
    }
    sqlite3_reset(writer.get());
    return true;
}

bool ConfigurationFile::commit()
{
    return execute("COMMIT");
}

bool ConfigurationFile::execute(const char* sql)
{
    return sqlite3_exec(connection.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK || fail();
}

bool ConfigurationFile::prepare(Statement& statement, const char* sql)
{
    if (statement) {
        return true;
    }
    sqlite3_stmt* prepared = nullptr;
    const int code = sqlite3_prepare_v2(connection.get(), sql, -1, &prepared, nullptr);
    statement.reset(prepared);
    return code == SQLITE_OK || fail();
}

bool ConfigurationFile::bindKey(sqlite3_stmt* statement, int selector, const std::string& key)
{
    sqlite3_reset(statement);
    return (sqlite3_bind_int(statement, 1, selector) == SQLITE_OK &&
            sqlite3_bind_text64(statement, 2, key.data(), key.size(), SQLITE_TRANSIENT, SQLITE_UTF8) == SQLITE_OK) ||
           fail();
}

bool ConfigurationFile::wholeNumber(const char* sql, long long& number)
{
    Statement statement;
    if (!prepare(statement, sql)) {
        return false;
    }
    if (sqlite3_step(statement.get()) != SQLITE_ROW) {
        return fail();
    }
    number = sqlite3_column_int64(statement.get(), 0);
    return true;
}

bool ConfigurationFile::fail()
{
    const int code = connection ? sqlite3_extended_errcode(connection.get()) : SQLITE_NOMEM;
    const char* text = connection ? sqlite3_errmsg(connection.get()) : sqlite3_errstr(code);
    return refuse(std::string(text) + "; " + remedyFor(code));
}

bool ConfigurationFile::refuse(std::string what)
{
    reason = std::move(what);
    return false;
}

} // namespace standalone
