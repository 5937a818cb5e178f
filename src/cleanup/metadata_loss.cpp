#include "cleanup/metadata_loss.h"

#include <algorithm>

namespace kelvane {

std::uint8_t metadataLossBetween(const FileMetadata& item, const FileMetadata& kept)
{
    const bool owner = item.owner != kept.owner || item.group != kept.group;
    const bool attributes =
        !std::includes(kept.attributes.begin(), kept.attributes.end(), item.attributes.begin(), item.attributes.end());
    return static_cast<std::uint8_t>(
        (owner ? metadata_loss::owner : 0U) | (item.permissions != kept.permissions ? metadata_loss::permissions : 0U) |
        (item.modified != kept.modified ? metadata_loss::times : 0U) | (attributes ? metadata_loss::attributes : 0U));
}

}  // namespace kelvane
