#include "cli/scan_watch.h"

namespace kelvane {
namespace {

constexpr unsigned usualColumns = 80;

}  // namespace

ScanWatch::ScanWatch(const Console& console, const Clock& clock, const ScanRequest& request)
    : keepSkipped_(request.verbose)
{
    const bool wanted = request.progress == ProgressMode::always ||
                        (request.progress == ProgressMode::automatic && console.errorColumns.has_value());
    if (wanted)
        line_.emplace(console.err, clock, console.errorColumns.value_or(usualColumns));
}

void ScanWatch::progress(const ScanProgress& progress)
{
    if (line_)
        line_->show(progress);
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

void ScanWatch::finish()
{
    if (line_)
        line_->erase();
}

}  // namespace kelvane
