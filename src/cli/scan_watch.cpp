#include "cli/scan_watch.h"

namespace kelvane {

ScanWatch::ScanWatch(const Console& console, const Clock& clock, const ScanRequest& request)
    : keepSkipped_(request.verbose), line_(wantedProgressLine(request.progress, console, clock))
{
}

void ScanWatch::progress(const ScanProgress& progress)
{
    if (line_)
        line_->show(figuresOf(progress));
}

void ScanWatch::ended()
{
    finish();
}

void ScanWatch::skipped(const SkippedItem& item)
{
    if (!keepSkipped_)
        return;
    const std::lock_guard lock(mutex_);
    skipped_.push_back(item);
}

// Listed like what could not be read; counted apart, by the reasons.
void ScanWatch::undescribed(const SkippedItem& item)
{
    skipped(item);
}

void ScanWatch::finish()
{
    if (line_)
        line_->erase();
}

}  // namespace kelvane
