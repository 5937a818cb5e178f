#include "platform/file_operations.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "platform/linux/adapters.h"
#include "platform/linux/anchored_path.h"
#include "platform/linux/file_facts.h"
#include "platform/linux/open_folders.h"
#include "platform/linux/os_error.h"
#include "platform/linux/trash.h"
#include "platform/linux/trash_places.h"

namespace kelvane {
namespace linux_os {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t systemFailure = 0x80070000;

RemovalOutcome failure(const Error& error)
{
    const int number = error.systemCode > 0 && error.systemCode <= 0xFFFF ? error.systemCode : EIO;
    RemovalOutcome outcome;
    outcome.code = static_cast<std::int32_t>(systemFailure | static_cast<std::uint32_t>(number));
    outcome.error = error;
    return outcome;
}

// The folder of an item, held while it is looked at and taken away.
struct ItemFolder {
    fs::path path;      // as it was asked for
    fs::path realPath;  // without links, as far as the kernel can tell
    FileHandle handle;
    MountedVolume volume;
};

Result<ItemFolder> openItemFolder(const fs::path& path)
{
    Result<FileHandle> handle = openForNames(path);
    if (!handle)
        return handle.error();
    const Result<MountedVolume> volume = mountedVolumeOf(handle->get());
    if (!volume)
        return volume.error();
    const Result<fs::path> real = realPathOf(handle->get());
    return ItemFolder{path, real ? *real : path, std::move(*handle), *volume};
}

bool hasName(const fs::path& path)
{
    return path.is_absolute() && path.has_filename() && path.filename() != "." && path.filename() != "..";
}

// One batch: neighbours share their folder, and what lies on one volume shares a trash.
class Batch {
public:
    explicit Batch(Volumes& volumes) : volumes_(volumes) {}

    [[nodiscard]] RemovalOutcome remove(const RemovalItem& item, const Placing& placing)
    {
        if (!hasName(item.path))
            return failure(osError(EINVAL));
        if (const Status entered = enter(item.path.parent_path()); !entered)
            return failure(entered.error());
        const std::string name = item.path.filename().native();
        const Result<FileIdentity> now = identityAt(folder_->handle.get(), name);
        if (!now)
            return failure(now.error());
        if (*now != item.identity)
            return failure(notThatFile());
        return item.removal == Removal::toTrash ? trash(name, item, placing) : erase(name);
    }

private:
    struct KnownTrash {
        MountedVolume volume;
        TrashPlace place;
    };

    Status enter(const fs::path& path)
    {
        if (folder_ && folder_->path == path)
            return {};
        Result<ItemFolder> opened = openItemFolder(path);
        if (!opened)
            return opened.error();
        folder_ = std::make_unique<ItemFolder>(std::move(*opened));
        return {};
    }

    RemovalOutcome trash(const std::string& name, const RemovalItem& item, const Placing& placing)
    {
        const Result<const TrashPlace*> place = placeFor(*folder_);
        if (!place)
            return failure(place.error());
        const TrashItem leaving{folder_->handle.get(), folder_->realPath, name, item.identity};
        const TrashMove move = moveToTrash(leaving, **place, placing);
        RemovalOutcome outcome = move.error ? failure(*move.error) : RemovalOutcome{};
        outcome.trashed = move.trashed;
        return outcome;
    }

    Result<const TrashPlace*> placeFor(const ItemFolder& folder)
    {
        const auto known = std::find_if(trashes_.begin(), trashes_.end(),
                                        [&](const auto& one) { return one->volume == folder.volume; });
        if (known != trashes_.end())
            return &(*known)->place;
        if (volumes_.facts(folder.volume.device, folder.volume.mount).pseudo)
            return pseudoVolume();
        Result<TrashPlace> place = openTrash(folder.handle.get());
        if (!place)
            return place.error();
        trashes_.push_back(std::make_unique<KnownTrash>(KnownTrash{folder.volume, std::move(*place)}));
        return &trashes_.back()->place;
    }

