#include "platform/linux/trash.h"

#include <cerrno>
#include <climits>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/open_folders.h"
#include "platform/linux/os_error.h"
#include "platform/linux/rename_calls.h"
#include "platform/linux/trash_note.h"
#include "platform/linux/whole_writes.h"

namespace kelvane::linux_os {
namespace {

namespace fs = std::filesystem;

constexpr unsigned mostAttempts = 50;
// For file systems with names shorter than usual, as those that encrypt them.
constexpr std::size_t shortName = 120;

bool isTaken(int folder, const std::string& name)
{
    return identityAt(folder, name).ok();
}

void removeNote(const TrashPlace& place, const std::string& name)
{
    ::unlinkat(place.info.get(), (name + noteEnding).c_str(), 0);
}

FileHandle createNote(int info, const std::string& name)
{
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    return FileHandle(uninterrupted([&] { return ::openat(info, (name + noteEnding).c_str(), flags, 0600); }));
}

// Who makes the note has the name. The name is told before: a note that nobody knows of would stay for ever after a
// crash.
Result<std::string> reserveName(const TrashPlace& place, const std::string& wanted, const std::string& note,
                                const Placing& placing)
{
    std::size_t longest = NAME_MAX;
    for (unsigned attempt = 0; attempt < mostAttempts; ++attempt) {
        std::string name = trashName(wanted, attempt, longest);
        if (isTaken(place.files.get(), name) || isTaken(place.info.get(), name + noteEnding))
            continue;
        if (const Status told = placing(place.folder / "files" / name); !told)
            return told.error();
        const FileHandle file = createNote(place.info.get(), name);
        if (!file.valid() && errno == ENAMETOOLONG && longest > shortName)
            longest = shortName;
        else if (!file.valid() && errno != EEXIST)
            return osError(errno);
        if (!file.valid())
            continue;
        if (const Status written = writeAll(file.get(), std::as_bytes(std::span(note))); !written) {
            removeNote(place, name);
            return written.error();
        }
        return name;
    }
    return osError(EEXIST);
}

// Relative to the top of the volume where the trash is the volume's. Where a path is too long for the kernel to tell it
// without links it may seem to lie elsewhere, and is written as it was given: a note must not lead upwards.
fs::path placeInNote(const TrashItem& item, const TrashPlace& place)
{
    const fs::path whole = item.folderPath / item.name;
    if (place.top.empty())
        return whole;
    fs::path below = whole.lexically_relative(place.top);
    return below.empty() || *below.begin() == ".." ? whole : below;
}

// Names were exchanged between the last look and the move: what came is somebody else's, and goes back.
TrashMove takeBack(const TrashItem& item, const TrashPlace& place, const std::string& name)
{
    if (renameToFree({place.files.get(), name}, {item.folder, item.name})) {
        removeNote(place, name);
        return {notThatFile(), std::nullopt};
    }
    return {notThatFile(), place.folder / "files" / name};
}

TrashMove moveReserved(const TrashItem& item, const TrashPlace& place, const std::string& name)
{
    const fs::path trashed = place.folder / "files" / name;
    if (const Status moved = renameToFree({item.folder, item.name}, {place.files.get(), name}); !moved) {
        removeNote(place, name);
        return {moved.error(), std::nullopt};
    }
    const Result<FileIdentity> arrived = identityAt(place.files.get(), name);
    if (arrived && *arrived != item.identity)
        return takeBack(item, place, name);
    return {std::nullopt, trashed};
}

// One name in a trash, from its path there.
struct TrashedName {
    FileHandle files;
    FileHandle info;
    std::string name;
};

Result<TrashedName> openTrashed(const fs::path& trashed)
{
    const fs::path files = trashed.parent_path();
    TrashedName opened;
    opened.name = trashed.filename().native();
    if (files.filename() != "files" || opened.name.empty())
        return osError(EINVAL);
    Result<FileHandle> filesFolder = openForNames(files);
    Result<FileHandle> infoFolder = openForNames(files.parent_path() / "info");
    if (!filesFolder || !infoFolder)
        return filesFolder ? infoFolder.error() : filesFolder.error();
    opened.files = std::move(*filesFolder);
    opened.info = std::move(*infoFolder);
    return opened;
}

Status removeNoteOf(const TrashedName& trashed)
{
    const std::string note = trashed.name + noteEnding;
    return ::unlinkat(trashed.info.get(), note.c_str(), 0) == 0 || errno == ENOENT ? Status() : Status(osError(errno));
}

}  // namespace

Error notThatFile()
{
    return {ErrorKind::changed, ESTALE, "it is no longer the file that was looked at"};
}

Result<FileIdentity> identityAt(int folder, const std::string& name)
{
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0)
        return osError(errno);
    return FileIdentity{status.st_dev, status.st_ino};
}

TrashMove moveToTrash(const TrashItem& item, const TrashPlace& place, const Placing& placing)
{
    const std::string note = trashNote(placeInNote(item, place), std::time(nullptr));
    const Result<std::string> name = reserveName(place, item.name, note, placing);
    return name ? moveReserved(item, place, *name) : TrashMove{name.error(), std::nullopt};
}

// What the trash still notes of an item that is back does no harm, so that failing to remove it is no failure.
Status restoreFromTrash(const fs::path& trashed, const fs::path& place)
{
    const Result<TrashedName> from = openTrashed(trashed);
    if (!from)
        return from.error();
    const Result<FileHandle> folder = openForNames(place.parent_path());
    if (!folder)
        return folder.error();
    if (!place.has_filename())
        return osError(EINVAL);
    // Looked at first, since between volumes the kernel does not say that there is nothing. Not looked at afterwards:
    // the place is open to others again, and what they put there is not to be moved.
    const NameIn there{from->files.get(), from->name};
    if (const Result<FileIdentity> seen = identityAt(there.folder, there.name); !seen)
        return seen.error();
    if (const Status moved = renameToFree(there, {folder->get(), place.filename().native()}); !moved)
        return moved;
    static_cast<void>(removeNoteOf(*from));
    return {};
}

Status forgetInTrash(const fs::path& trashed)
{
    const Result<TrashedName> opened = openTrashed(trashed);
    if (!opened)
        return opened.error().kind == ErrorKind::notFound ? Status() : Status(opened.error());
    return isTaken(opened->files.get(), opened->name) ? Status() : removeNoteOf(*opened);
}

}  // namespace kelvane::linux_os
