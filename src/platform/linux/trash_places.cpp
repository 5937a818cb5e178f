#include "platform/linux/trash_places.h"

#include <algorithm>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include "platform/linux/open_folders.h"
#include "platform/linux/os_error.h"
#include "platform/linux/xdg_folders.h"

namespace kelvane::linux_os {
namespace {

namespace fs = std::filesystem;

enum class Missing { isMade, isFine };
enum class Whose { anybodys, own };

bool mayChangeNames(int folder)
{
    return ::faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) == 0;
}

Error noTrash(const std::string& reason)
{
    return {ErrorKind::notSupported, 0, "no trash on this volume: " + reason};
}

// What says that nobody may make one here, rather than that making it failed.
Error placeError(int code)
{
    switch (code) {
    case EACCES:
    case EPERM:
    case EROFS:
    case ELOOP:
    case ENOTDIR:
    case ENOENT:
    case ENOTSUP:
        break;
    default:
        return osError(code);
    }
    Error error = noTrash(osError(code).detail);
    error.systemCode = code;
    return error;
}

// Finds or makes folders, each in the one before. Where missing ones are fine, nothing follows the first of them: an
// invalid handle stands for what could be made.
class FolderMaker {
public:
    explicit FolderMaker(Missing missing) : missing_(missing) {}

    [[nodiscard]] Result<FileHandle> enter(int parent, const std::string& name, Whose whose, int flags = 0) const
    {
        if (parent < 0)
            return FileHandle();
        FileHandle folder = open(parent, name, flags);
        if (!folder.valid() && errno == ENOENT) {
            if (missing_ == Missing::isFine)
                return mayChangeNames(parent) ? Result<FileHandle>(FileHandle()) : placeError(errno);
            if (::mkdirat(parent, name.c_str(), 0700) != 0 && errno != EEXIST)
                return placeError(errno);
            folder = open(parent, name, flags);
        }
        if (!folder.valid())
            return placeError(errno);
        struct stat status {};
        if (::fstat(folder.get(), &status) != 0)
            return osError(errno);
        if (whose == Whose::own && status.st_uid != ::geteuid())
            return noTrash("the folder belongs to somebody else");
        return folder;
    }

    // The two folders of a trash.
    [[nodiscard]] Result<TrashPlace> complete(Result<FileHandle> trash, int flags) const
    {
        if (!trash)
            return trash.error();
        TrashPlace place;
        for (const auto& [name, handle] : {std::pair("files", &place.files), std::pair("info", &place.info)}) {
            Result<FileHandle> folder = enter(trash->get(), name, Whose::anybodys, flags);
            if (!folder)
                return folder.error();
            if (folder->valid() && !mayChangeNames(folder->get()))
                return placeError(errno);
            *handle = std::move(*folder);
        }
        return place;
    }

private:
    static FileHandle open(int parent, const std::string& name, int flags)
    {
        return FileHandle(
            uninterrupted([&] { return ::openat(parent, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC | flags); }));
    }

    Missing missing_;
};

// A path that may be missing in part: what is there, and the names below it.
struct NearestFolder {
    FileHandle folder;
    std::vector<std::string> missing;  // the last one first
};

Result<NearestFolder> nearestFolder(fs::path path)
{
    NearestFolder nearest;
    for (;;) {
        Result<FileHandle> folder = openForNames(path);
        if (folder) {
            nearest.folder = std::move(*folder);
            return nearest;
        }
        if (folder.error().systemCode != ENOENT || !path.has_relative_path())
            return placeError(folder.error().systemCode);
        nearest.missing.push_back(path.filename().native());
        path = path.parent_path();
    }
}

Result<TrashPlace> enterHomeTrash(NearestFolder nearest, const FolderMaker& maker)
{
    Result<FileHandle> folder(std::move(nearest.folder));
    for (auto name = nearest.missing.rbegin(); folder && name != nearest.missing.rend(); ++name)
        folder = maker.enter(folder->get(), *name, Whose::anybodys);
    auto place = maker.complete(std::move(folder), 0);
    if (place)
        place->folder = homeTrash();
    return place;
}

// The shared folder that an administrator made: only with the sticky bit, and never through a link.
Result<TrashPlace> enterSharedTrash(int top, const FolderMaker& maker)
{
    constexpr int flags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const FileHandle shared(uninterrupted([&] { return ::openat(top, ".Trash", flags); }));
    struct stat status {};
    if (!shared.valid() || ::fstat(shared.get(), &status) != 0)
        return placeError(errno);
    if ((status.st_mode & S_ISVTX) == 0)
        return noTrash("the shared folder is not safe");
    return maker.complete(maker.enter(shared.get(), std::to_string(::getuid()), Whose::own, O_NOFOLLOW), O_NOFOLLOW);
}

Result<TrashPlace> enterVolumeTrash(int folder, const FolderMaker& maker)
{
    const Result<FileHandle> top = topFolderOf(folder);
    if (!top)
        return placeError(top.error().systemCode);
    const Result<fs::path> topPath = realPathOf(top->get());
    if (!topPath)
        return topPath.error();
    const std::string user = std::to_string(::getuid());
    fs::path below = fs::path(".Trash") / user;
    auto place = enterSharedTrash(top->get(), maker);
    if (!place) {
        below = ".Trash-" + user;
        place = maker.complete(maker.enter(top->get(), below.native(), Whose::own, O_NOFOLLOW), O_NOFOLLOW);
    }
    if (place) {
        place->folder = *topPath / below;
        place->top = *topPath;
    }
    return place;
}

Result<TrashPlace> enterTrash(int folder, Missing missing)
{
    const FolderMaker maker(missing);
    const Result<MountedVolume> volume = mountedVolumeOf(folder);
    if (!volume)
        return volume.error();
    Result<NearestFolder> home = nearestFolder(homeTrash());
    if (home) {
        const auto homeVolume = mountedVolumeOf(home->folder.get());
        if (homeVolume && *homeVolume == *volume)
            return enterHomeTrash(std::move(*home), maker);
    }
    return enterVolumeTrash(folder, maker);
}

bool isNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

// By its place in somebody's home, or because it has both halves of a trash, whichever program's data it lies in.
bool isTrash(const fs::path& folder)
{
    std::error_code error;
    return folder.native().ends_with("/.local/share/Trash") ||
           (fs::is_directory(folder / "info", error) && fs::is_directory(folder / "files", error));
}

}  // namespace

fs::path homeTrash()
{
    return xdgFolder("XDG_DATA_HOME", ".local/share") / "Trash";
}

Result<TrashPlace> openTrash(int folder)
{
    return enterTrash(folder, Missing::isMade);
}

Status wouldOpenTrash(int folder)
{
    const auto place = enterTrash(folder, Missing::isFine);
    return place ? Status() : Status(place.error());
}

// Wherever it lies: what looks like the top of a volume from here need not have been one for who trashed it.
bool liesInTrash(const fs::path& path)
{
    std::string_view before;
    for (std::string_view rest = path.native(); !rest.empty();) {
        const std::string_view name = rest.substr(0, rest.find('/'));
        const std::size_t end = path.native().size() - rest.size() + name.size();
        if ((name.starts_with(".Trash-") && isNumber(name.substr(7))) || (before == ".Trash" && isNumber(name)))
            return true;
        if (name == "Trash" && isTrash(path.native().substr(0, end)))
            return true;
        before = name;
        rest.remove_prefix(std::min(name.size() + 1, rest.size()));
    }
    return false;
}

}  // namespace kelvane::linux_os
