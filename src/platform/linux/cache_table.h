// The table in the file of the cache between runs: its layout, and what is done with its rows. All functions give
// codes of SQLite.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/linux/packed_value.h"
#include "platform/linux/sqlite_database.h"
#include "platform/run_cache.h"

namespace kelvane::linux_os {

// Makes the empty table with all that marks the file as one of this program; nothing of it may be there yet.
[[nodiscard]] int createCacheTable(SqliteDatabase& database);

// Whether the file has exactly that layout, in this version; SQLITE_OK alone says that `isSound` is known.
[[nodiscard]] int judgeCacheTable(SqliteDatabase& database, bool& isSound);

struct CacheRow {
    std::int64_t id = 0;
    RunCacheKey key;
    std::int64_t usedOn = 0;  // a day, counted from anywhere
    PackedValue value;
};

// Looks rows up by one statement that is made once: to make it takes longer than to run it.
class CacheRowFinder {
public:
    // The row of that file, whatever its size and times are; SQLITE_DONE when there is none.
    [[nodiscard]] int find(SqliteDatabase& database, const RunCacheKey& key, CacheRow& row);
    // Before the connection is closed or becomes another one.
    void forget() { statement_.reset(); }

private:
    std::optional<SqliteStatement> statement_;
};

// In place of what there is of the same file. `row.id` is left out of account.
[[nodiscard]] int insertCacheRows(SqliteDatabase& database, std::span<const CacheRow* const> rows);

[[nodiscard]] int markCacheRowsUsed(SqliteDatabase& database, std::span<const std::int64_t> ids, std::int64_t day);

// Makes the file no larger than that, where need be by letting go of rows.
[[nodiscard]] int keepCacheWithin(SqliteDatabase& database, std::uint64_t largestBytes);

[[nodiscard]] int countCacheRows(SqliteDatabase& database, std::int64_t& rows);

}  // namespace kelvane::linux_os
