#include "ui/core/box_queue.h"

#include <QDialog>

namespace kelvane {

void BoxQueue::open(QDialog* dialog)
{
    waiting_.push_back(dialog);
    if (!shown_)
        openNext();
}

void BoxQueue::openNext()
{
    shown_.clear();
    while (!waiting_.empty() && !shown_) {
        shown_ = waiting_.front();
        waiting_.pop_front();
    }
    if (!shown_)
        return;
    // Queued: whoever waits for the answer has it before the next question comes.
    connect(shown_, &QDialog::finished, this, &BoxQueue::openNext, Qt::QueuedConnection);
    shown_->open();
}

}  // namespace kelvane
