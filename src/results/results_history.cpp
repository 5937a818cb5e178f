#include "results/results_history.h"

#include <utility>

namespace kelvane {

std::size_t HistoryStep::bytes() const
{
    return sizeof *this + (toggled.capacity() + removed.capacity()) * sizeof(ItemId) + moved.capacity() * sizeof(Move) +
           (orderBefore.capacity() + orderAfter.capacity()) * sizeof(ItemId);
}

void ResultsHistory::push(HistoryStep step)
{
    if (step.empty())
        return;
    for (const HistoryStep& gone : undone_)
        bytes_ -= gone.bytes();
    undone_.clear();
    bytes_ += step.bytes();
    done_.push_back(std::move(step));
    // The latest step stays whatever it takes: one that cannot be taken back would surprise.
    while (done_.size() > 1 && (done_.size() > mostSteps || bytes_ > mostBytes)) {
        bytes_ -= done_.front().bytes();
        done_.pop_front();
    }
}

void ResultsHistory::clear()
{
    done_.clear();
    undone_.clear();
    bytes_ = 0;
}

const HistoryStep& ResultsHistory::undo()
{
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    return undone_.back();
}

const HistoryStep& ResultsHistory::redo()
{
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    return done_.back();
}

}  // namespace kelvane
