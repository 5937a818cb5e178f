#include "platform/linux/sqlite_database.h"

#include <new>

namespace kelvane::linux_os {
namespace {

// Nothing that a person sets is anywhere near this long; a damaged length must not take all memory.
constexpr int longestValue = 64 * 1024 * 1024;

constexpr auto lockViolation = static_cast<SettingsCode>(33);
constexpr auto diskFull = static_cast<SettingsCode>(112);
constexpr auto storeDamaged = static_cast<SettingsCode>(1015);
constexpr auto deviceError = static_cast<SettingsCode>(1117);

constexpr int primary(int code)
{
    return code & 0xFF;
}

const char* notNull(const void* data)
{
    return data != nullptr ? static_cast<const char*>(data) : "";
}

}  // namespace

int SqliteDatabase::open(const std::filesystem::path& file, int flags, int busyMilliseconds)
{
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(file.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    connection_.reset(opened);
    if (opened == nullptr)
        throw std::bad_alloc();
    if (code != SQLITE_OK) {
        connection_.reset();
        return code;
    }
    sqlite3_extended_result_codes(opened, 1);
    sqlite3_busy_timeout(opened, busyMilliseconds);
    sqlite3_limit(opened, SQLITE_LIMIT_LENGTH, longestValue);
    return SQLITE_OK;
}

int SqliteDatabase::execute(const char* sql)
{
    const int code = sqlite3_exec(get(), sql, nullptr, nullptr, nullptr);
    if (primary(code) == SQLITE_NOMEM)
        throw std::bad_alloc();
    return code;
}

int SqliteDatabase::query(std::string_view sql, std::int64_t& value)
{
    SqliteStatement statement(*this, sql);
    const int code = statement.step();
    if (code == SQLITE_ROW)
        value = statement.integer(0);
    return code == SQLITE_ROW || code == SQLITE_DONE ? SQLITE_OK : code;
}

int SqliteDatabase::query(std::string_view sql, std::string& value)
{
    SqliteStatement statement(*this, sql);
    const int code = statement.step();
    if (code == SQLITE_ROW)
        value = statement.text(0);
    return code == SQLITE_ROW || code == SQLITE_DONE ? SQLITE_OK : code;
}

bool SqliteDatabase::hasMoved() const
{
    int moved = 0;
    return isOpen() && sqlite3_file_control(get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK && moved != 0;
}

SqliteStatement::SqliteStatement(const SqliteDatabase& database, std::string_view sql)
{
    sqlite3_stmt* prepared = nullptr;
    note(sqlite3_prepare_v2(database.get(), sql.data(), static_cast<int>(sql.size()), &prepared, nullptr));
    statement_.reset(prepared);
}

SqliteStatement& SqliteStatement::bind(std::int64_t value)
{
    if (code_ == SQLITE_OK)
        note(sqlite3_bind_int64(statement_.get(), ++bound_, value));
    return *this;
}

SqliteStatement& SqliteStatement::bind(std::string_view text)
{
    // A null pointer would bind NULL.
    if (code_ == SQLITE_OK)
        note(sqlite3_bind_text64(statement_.get(), ++bound_, notNull(text.data()), text.size(), SQLITE_STATIC,
                                 SQLITE_UTF8));
    return *this;
}

SqliteStatement& SqliteStatement::bind(std::span<const std::byte> block)
{
    if (code_ == SQLITE_OK)
        note(sqlite3_bind_blob64(statement_.get(), ++bound_, notNull(block.data()), block.size(), SQLITE_STATIC));
    return *this;
}

int SqliteStatement::step()
{
    if (code_ != SQLITE_OK)
        return code_;
    const int code = sqlite3_step(statement_.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        note(code);
    return code;
}

int SqliteStatement::run()
{
    int code = SQLITE_ROW;
    while (code == SQLITE_ROW)
        code = step();
    return code == SQLITE_DONE ? SQLITE_OK : code;
}

void SqliteStatement::restart()
{
    sqlite3_reset(statement_.get());
    bound_ = 0;
}

std::string SqliteStatement::text(int column) const
{
    const char* data = notNull(sqlite3_column_text(statement_.get(), column));
    return {data, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

std::vector<std::byte> SqliteStatement::block(int column) const
{
    const auto* data = reinterpret_cast<const std::byte*>(notNull(sqlite3_column_blob(statement_.get(), column)));
    return {data, data + sqlite3_column_bytes(statement_.get(), column)};
}

void SqliteStatement::note(int code)
{
    if (primary(code) == SQLITE_NOMEM)
        throw std::bad_alloc();
    code_ = code;
}

SettingsCode settingsCode(int sqliteCode)
{
    switch (primary(sqliteCode)) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return SettingsCode::done;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_CANTOPEN:
        return SettingsCode::accessDenied;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return lockViolation;
    case SQLITE_FULL:
        return diskFull;
    case SQLITE_TOOBIG:
        return SettingsCode::tooLong;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return storeDamaged;
    default:
        return deviceError;
    }
}

bool isDamage(int sqliteCode)
{
    return primary(sqliteCode) == SQLITE_CORRUPT || primary(sqliteCode) == SQLITE_NOTADB;
}

}  // namespace kelvane::linux_os
