#include "cleanup/metadata_loss.h"

#include <algorithm>
#include <string_view>

namespace kelvane {

namespace {

// The time of its making, which Windows keeps; as good as every file has one of its own.
constexpr std::string_view madeWhen = "kelvane.created";

}  // namespace

std::uint8_t metadataLossBetween(const FileMetadata& item, const FileMetadata& kept)
{
    const bool owner = item.owner != kept.owner || item.group != kept.group;
    const bool attributes = std::any_of(item.attributes.begin(), item.attributes.end(), [&](const auto& one) {
        return one.first != madeWhen && !std::binary_search(kept.attributes.begin(), kept.attributes.end(), one);
    });
    return static_cast<std::uint8_t>(
        (owner ? metadata_loss::owner : 0U) | (item.permissions != kept.permissions ? metadata_loss::permissions : 0U) |
        (item.modified != kept.modified ? metadata_loss::times : 0U) | (attributes ? metadata_loss::attributes : 0U));
}

}  // namespace kelvane
