#include "ui/core/row_mirror.h"

#include <algorithm>
#include <utility>

namespace kelvane {

std::optional<Row> RowMirror::find(ItemId item) const
{
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [item](const RowEntry& entry) { return entry.item == item; });
    if (found == rows_.end())
        return std::nullopt;
    return static_cast<Row>(found - rows_.begin());
}

void RowMirror::apply(RowPatch patch)
{
    figures_ = patch.figures;
    const auto from = rows_.begin() + patch.first;
    const std::size_t common = std::min<std::size_t>(patch.before, patch.entries.size());
    if (patch.first == 0 && patch.before == rows_.size()) {
        rows_ = std::move(patch.entries);
        return;
    }
    const auto middle = patch.entries.begin() + static_cast<std::ptrdiff_t>(common);
    const auto after = std::copy(patch.entries.begin(), middle, from);
    if (patch.before > common)
        rows_.erase(after, from + patch.before);
    else
        rows_.insert(after, middle, patch.entries.end());
}

}  // namespace kelvane
