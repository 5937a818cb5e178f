#include "cleanup/touched_volumes.h"

namespace kelvane {

void TouchedVolumes::add(const ShellItem& item)
{
    const auto [at, isNew] = folders_.try_emplace(item.info().identity.volume);
    if (isNew)
        at->second = item.path().parent_path();
}

Status TouchedVolumes::flush(HeldFiles& files) const
{
    for (const auto& [volume, path] : folders_) {
        const auto folder = files.openFolder(path);
        const Status flushed = folder ? (*folder)->flushVolume() : Status(folder.error());
        if (!flushed)
            return flushed;
    }
    return {};
}

}  // namespace kelvane
