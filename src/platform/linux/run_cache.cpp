#include <algorithm>
#include <map>
#include <mutex>
#include <tuple>
#include <utility>

#include "platform/linux/adapters.h"
#include "platform/linux/cache_file.h"
#include "platform/linux/cache_table.h"

namespace kelvane {
namespace {

using linux_os::CacheFile;
using linux_os::CacheRow;
using linux_os::CacheRowFinder;
using linux_os::SqliteDatabase;
using Value = std::vector<std::byte>;

// What is written at a time: enough that a transaction costs little beside it, little enough to lose.
constexpr std::size_t batchBytes = 4 * 1024 * 1024;
constexpr std::size_t rowBytes = 4 * 1024;  // that a row counts for beyond its value

// What may wait for another process to be done with the file; beyond that it is not kept.
constexpr std::size_t mostWaitingBytes = 16 * batchBytes;

// How often the file is waited for in a row. A process that was stopped in the midst of writing would otherwise cost
// every single look the whole time.
constexpr int mostWaits = 4;

constexpr std::int64_t ticksPerDay = 24 * 60 * 60 * ticksPerSecond;

// A file, whatever it holds at the time.
using FileKey = std::tuple<CachedKind, std::uint64_t, std::uint64_t>;

FileKey fileOf(const RunCacheKey& key)
{
    return {key.kind, key.identity.volume, key.identity.index};
}

int primary(int code)
{
    return code & 0xFF;
}

class SqliteRunCache final : public RunCache {
public:
    SqliteRunCache(CacheFile file, SqliteDatabase database, std::uint64_t largestBytes, const Clock& clock)
        : file_(std::move(file)),
          database_(std::move(database)),
          largestBytes_(largestBytes),
          today_(clock.now().ticks / ticksPerDay),
          mayWrite_(!database_.isReadOnly())
    {
    }
    ~SqliteRunCache() override;
    SqliteRunCache(const SqliteRunCache&) = delete;
    SqliteRunCache& operator=(const SqliteRunCache&) = delete;

    std::optional<Value> find(const RunCacheKey& key) override;
    void put(const RunCacheKey& key, std::span<const std::byte> value) override;
    void flush() override;

private:
    // Under the lock, all of them.
    [[nodiscard]] std::optional<CacheRow> rowOf(const RunCacheKey& key);
    void writeDue();
    [[nodiscard]] int writeAll();
    [[nodiscard]] int writeRows();
    void note(int code);
    void renew();
    void forgetWaiting();

