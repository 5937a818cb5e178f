// What the main thread knows of the list: a copy of its rows, kept in step by patches. Texts of cells come on demand.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "results/results_model.h"

namespace kelvane {

// One row in view, as small as a million of them want it.
struct RowEntry {
    ItemId item{};
    std::uint32_t group = 0;  // its number
    std::uint16_t state = 0;  // item_state
    std::uint8_t tag = noTag;
    bool approximate = false;  // its group was compared approximately

    [[nodiscard]] bool isTicked() const { return (state & item_state::ticked) != 0; }
    [[nodiscard]] bool isSelected() const { return (state & item_state::selected) != 0; }
    friend bool operator==(const RowEntry&, const RowEntry&) = default;
};

// Counts and sums of the whole list.
struct ListFigures {
    std::uint32_t rows = 0;   // in view
    std::uint32_t items = 0;  // hidden ones included
    std::uint32_t groups = 0;
    std::uint32_t hidingFlags = 0;  // hiding_flag
    MarkSum ticked, selected;       // in view
    bool grouped = true;
    bool tickBoxes = true;
    bool canUndo = false, canRedo = false;
};

// The rows from `first` on, `before` of them, are replaced by `entries`; the rest stays. With as many entries as rows
// they only changed.
struct RowPatch {
    Row first = 0;
    Row before = 0;
    std::vector<RowEntry> entries;
    ListFigures figures;
};

// On the main thread.
class RowMirror {
public:
    [[nodiscard]] Row count() const { return static_cast<Row>(rows_.size()); }
    [[nodiscard]] const RowEntry& at(Row row) const { return rows_[row]; }
    [[nodiscard]] const ListFigures& figures() const { return figures_; }
    // Whether a row is the first of its group.
    [[nodiscard]] bool beginsGroup(Row row) const { return row == 0 || rows_[row - 1].group != rows_[row].group; }
    // Where the item is; nothing for one out of view. Costs a pass over the rows.
    [[nodiscard]] std::optional<Row> find(ItemId item) const;
    void apply(RowPatch patch);

private:
    std::vector<RowEntry> rows_;
    ListFigures figures_;
};

}  // namespace kelvane
