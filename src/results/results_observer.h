// Who wants to know what changed in the results.
#pragma once

#include "results/result_item.h"

namespace kelvane {

// Called on the model's thread, after the change, once an operation and kind. An observer must not change the model.
class ResultsObserver {
public:
    virtual ~ResultsObserver() = default;
    // Marks, tags, group numbers or values of these rows changed; each range spans all that did.
    virtual void rowsChanged(RowRange /*rows*/) {}
    // What were the rows `before` are `after` rows now, from the same first one: rows went (after is 0), came
    // (before.count is 0), or came, went and moved between the first and the last row touched.
    virtual void rowsReplaced(RowRange /*before*/, Row /*after*/) {}
    // Counts or sums of marks or items changed; once an operation, after the others.
    virtual void countsChanged() {}
};

}  // namespace kelvane
