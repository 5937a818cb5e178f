// What a scan tells of itself while it runs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/file_size.h"
#include "base/result.h"
#include "platform/shell_item.h"

namespace kelvane {

// Describing belongs to the first phase: it goes on while files are gathered, and is waited for after that.
enum class ScanPhase { gathering = 1, sorting = 2, comparing = 3, describing = 4 };

// How far a phase has come. Totals are 0 while they are not known.
struct ScanProgress {
    ScanPhase phase = ScanPhase::gathering;
    std::uint64_t items = 0;
    std::uint64_t totalItems = 0;
    std::uint64_t bytes = 0;       // read so far
    std::uint64_t totalBytes = 0;  // that may have to be read: an upper bound
};

// A file or folder that was left out, and why.
struct SkippedItem {
    std::string path;  // the native name; UTF-8 on Windows
    Error error;
};

// Told on the scan's own thread (skipped() also on its reading threads, one call at a time). Every method has an empty
// default.
class ScanObserver {
public:
    virtual ~ScanObserver() = default;
    virtual void started() {}
    virtual void ended() {}
    // A line for the status bar.
    virtual void status(std::u16string_view /*text*/) {}
    // The caption of the progress window: the phase, and in phase 1 the number of candidates.
    virtual void caption(std::u16string_view /*text*/) {}
    // At most ten times a second, and once at the end of each phase.
    virtual void progress(const ScanProgress& /*progress*/) {}
    // A notice that is shown once for ever, until the person asks not to see it again.
    virtual void notice(std::u16string_view /*text*/) {}
    virtual void skipped(const SkippedItem& /*item*/) {}
    // A file that took no part since it has no descriptor; the error's detail says why.
    virtual void undescribed(const SkippedItem& /*item*/) {}
    // A sound: the scan took long and is done, or it could not begin.
    enum class Sound { information, error };
    virtual void sound(Sound /*sound*/) {}
    virtual void nothingFound(std::u16string_view /*text*/) {}
};

}  // namespace kelvane
