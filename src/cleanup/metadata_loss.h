// What a link in the place of a file would not keep of it.
#pragma once

#include <cstdint>

#include "cleanup/cleanup_plan.h"
#include "platform/held_files.h"

namespace kelvane {

// Bits of metadata_loss: a link to `kept` shows that file's owner, permissions and times in the place of the item's.
// Times of access do not count, since looking at a file changes them; of attributes only those that the item has.
[[nodiscard]] std::uint8_t metadataLossBetween(const FileMetadata& item, const FileMetadata& kept);

}  // namespace kelvane
