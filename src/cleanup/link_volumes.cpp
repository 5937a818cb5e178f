#include "cleanup/link_volumes.h"

#include <system_error>

#include "cleanup/item_links.h"
#include "platform/native_text.h"
#include "results/folder_text.h"

namespace kelvane {
namespace {

// 1 for A, 0 without a letter.
std::uint64_t driveNumber(const ShellItem& item, const PathRules& paths)
{
    const std::string path = withoutLongPrefix(bytesFromNative(item.fullName()), paths);
    if (path.size() < 2 || path[1] != ':')
        return 0;
    if (path[0] >= 'a' && path[0] <= 'z')
        return static_cast<std::uint64_t>(path[0] - 'a') + 1;
    return path[0] >= 'A' && path[0] <= 'Z' ? static_cast<std::uint64_t>(path[0] - 'A') + 1 : 0;
}

// Between two places at which one volume is mounted no link is possible, which says nothing of links within either.
bool isBetweenMounts(const Error& error)
{
    return error.systemCode == static_cast<int>(std::errc::cross_device_link);
}

bool speaksOfVolume(const Error& error)
{
    if (isBetweenMounts(error))
        return false;
    return error.kind == ErrorKind::notSupported ||
           (error.kind == ErrorKind::io && error.systemCode == static_cast<int>(std::errc::read_only_file_system));
}

}  // namespace

std::uint64_t volumeKey(const ShellItem& item, const PathRules& paths)
{
    const std::uint64_t drive = driveNumber(item, paths);
    return drive != 0 ? drive : item.info().identity.volume;
}

bool LinkVolumes::refuses(const ShellItem& item) const
{
    return memory_.unlinkableVolumes.contains(volumeKey(item, ports_.paths));
}

void LinkVolumes::failed(const ShellItem& item, const Error& error)
{
    const std::uint64_t key = volumeKey(item, ports_.paths);
    if (key != 0 && (driveNumber(item, ports_.paths) != 0 || speaksOfVolume(error)))
        memory_.unlinkableVolumes.insert(key);
}

bool LinkVolumes::leadsToExternal(const ShellItem& item, const ShellItem& kept)
{
    return !facts(kept).fixed && facts(item).fixed;
}

bool LinkVolumes::isOnNetwork(const ShellItem& item)
{
    return hasNetworkPath(item, ports_.paths) || facts(item).network;
}

const VolumeFacts& LinkVolumes::facts(const ShellItem& item)
{
    const std::uint64_t key = volumeKey(item, ports_.paths);
    const auto known = facts_.find(key);
    if (known != facts_.end() && key != 0)
        return known->second;
    const auto asked = ports_.files.volumeFacts(item.path());
    return facts_[key] = asked ? *asked : VolumeFacts{};
}

}  // namespace kelvane
