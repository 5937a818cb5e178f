// The order in which previews that may be one picture stand next to one another.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/cancel.h"
#include "engine/alike_previews.h"

namespace kelvane {

// The place of each preview in the order of looks: by its size first; then alike ones in chains, each next to the ones
// most like it, so that whoever is compared with the one found just before it meets its nearest relatives. Null
// signatures come last. Nothing when cancelled.
[[nodiscard]] std::optional<std::vector<std::uint32_t>> placesByLooks(const AlikePreviews& alikes,
                                                                      const CancelFlag& cancel);

}  // namespace kelvane
