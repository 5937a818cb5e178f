// A console program's view of a running scan.
#pragma once

#include <mutex>
#include <optional>
#include <vector>

#include "cli/console.h"
#include "cli/options.h"
#include "cli/progress_line.h"
#include "engine/scan_observer.h"

namespace kelvane {

// Draws the progress and keeps what was skipped. The files are kept only where they will be listed: there may be many.
class ScanWatch final : public ScanObserver {
public:
    ScanWatch(const Console& console, const Clock& clock, const ScanRequest& request);

    void progress(const ScanProgress& progress) override;
    void ended() override;
    void skipped(const SkippedItem& item) override;
    void undescribed(const SkippedItem& item) override;

    // Erases the progress line; to be called before anything else is written.
    void finish();
    [[nodiscard]] const std::vector<SkippedItem>& skippedItems() const { return skipped_; }

private:
    bool keepSkipped_;
    std::optional<ProgressLine> line_;
    std::mutex mutex_;  // skipped() also comes from reading threads
    std::vector<SkippedItem> skipped_;
};

}  // namespace kelvane