    // Between the look and this call another file may come to have the name: the kernel removes names and not files.
    // The one before, on which the identity was found, is a single call away, and nothing can be closer.
    RemovalOutcome erase(const std::string& name)
    {
        const int folder = folder_->handle.get();
        if (::unlinkat(folder, name.c_str(), 0) == 0)
            return {};
        if (errno == EISDIR && ::unlinkat(folder, name.c_str(), AT_REMOVEDIR) == 0)
            return {};
        return failure(osError(errno));
    }

public:
    static Error pseudoVolume()
    {
        return {ErrorKind::notSupported, ENOTSUP, "the files of this volume are made up by the system"};
    }

private:
    Volumes& volumes_;
    std::unique_ptr<ItemFolder> folder_;
    std::vector<std::unique_ptr<KnownTrash>> trashes_;
};

class LinuxFileOperations final : public FileOperations {
public:
    BatchOutcome remove(std::span<const RemovalItem> items, RemovalSink& sink, const CancelFlag& cancel) override
    {
        BatchOutcome outcome;
        Batch batch(volumes_);
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (cancel.cancelled()) {
                outcome.aborted = true;
                break;
            }
            if (sink.before(i))
                sink.after(i,
                           batch.remove(items[i], [&](const fs::path& trashed) { return sink.placing(i, trashed); }));
        }
        return outcome;
    }

    Status canTrash(const fs::path& path) override
    {
        if (!hasName(path))
            return Error{ErrorKind::notSupported, EINVAL, "this is no file that could go"};
        const Result<ItemFolder> folder = openItemFolder(path.parent_path());
        if (!folder)
            return folder.error();
        if (volumes_.facts(folder->volume.device, folder->volume.mount).pseudo)
            return Batch::pseudoVolume();
        return wouldOpenTrash(folder->handle.get());
    }

    bool isInTrash(const fs::path& path) override;

    Status restore(const fs::path& trashed, const fs::path& place) override { return restoreFromTrash(trashed, place); }
    Status forget(const fs::path& trashed) override { return forgetInTrash(trashed); }

private:
    Volumes volumes_;
};

FileHandle openForPath(const fs::path& path, int flags)
{
    const auto anchored = AnchoredPath::make(path);
    if (!anchored)
        return {};
    return FileHandle(
        uninterrupted([&] { return ::openat(anchored->folder(), anchored->rest(), O_PATH | O_CLOEXEC | flags); }));
}

// Whatever is there of a path, without links. A path that is too long for the kernel to tell is looked at from higher
// up: trashes lie near the top.
fs::path withoutLinks(fs::path path)
{
    fs::path rest;
    for (; path.has_relative_path(); path = path.parent_path()) {
        const FileHandle file = openForPath(path, 0);
        const Result<fs::path> real = file.valid() ? realPathOf(file.get()) : Result<fs::path>(osError(ENOENT));
        if (real)
            return rest.empty() ? *real : *real / rest;
        rest = rest.empty() ? path.filename() : path.filename() / rest;
    }
    return path / rest;
}

bool isLink(const fs::path& path)
{
    const FileHandle file = openForPath(path, O_NOFOLLOW);
    struct stat facts {};
    return file.valid() && ::fstat(file.get(), &facts) == 0 && S_ISLNK(facts.st_mode);
}

// Both where it leads and, should it be a link, where that lies itself.
bool LinuxFileOperations::isInTrash(const fs::path& path)
{
    const std::string home = withoutLinks(homeTrash()).native();
    const auto lies = [&](const fs::path& real) {
        return real == home || real.native().starts_with(home + '/') || liesInTrash(real);
    };
    return lies(withoutLinks(path)) || (isLink(path) && lies(withoutLinks(path.parent_path()) / path.filename()));
}

}  // namespace
}  // namespace linux_os

std::unique_ptr<FileOperations> makeLinuxFileOperations()
{
    return std::make_unique<linux_os::LinuxFileOperations>();
}

}  // namespace kelvane