    const CacheFile file_;
    std::mutex mutex_;
    SqliteDatabase database_;
    CacheRowFinder finder_;  // on the database: it goes first
    const std::uint64_t largestBytes_;
    const std::int64_t today_;
    std::map<FileKey, CacheRow> waiting_;  // put, and not written yet
    std::size_t waitingBytes_ = 0;
    std::size_t triedBytes_ = 0;         // that were waiting when the file was last found busy
    std::vector<std::int64_t> touched_;  // rows that were last used on another day
    bool mayWrite_ = true;
    int waits_ = 0;
    int generation_ = 0;  // of the file: 1 after it was made anew
};

SqliteRunCache::~SqliteRunCache()
{
    try {
        flush();
    } catch (const std::bad_alloc&) {
        // What is due is not kept.
    }
}

std::optional<Value> SqliteRunCache::find(const RunCacheKey& key)
{
    if (!key.identity.known())
        return std::nullopt;
    std::unique_lock lock(mutex_);
    const int generation = generation_;
    const std::optional<CacheRow> row = rowOf(key);
    lock.unlock();
    if (!row || row->key != key)
        return std::nullopt;
    std::optional<Value> value = unpackValue(key, row->value);
    if (!value) {
        lock.lock();
        if (generation == generation_)
            renew();
    }
    return value;
}

std::optional<CacheRow> SqliteRunCache::rowOf(const RunCacheKey& key)
{
    if (const auto waiting = waiting_.find(fileOf(key)); waiting != waiting_.end())
        return waiting->second;
    if (!database_.isOpen())
        return std::nullopt;
    CacheRow row;
    const int code = finder_.find(database_, key, row);
    note(code);
    if (code != SQLITE_OK)
        return std::nullopt;
    if (mayWrite_ && row.usedOn != today_ && row.key == key)
        touched_.push_back(row.id);
    return row;
}

void SqliteRunCache::put(const RunCacheKey& key, std::span<const std::byte> value)
{
    if (!key.identity.known() || value.size() > linux_os::largestCachedValue)
        return;
    CacheRow row{0, key, today_, linux_os::packValue(key, value)};
    const std::scoped_lock lock(mutex_);
    if (!mayWrite_ || !database_.isOpen())
        return;
    waitingBytes_ += rowBytes + row.value.bytes.size();
    waiting_.insert_or_assign(fileOf(key), std::move(row));
    if (waitingBytes_ >= triedBytes_ + batchBytes)
        writeDue();
}

void SqliteRunCache::flush()
{
    const std::scoped_lock lock(mutex_);
    writeDue();
}

void SqliteRunCache::writeDue()
{
    if (!mayWrite_ || !database_.isOpen())
        return forgetWaiting();
    const int generation = generation_;
    int code = writeAll();
    note(code);
    if (generation != generation_ && database_.isOpen()) {
        code = writeAll();
        note(code);
    }
    if (code == SQLITE_OK)
        forgetWaiting();
    else if (primary(code) == SQLITE_BUSY && waitingBytes_ < mostWaitingBytes)
        triedBytes_ = waitingBytes_;
    else
        forgetWaiting();
    // A full volume, one that may not be written to, a failing one: for this run it stays so.
    if (code != SQLITE_OK && primary(code) != SQLITE_BUSY)
        mayWrite_ = false;
}

int SqliteRunCache::writeAll()
{
    int code = database_.execute("BEGIN IMMEDIATE");
    if (code == SQLITE_OK)
        code = writeRows();
    if (code == SQLITE_OK)
        code = database_.execute("COMMIT");
    if (code != SQLITE_OK && database_.isInTransaction())
        (void)database_.execute("ROLLBACK");  // fails only where the next one to open the file does it
    return code;
}

int SqliteRunCache::writeRows()
{
    std::vector<const CacheRow*> rows;
    for (const auto& [file, row] : waiting_)
        rows.push_back(&row);
    int code = markCacheRowsUsed(database_, touched_, today_);
    if (code == SQLITE_OK)
        code = insertCacheRows(database_, rows);
    return code == SQLITE_OK ? keepCacheWithin(database_, largestBytes_) : code;
}

// Draws the conclusions from what an operation ended with.
void SqliteRunCache::note(int code)
{
    switch (primary(code)) {
    case SQLITE_OK:
    case SQLITE_DONE:
        if (std::exchange(waits_, 0) >= mostWaits)
            sqlite3_busy_timeout(database_.get(), linux_os::cacheBusyMilliseconds);
        break;
    case SQLITE_BUSY:
        if (++waits_ == mostWaits)
            sqlite3_busy_timeout(database_.get(), 0);
        break;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_TOOBIG:  // a length that was never written
    case SQLITE_ERROR:   // a table that is no longer there
        renew();
        break;
    default:
        if (code == SQLITE_READONLY_DBMOVED)
            renew();
        break;
    }
}

// Once a run: a volume that damages what is written to it is left alone.
void SqliteRunCache::renew()
{
    touched_.clear();
    finder_.forget();
    if (generation_++ > 0 || !file_.renew(database_))
        database_.close();
    mayWrite_ = database_.isOpen() && !database_.isReadOnly();
}

void SqliteRunCache::forgetWaiting()
{
    waiting_.clear();
    touched_.clear();
    waitingBytes_ = 0;
    triedBytes_ = 0;
}

class SqliteRunCaches final : public RunCaches {
public:
    SqliteRunCaches(std::filesystem::path file, const Clock& clock) : file_(std::move(file)), clock_(clock) {}

    Result<std::unique_ptr<RunCache>> open(std::uint64_t largestBytes) override
    {
        SqliteDatabase database;
        if (Status opened = file_.open(database); !opened)
            return opened.error();
        return std::unique_ptr<RunCache>(
            std::make_unique<SqliteRunCache>(file_, std::move(database), largestBytes, clock_));
    }
    Result<RunCacheFigures> figures() override { return file_.figures(); }
    Status clear() override { return file_.clear(); }

private:
    CacheFile file_;
    const Clock& clock_;
};

}  // namespace

std::unique_ptr<RunCaches> makeSqliteRunCaches(std::filesystem::path file, const Clock& clock)
{
    return std::make_unique<SqliteRunCaches>(std::move(file), clock);
}

}  // namespace kelvane
