#include "cleanup/trashless.h"

#include <algorithm>
#include <map>
#include <optional>
#include <unordered_set>
#include <utility>

#include "cleanup/plan_check.h"

namespace kelvane {
namespace {

// Where nothing tells the volume each folder is asked about.
using VolumeName = std::pair<std::uint64_t, std::filesystem::path>;

VolumeName volumeOf(const ShellItem& item)
{
    const FileIdentity identity = item.info().identity;
    return identity.known() ? VolumeName{identity.volume, {}} : VolumeName{0, item.path().parent_path()};
}

// The highest folder above the item that lies on the same volume.
std::filesystem::path placeOf(const ShellItem& item, FileSystem& files)
{
    std::filesystem::path place = item.path().parent_path();
    const FileIdentity identity = item.info().identity;
    while (identity.known() && place.has_relative_path()) {
        const auto above = files.details(place.parent_path(), Links::followed);
        if (!above || above->identity.volume != identity.volume)
            break;
        place = place.parent_path();
    }
    return place;
}

std::vector<ItemId> rowsOf(std::span<const TrashlessVolume> volumes, const CleanupPlan& plan)
{
    std::unordered_set<ItemId> without;
    for (const TrashlessVolume& volume : volumes)
        without.insert(volume.rows.begin(), volume.rows.end());
    std::vector<ItemId> rows;
    for (const CleanupCommand& command : plan.commands) {
        if (command.action == CleanupAction::recycle && without.contains(command.item))
            rows.push_back(command.item);
    }
    return rows;
}

}  // namespace

std::vector<TrashlessVolume> volumesWithoutTrash(const CleanupPlan& plan, const ResultsModel& model,
                                                 FileOperations& operations, FileSystem& files)
{
    std::vector<TrashlessVolume> volumes;
    std::map<VolumeName, std::optional<std::size_t>> known;  // in `volumes`; nothing for one that has a trash
    for (const CleanupCommand& command : plan.commands) {
        if (command.action != CleanupAction::recycle)
            continue;
        const ShellItem& item = model.item(command.item).file.item();
        const auto [found, isNew] = known.try_emplace(volumeOf(item));
        if (isNew) {
            const Status able = operations.canTrash(item.path());
            if (!able && able.error().kind != ErrorKind::notSupported) {
                known.erase(found);  // this says nothing of its neighbours
                continue;
            }
            if (!able) {
                found->second = volumes.size();
                volumes.push_back({placeOf(item, files), able.error().detail, 0, 0, {}});
            }
        }
        if (!found->second)
            continue;
        TrashlessVolume& volume = volumes[*found->second];
        ++volume.items;
        volume.bytes += command.bytes;
        volume.rows.push_back(command.item);
    }
    return volumes;
}

void leaveTrashlessAlone(CleanupPlan& plan, std::span<const TrashlessVolume> volumes, const ResultsModel& model,
                         const CleanupFacts& facts)
{
    std::vector<CleanupSkip> skipped;
    for (const ItemId row : rowsOf(volumes, plan))
        skipped.push_back({row, CleanupObstacle::noTrash});
    leaveAlone(plan, skipped, model, facts);
}

void deleteTrashlessForGood(CleanupPlan& plan, std::span<const TrashlessVolume> volumes)
{
    const std::vector<ItemId> rows = rowsOf(volumes, plan);
    auto next = rows.begin();
    for (CleanupCommand& command : plan.commands) {
        if (next == rows.end() || *next != command.item)
            continue;
        command.action = CleanupAction::deletePermanently;
        ++next;
    }
}

}  // namespace kelvane
