// SQLite with owners: a connection, and the statements on it. Result codes are SQLite's own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <vector>

#include "platform/settings_store.h"

namespace kelvane::linux_os {

// Used by one thread at a time. Statements on it must be gone before it.
class SqliteDatabase {
public:
    SqliteDatabase() = default;
    // `flags` as for sqlite3_open_v2. Never creates a file unless they say so.
    [[nodiscard]] int open(const std::filesystem::path& file, int flags, int busyMilliseconds);
    void close() { connection_.reset(); }

    [[nodiscard]] bool isOpen() const { return connection_ != nullptr; }
    [[nodiscard]] sqlite3* get() const { return connection_.get(); }
    [[nodiscard]] int execute(const char* sql);
    // The first column of the first row; `value` stays as it is when there is none.
    [[nodiscard]] int query(std::string_view sql, std::int64_t& value);
    [[nodiscard]] int query(std::string_view sql, std::string& value);
    [[nodiscard]] bool isInTransaction() const { return isOpen() && sqlite3_get_autocommit(get()) == 0; }
    [[nodiscard]] bool isReadOnly() const { return isOpen() && sqlite3_db_readonly(get(), "main") != 0; }
    // Whether the file that was opened is no longer the one at its path.
    [[nodiscard]] bool hasMoved() const;

private:
    struct Close {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
    };
    std::unique_ptr<sqlite3, Close> connection_;
};

// One run of one statement. The first failure sticks, and step() tells it; out of memory throws.
class SqliteStatement {
public:
    SqliteStatement(const SqliteDatabase& database, std::string_view sql);

    // The next parameter. What is bound must outlive the statement.
    SqliteStatement& bind(std::int64_t value);
    SqliteStatement& bind(std::string_view text);
    SqliteStatement& bind(std::span<const std::byte> block);

    [[nodiscard]] int step();  // SQLITE_ROW, SQLITE_DONE or an error
    [[nodiscard]] int run();   // to its end: SQLITE_OK or an error
    void restart();            // for another run, with all parameters bound anew

    // Of the current row, columns counted from 0. What a column returns is copied.
    [[nodiscard]] int type(int column) const { return sqlite3_column_type(statement_.get(), column); }
    [[nodiscard]] std::int64_t integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }
    [[nodiscard]] std::string text(int column) const;
    [[nodiscard]] std::vector<std::byte> block(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    void note(int code);

    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    int code_ = SQLITE_OK;
    int bound_ = 0;
};

// The one place where SQLite's codes turn into those of settings; SQLITE_ROW and SQLITE_DONE are successes.
[[nodiscard]] SettingsCode settingsCode(int sqliteCode);

// Whether the code says that the file is no sound database, rather than that it could not be had.
[[nodiscard]] bool isDamage(int sqliteCode);

}  // namespace kelvane::linux_os
