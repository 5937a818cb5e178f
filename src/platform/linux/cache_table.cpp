#include "platform/linux/cache_table.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace kelvane::linux_os {
namespace {

constexpr std::int64_t applicationId = 0x4B6C7643;

// Raised with every change of the layout; a file of any other version is made anew.
constexpr std::int64_t layoutVersion = 2;  // 1 was packed in another way

constexpr const char* table =
    "CREATE TABLE value(id INTEGER PRIMARY KEY, kind INTEGER NOT NULL, volume INTEGER NOT NULL, file INTEGER NOT NULL,"
    " size INTEGER NOT NULL, modified INTEGER NOT NULL, changed INTEGER NOT NULL, shape INTEGER NOT NULL,"
    " used INTEGER NOT NULL, length INTEGER NOT NULL, digest INTEGER NOT NULL, data BLOB NOT NULL,"
    " UNIQUE(kind, volume, file))";

// In the order in which rows go. Of those used on one day the newest go first: a scan over more documents than there
// is room for then finds the same ones every time, where letting the oldest go would find none at all.
constexpr const char* index = "CREATE INDEX leaving ON value(used, id DESC)";

constexpr const char* removeSome =
    "DELETE FROM value WHERE id IN (SELECT id FROM value ORDER BY used, id DESC LIMIT 16)";

std::int64_t stored(std::uint64_t number)
{
    return static_cast<std::int64_t>(number);
}

CacheRow rowAt(const SqliteStatement& found, const RunCacheKey& key)
{
    CacheRow row;
    row.id = found.integer(0);
    row.key = {key.kind,           key.identity,       {static_cast<std::uint64_t>(found.integer(1))},
               {found.integer(2)}, {found.integer(3)}, static_cast<std::uint64_t>(found.integer(4))};
    row.usedOn = found.integer(5);
    row.value = {found.block(8), static_cast<std::uint64_t>(found.integer(6)),
                 static_cast<std::uint32_t>(found.integer(7))};
    return row;
}

struct Pages {
    std::int64_t size = 0, count = 0, free = 0;
    [[nodiscard]] std::int64_t used() const { return count - free; }
};

int countPages(SqliteDatabase& database, Pages& pages)
{
    int code = database.query("PRAGMA page_size", pages.size);
    if (code == SQLITE_OK)
        code = database.query("PRAGMA page_count", pages.count);
    if (code == SQLITE_OK)
        code = database.query("PRAGMA freelist_count", pages.free);
    return code;
}

}  // namespace

int createCacheTable(SqliteDatabase& database)
{
    // Pages that fall free can be given back without writing the whole file anew.
    const std::string statements =
        "PRAGMA auto_vacuum=INCREMENTAL; BEGIN IMMEDIATE; PRAGMA application_id=" + std::to_string(applicationId) +
        ';' + table + ';' + index + "; PRAGMA user_version=" + std::to_string(layoutVersion) + "; COMMIT";
    return database.execute(statements.c_str());
}

int judgeCacheTable(SqliteDatabase& database, bool& isSound)
{
    std::int64_t application = 0, version = 0;
    std::string layout;
    int code = database.query("PRAGMA application_id", application);
    if (code == SQLITE_OK)
        code = database.query("PRAGMA user_version", version);
    if (code == SQLITE_OK)
        code = database.query("SELECT group_concat(sql, ';') FROM (SELECT sql FROM sqlite_schema "
                              "WHERE sql IS NOT NULL ORDER BY type DESC, name)",
                              layout);
    isSound = application == applicationId && version == layoutVersion && layout == std::string(table) + ';' + index;
    return code;
}

int CacheRowFinder::find(SqliteDatabase& database, const RunCacheKey& key, CacheRow& row)
{
    constexpr std::string_view sql = "SELECT id, size, modified, changed, shape, used, length, digest, data FROM value "
                                     "WHERE kind = ? AND volume = ? AND file = ?";
    SqliteStatement found = statement_ ? *std::exchange(statement_, {}) : SqliteStatement(database, sql);
    found.bind(static_cast<std::int64_t>(key.kind)).bind(stored(key.identity.volume)).bind(stored(key.identity.index));
    const int code = found.step();
    if (code == SQLITE_ROW)
        row = rowAt(found, key);
    // One that failed is not used again.
    if (code == SQLITE_ROW || code == SQLITE_DONE) {
        found.restart();  // or the file would stay locked
        statement_ = std::move(found);
    }
    return code == SQLITE_ROW ? SQLITE_OK : code;
}

int insertCacheRows(SqliteDatabase& database, std::span<const CacheRow* const> rows)
{
    SqliteStatement insert(database,
                           "INSERT OR REPLACE INTO value(kind, volume, file, size, modified, changed, shape, used, "
                           "length, digest, data) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    int code = SQLITE_OK;
    for (const CacheRow* row : rows) {
        insert.bind(static_cast<std::int64_t>(row->key.kind));
        for (const std::uint64_t number : {row->key.identity.volume, row->key.identity.index, row->key.size.bytes})
            insert.bind(stored(number));
        insert.bind(row->key.modified.ticks).bind(row->key.changed.ticks).bind(stored(row->key.shape));
        insert.bind(row->usedOn).bind(stored(row->value.length)).bind(std::int64_t{row->value.digest});
        insert.bind(std::span(row->value.bytes));
        code = insert.run();
        if (code != SQLITE_OK)
            break;
        insert.restart();
    }
    return code;
}

int markCacheRowsUsed(SqliteDatabase& database, std::span<const std::int64_t> ids, std::int64_t day)
{
    SqliteStatement update(database, "UPDATE value SET used = ? WHERE id = ?");
    int code = SQLITE_OK;
    for (const std::int64_t id : ids) {
        code = update.bind(day).bind(id).run();
        if (code != SQLITE_OK)
            break;
        update.restart();
    }
    return code;
}

int keepCacheWithin(SqliteDatabase& database, std::uint64_t largestBytes)
{
    Pages pages;
    int code = countPages(database, pages);
    if (code != SQLITE_OK || pages.size <= 0)
        return code;
    const auto most = static_cast<std::int64_t>(largestBytes / static_cast<std::uint64_t>(pages.size));
    if (pages.count <= most)
        return SQLITE_OK;
    const std::int64_t kept = most - most / 10;  // some room at a time, lest every batch begin with it
    for (bool isLeft = true; code == SQLITE_OK && isLeft && pages.used() > kept;) {
        code = database.execute(removeSome);
        isLeft = sqlite3_changes(database.get()) > 0;
        if (code == SQLITE_OK)
            code = countPages(database, pages);
    }
    const std::string giveBack =
        "PRAGMA incremental_vacuum(" + std::to_string(std::max<std::int64_t>(pages.count - most, 1)) + ')';
    return code == SQLITE_OK ? database.execute(giveBack.c_str()) : code;
}

int countCacheRows(SqliteDatabase& database, std::int64_t& rows)
{
    return database.query("SELECT count(*) FROM value", rows);
}

}  // namespace kelvane::linux_os
