// Watches the list on the thread of its window, and makes patches for the copy of it on the main thread.
#pragma once

#include <optional>

#include "results/results_model.h"
#include "ui/core/row_mirror.h"

namespace kelvane {

// Whatever changes between two patches becomes one: from the first row touched to the last. The model outlives it.
class ListFeed final : public ResultsObserver {
public:
    explicit ListFeed(ResultsModel& model);
    ~ListFeed() override;
    ListFeed(const ListFeed&) = delete;
    ListFeed& operator=(const ListFeed&) = delete;

    // What changed since the last one; nothing when nothing did.
    [[nodiscard]] std::optional<RowPatch> take();

    void rowsReplaced(RowRange before, Row after) override;
    void rowsChanged(RowRange rows) override;
    void countsChanged() override { counts_ = true; }

private:
    void touch(Row first, Row kept);
    [[nodiscard]] RowEntry entryOf(ItemId item) const;

    ResultsModel& model_;
    Row told_ = 0;  // rows that the copy has
    bool rows_ = false, counts_ = true;
    Row first_ = 0;  // row from which on the copy differs
    Row kept_ = 0;   // rows at the end that are the same
};

// What the list's counts and sums are now.
[[nodiscard]] ListFigures figuresOf(const ResultsModel& model);

}  // namespace kelvane
