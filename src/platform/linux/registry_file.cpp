#include "platform/linux/registry_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "base/utf.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/private_folders.h"

namespace kelvane::linux_os {
namespace {

using std::filesystem::path;

// Long enough for another instance that saves everything on a slow disk, short enough for a person who waits.
constexpr int busyMilliseconds = 5000;
constexpr std::int64_t applicationId = 0x4B6C5652;
constexpr std::int64_t schemaVersion = 1;
constexpr int openExisting = SQLITE_OPEN_READWRITE;  // read only where the system allows no more

// A file is input like any other: what it defines may not run anything.
constexpr const char* setUp = "PRAGMA trusted_schema=OFF; PRAGMA foreign_keys=ON; PRAGMA synchronous=FULL";

// The rollback journal is left at its default, DELETE: the write-ahead log needs memory that processes share, which
// there is not between computers that use one home folder over the network.
constexpr const char* schema =
    "PRAGMA application_id=1265391186;"
    "CREATE TABLE section(id INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE, path TEXT NOT NULL);"
    "CREATE TABLE value(id INTEGER PRIMARY KEY,"
    " section INTEGER NOT NULL REFERENCES section(id) ON DELETE CASCADE,"
    " key TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL, data NOT NULL, UNIQUE(section, key));"
    "PRAGMA user_version=1;"
    "COMMIT";
static_assert(applicationId == 1265391186);

constexpr const char* probes[] = {
    "SELECT id, key, path FROM section",
    "SELECT id, section, key, name, type, data FROM value",
};

SettingsCode codeOf(int systemError)
{
    switch (systemError) {
    case 0:
        return SettingsCode::done;
    case ENOSPC:
    case EDQUOT:
        return settingsCode(SQLITE_FULL);
    case EACCES:
    case EPERM:
    case EROFS:
    case ENOENT:
    case ENOTDIR:
    case EEXIST:
    case ELOOP:
        return SettingsCode::accessDenied;
    default:
        return settingsCode(SQLITE_IOERR);
    }
}

bool isTaken(const path& file)
{
    struct stat info {};
    return ::lstat(file.c_str(), &info) == 0;
}

// Keeps other instances from judging and moving the file at the same moment. Where a folder cannot be locked (some
// network file systems) all goes on without: the moment is a short one.
FileHandle lockFolder(const path& folder)
{
    FileHandle handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.valid())
        (void)uninterrupted([&] { return ::flock(handle.get(), LOCK_EX); });
    return handle;
}

path withSuffix(path file, const std::string& suffix)
{
    file += suffix;
    return file;
}

// "registry.db.damaged", "registry.db.damaged-2", ...
path freeName(const path& file)
{
    path name = withSuffix(file, ".damaged");
    for (int number = 2; isTaken(name); ++number)
        name = withSuffix(file, ".damaged-" + std::to_string(number));
    return name;
}

// Whether something could be made in the folder, or in the nearest one above it that is there.
bool mayWriteBelow(path folder)
{
    while (!isTaken(folder) && folder.has_relative_path())
        folder = folder.parent_path();
    struct stat info {};
    return ::stat(folder.c_str(), &info) == 0 && S_ISDIR(info.st_mode) &&
           ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

}  // namespace

RegistryFile::RegistryFile(path path) : path_(std::move(path)) {}

SqliteDatabase* RegistryFile::forReading(SettingsCode& reason)
{
    refresh();
    reason = state_ == State::unavailable ? settingsCode(code_) : SettingsCode::done;
    return state_ == State::sound || state_ == State::newer ? &database_ : nullptr;
}

SqliteDatabase* RegistryFile::forWriting(SettingsCode& reason)
{
    refresh();
    reason = SettingsCode::accessDenied;
    if (state_ == State::missing || state_ == State::damaged)
        reason = prepare();
    else if (state_ == State::unavailable)
        reason = settingsCode(code_);
    else if (state_ == State::sound && !database_.isReadOnly())
        reason = SettingsCode::done;
    return reason == SettingsCode::done ? &database_ : nullptr;
}

void RegistryFile::report(int sqliteCode)
{
    if (!isDamage(sqliteCode) || state_ != State::sound)
        return;
    database_.close();
    state_ = State::damaged;
}

bool RegistryFile::isWritable()
{
    refresh();
    if (state_ == State::newer || state_ == State::unavailable || database_.isReadOnly())
        return false;
    return mayWriteBelow(path_.parent_path());
}

std::string RegistryFile::complaint()
{
    refresh();
    const std::string name = displayText(path_.native());
    switch (state_) {
    case State::damaged:
        return "The settings file " + name +
               " is damaged or is no settings file. It is not read, and will be kept under another name.";
    case State::newer:
        return "The settings file " + name + " was written by a later version of the program. It is not changed.";
    case State::unavailable:
        return "The settings file " + name + " cannot be read: " + sqlite3_errstr(code_) + ".";
    default:
        return keptAs_.empty()
                   ? std::string()
                   : "The settings file " + name + " was damaged or no settings file and was kept as " + keptAs_ + ".";
    }
}

// Another instance may have made, moved or replaced the file meanwhile. What was damaged stays so until it is written
// to: the settings that a person sees should not come and go.
void RegistryFile::refresh()
{
    if (database_.isInTransaction() || state_ == State::damaged)
        return;
    const bool isSame = database_.isOpen() && !database_.hasMoved();
    if (!isSame)
        examine();
}

void RegistryFile::examine()
{
    database_.close();
    code_ = SQLITE_OK;
    struct stat info {};
    if (::stat(path_.c_str(), &info) != 0) {
        const bool isMissing = errno == ENOENT || errno == ENOTDIR;
        code_ = isMissing ? SQLITE_OK : SQLITE_CANTOPEN;
        state_ = isMissing ? State::missing : State::unavailable;
        return;
    }
    // Opening a pipe would wait for its other end.
    if (!S_ISREG(info.st_mode)) {
        state_ = State::damaged;
        return;
    }
    code_ = database_.open(path_, openExisting, busyMilliseconds);
    const State judged = code_ == SQLITE_OK ? judge() : State::unavailable;
    state_ = isDamage(code_) ? State::damaged : code_ == SQLITE_OK ? judged : State::unavailable;
    if (state_ != State::sound && state_ != State::newer)
        database_.close();
}

RegistryFile::State RegistryFile::judge()
{
    std::int64_t application = 0, version = 0, tables = 0;
    code_ = database_.execute(setUp);
    if (code_ == SQLITE_OK)
        code_ = database_.query("PRAGMA application_id", application);
    if (code_ == SQLITE_OK)
        code_ = database_.query("PRAGMA user_version", version);
    if (code_ == SQLITE_OK)
        code_ = database_.query("SELECT count(*) FROM sqlite_schema", tables);
    return code_ == SQLITE_OK ? judgeVersion(application, version, tables) : State::unavailable;
}

RegistryFile::State RegistryFile::judgeVersion(std::int64_t application, std::int64_t version, std::int64_t tables)
{
    if (application == 0 && version == 0 && tables == 0)
        return State::missing;  // an instance was stopped between making the file and its tables
    if (application != applicationId || version < 1)
        return State::damaged;
    if (version > schemaVersion)
        return State::newer;
    for (const char* probe : probes) {
        if (SqliteStatement(database_, probe).step() == SQLITE_ERROR)
            return State::damaged;
    }
    std::int64_t programs = 0;
    std::string verdict;
    code_ = database_.query("SELECT count(*) FROM sqlite_schema WHERE type IN ('trigger', 'view')", programs);
    if (code_ == SQLITE_OK)
        code_ = database_.query("PRAGMA quick_check(1)", verdict);
    return programs == 0 && verdict == "ok" ? State::sound : State::damaged;
}

SettingsCode RegistryFile::prepare()
{
    const path folder = path_.parent_path();
    if (const int error = makePrivateFolders(folder); error != 0)
        return codeOf(error);
    const FileHandle lock = lockFolder(folder);
    return prepareLocked();
}

SettingsCode RegistryFile::prepareLocked()
{
    examine();  // another instance may have been first
    SettingsCode code = state_ == State::damaged ? setAside() : SettingsCode::done;
    if (code == SettingsCode::done && state_ == State::missing)
        code = createFile();
    if (code != SettingsCode::done)
        return code;
    if (state_ == State::unavailable)
        return settingsCode(code_);
    return state_ == State::sound && !database_.isReadOnly() ? SettingsCode::done : SettingsCode::accessDenied;
}

// What the database library keeps beside a file goes with it: an old journal would otherwise be played back into the
// new file.
SettingsCode RegistryFile::setAside()
{
    const path kept = freeName(path_);
    for (const char* suffix : {"-journal", "-wal", "-shm", ""}) {
        if (::rename(withSuffix(path_, suffix).c_str(), withSuffix(kept, suffix).c_str()) != 0 && errno != ENOENT)
            return codeOf(errno);
    }
    keptAs_ = displayText(kept.native());
    state_ = State::missing;
    return SettingsCode::done;
}

SettingsCode RegistryFile::createFile()
{
    // Made here, since the library would let others read it.
    FileHandle made(::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!made.valid())
        return codeOf(errno);
    made = FileHandle();
    const SettingsCode code = createTables();
    if (code == SettingsCode::done)
        examine();
    return code;
}

SettingsCode RegistryFile::createTables()
{
    int code = database_.open(path_, openExisting, busyMilliseconds);
    if (code == SQLITE_OK)
        code = database_.execute("BEGIN IMMEDIATE");
    std::int64_t tables = 0;
    if (code == SQLITE_OK)
        code = database_.query("SELECT count(*) FROM sqlite_schema", tables);
    if (code == SQLITE_OK)
        code = database_.execute(tables == 0 ? schema : "ROLLBACK");
    database_.close();
    return settingsCode(code);
}

}  // namespace kelvane::linux_os
