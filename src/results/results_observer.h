// Who wants to know what changed in the results.
#pragma once

#include "results/result_item.h"

namespace kelvane {

// Called on the model's thread at the end of an operation, each function at most once: rowsReplaced(), rowsChanged(),
// countsChanged(). An observer must not change the model.
class ResultsObserver {
public:
    virtual ~ResultsObserver() = default;
    // What were the rows `before` are `after` rows now, from the same first one: rows went (after is 0), came
    // (before.count is 0), or came, went, moved and changed between the first and the last row touched.
    virtual void rowsReplaced(RowRange /*before*/, Row /*after*/) {}
    // Marks, tags, group numbers or values of some of these rows changed, as they stand now. Not called for rows that
    // rowsReplaced() named in the same operation.
    virtual void rowsChanged(RowRange /*rows*/) {}
    // Counts or sums of marks, items or groups, or the flags of what is hidden, changed.
    virtual void countsChanged() {}
};

}  // namespace kelvane
