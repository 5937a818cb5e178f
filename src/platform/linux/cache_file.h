// The file of the cache between runs: found, judged, made, and made anew when it is not to be trusted.
#pragma once

#include <filesystem>

#include "base/result.h"
#include "platform/linux/sqlite_database.h"
#include "platform/run_cache.h"

namespace kelvane::linux_os {

// Another instance holds the file for as long as one batch takes. Waiting longer than this costs more than doing
// without.
inline constexpr int cacheBusyMilliseconds = 500;

// Holds no connection itself; any number of threads and processes may use the same path. Errors name the file.
class CacheFile {
public:
    explicit CacheFile(std::filesystem::path path);

    // Connects to the file, which is made when it is missing, or of another layout, or damaged as far as that shows
    // at once. One that cannot be written to is opened all the same.
    [[nodiscard]] Status open(SqliteDatabase& database) const;

    // The same for a connection that proved damaged: unless another process has replaced the file meanwhile, it is
    // thrown away first.
    [[nodiscard]] Status renew(SqliteDatabase& database) const;

    // Makes nothing.
    [[nodiscard]] Result<RunCacheFigures> figures() const;

    // Processes that use the file go on with what they have, and begin a new one with their next write.
    [[nodiscard]] Status clear() const;

private:
    enum class State { missing, sound, unusable };

    [[nodiscard]] Result<State> connect(SqliteDatabase& database) const;
    [[nodiscard]] Status openLocked(SqliteDatabase& database) const;
    [[nodiscard]] Status create(SqliteDatabase& database) const;
    [[nodiscard]] Status remove() const;
    [[nodiscard]] Error named(Error error) const;

    std::filesystem::path path_;
};

}  // namespace kelvane::linux_os
