#include "cleanup/touched_volumes.h"

namespace kelvane {
namespace {

// The folder, or the nearest one above it that is still there.
Result<std::unique_ptr<HeldFolder>> openNearest(HeldFiles& files, std::filesystem::path path)
{
    auto folder = files.openFolder(path);
    while (!folder && folder.error().kind == ErrorKind::notFound && path.has_relative_path()) {
        path = path.parent_path();
        folder = files.openFolder(path);
    }
    return folder;
}

}  // namespace

void TouchedVolumes::add(const ShellItem& item)
{
    const auto [at, isNew] = folders_.try_emplace(item.info().identity.volume);
    if (isNew)
        at->second = item.path().parent_path();
}

Status TouchedVolumes::flush(HeldFiles& files) const
{
    Status all;
    for (const auto& [volume, path] : folders_) {
        const auto folder = openNearest(files, path);
        const Status flushed = folder ? (*folder)->flushVolume() : Status(folder.error());
        if (all && !flushed)
            all = flushed;
    }
    return all;
}

}  // namespace kelvane
