#include "platform/linux/cache_file.h"

#include <array>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

#include "base/utf.h"
#include "platform/linux/cache_table.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/os_error.h"
#include "platform/linux/private_folders.h"

namespace kelvane::linux_os {
namespace {

using std::filesystem::path;

// The rollback journal is left at its default, DELETE. A write-ahead log needs memory that processes share, which there
// is not between computers that use one home folder over the network, and which ends the program when somebody cuts its
// file short. Nothing is waited for until it is on the disk: a process that is killed leaves a journal as ever, and
// after a power cut the digests tell what became of the file, which is no loss.
constexpr const char* setUp =
    "PRAGMA trusted_schema=OFF; PRAGMA cell_size_check=ON; PRAGMA synchronous=OFF; PRAGMA temp_store=MEMORY";

// What the database library keeps beside the file, and the file itself: in this order, since an old journal would be
// played back into a new file.
constexpr std::array suffixes = {"-journal", "-wal", "-shm", ""};

path withSuffix(path file, const char* suffix)
{
    file += suffix;
    return file;
}

bool isBusy(int code)
{
    return (code & 0xFF) == SQLITE_BUSY;
}

Error sqliteError(int code)
{
    const ErrorKind kind = isDamage(code) ? ErrorKind::invalid
                           : (code & 0xFF) == SQLITE_CANTOPEN || (code & 0xFF) == SQLITE_READONLY
                               ? ErrorKind::accessDenied
                               : ErrorKind::io;
    return {kind, code, sqlite3_errstr(code)};
}

// Keeps other instances from judging and replacing the file at the same moment. Where the folder cannot be locked, or
// somebody keeps it locked, all goes on without: the database library still keeps writers apart.
FileHandle lockFolder(const path& folder)
{
    using namespace std::chrono_literals;
    FileHandle handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int tries = 0; handle.valid() && tries < 50; ++tries) {
        if (::flock(handle.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
            break;
        std::this_thread::sleep_for(10ms);
    }
    return handle;
}

}  // namespace

CacheFile::CacheFile(path path) : path_(std::move(path)) {}

Error CacheFile::named(Error error) const
{
    // That would say that this system has no such cache at all.
    if (error.kind == ErrorKind::notSupported)
        error.kind = ErrorKind::accessDenied;
    error.detail = displayText(path_.native()) + ": " + error.detail;
    return error;
}

Status CacheFile::open(SqliteDatabase& database) const
{
    const path folder = path_.parent_path();
    if (Status made = makeOwnFolder(folder); !made)
        return named(made.error());
    const FileHandle lock = lockFolder(folder);
    return openLocked(database);
}

Status CacheFile::renew(SqliteDatabase& database) const
{
    const FileHandle lock = lockFolder(path_.parent_path());
    const bool isReplaced = database.hasMoved();
    database.close();
    if (!isReplaced) {
        if (Status gone = remove(); !gone)
            return gone;
    }
    return openLocked(database);
}

Status CacheFile::openLocked(SqliteDatabase& database) const
{
    Result<State> state = connect(database);
    if (!state)
        return state.error();
    if (*state == State::sound)
        return {};
    // Missing ones too: what is left of an earlier file must not be played back into the new one.
    if (Status gone = remove(); !gone)
        return gone;
    return create(database);
}

// A database only when the file is sound.
Result<CacheFile::State> CacheFile::connect(SqliteDatabase& database) const
{
    struct stat info {};
    if (::lstat(path_.c_str(), &info) != 0)
        return errno == ENOENT ? Result(State::missing) : named(osError(errno));
    // A link may lead to anywhere, and opening a pipe would wait for its other end.
    if (!S_ISREG(info.st_mode))
        return State::unusable;
    bool isSound = false;
    int code = database.open(path_, SQLITE_OPEN_READWRITE, cacheBusyMilliseconds);
    if (code == SQLITE_OK)
        code = database.execute(setUp);
    if (code == SQLITE_OK)
        code = judgeCacheTable(database, isSound);
    if (code == SQLITE_OK && isSound)
        return State::sound;
    database.close();
    // An error in a statement means that the layout is another one.
    if (code == SQLITE_OK || code == SQLITE_ERROR || isDamage(code))
        return State::unusable;
    return named(sqliteError(code));
}

Status CacheFile::create(SqliteDatabase& database) const
{
    // Made here, since the library would let others read it.
    FileHandle made(::open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!made.valid())
        return named(osError(errno));
    made = FileHandle();
    int code = database.open(path_, SQLITE_OPEN_READWRITE, cacheBusyMilliseconds);
    if (code == SQLITE_OK)
        code = database.execute(setUp);
    if (code == SQLITE_OK)
        code = createCacheTable(database);
    if (code == SQLITE_OK)
        return {};
    database.close();
    return named(sqliteError(code));
}

Status CacheFile::remove() const
{
    for (const char* suffix : suffixes) {
        const path name = withSuffix(path_, suffix);
        if (::unlink(name.c_str()) == 0 || errno == ENOENT)
            continue;
        const int reason = errno;
        if (::rmdir(name.c_str()) != 0)
            return named(osError(reason));
    }
    return {};
}

Result<RunCacheFigures> CacheFile::figures() const
{
    RunCacheFigures figures;
    if (Status own = checkOwnFolder(path_.parent_path()); !own)
        return own.error().kind == ErrorKind::notFound ? Result(figures) : named(own.error());
    for (const char* suffix : suffixes) {
        struct stat info {};
        if (::lstat(withSuffix(path_, suffix).c_str(), &info) == 0 && S_ISREG(info.st_mode))
            figures.bytes += static_cast<std::uint64_t>(info.st_size);
    }
    SqliteDatabase database;
    const Result<State> state = connect(database);
    if (!state)
        return state.error();
    std::int64_t rows = 0;
    if (*state == State::sound && countCacheRows(database, rows) == SQLITE_OK && rows > 0)
        figures.values = static_cast<std::uint64_t>(rows);
    return figures;
}

Status CacheFile::clear() const
{
    if (Status own = checkOwnFolder(path_.parent_path()); !own)
        return own.error().kind == ErrorKind::notFound ? Status() : named(own.error());
    const FileHandle lock = lockFolder(path_.parent_path());
    SqliteDatabase database;
    const Result<State> state = connect(database);
    if (!state && isBusy(state.error().systemCode))
        return state.error();
    // While this process alone may use the file, none is in the midst of writing it.
    const int code = state && *state == State::sound ? database.execute("BEGIN EXCLUSIVE") : SQLITE_OK;
    if (isBusy(code))
        return named(sqliteError(code));
    return remove();
}

}  // namespace kelvane::linux_os
