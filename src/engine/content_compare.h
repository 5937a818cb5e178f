// Contents of two files, byte by byte.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "engine/compared_ranges.h"
#include "engine/engine_options.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// The numbers are fixed: they appear in the answers of comparing.
enum class ContentResult : std::int32_t {
    equal = 0,
    different = 1,
    sampleReadFailed = 30,
    sampleSeekFailed = 40,
    headReadFailed = 50,
    openFailed = 100,
    cancelled = -1,
};

// Reads and compares the ranges of compared_ranges.h in chunks of 64 KiB. Two sizes 0 are equal without opening
// anything, two different sizes differ. Files that are no longer as the walk saw them once they are read are different.
// Offline files, items of portable devices and entries of archives above the options' limit are not opened
// (openFailed). Not thread-safe (two buffers); make one a thread.
class ContentComparer {
public:
    ContentComparer(ShellNamespace& shell, const EngineOptions& options, const CancelFlag& cancel);
    [[nodiscard]] ContentResult compare(const ShellItem& a, const ShellItem& b);
    // Whether the last comparison left bytes out.
    [[nodiscard]] bool sampled() const { return sampled_; }
    [[nodiscard]] const CancelFlag& cancel() const { return cancel_; }
    // Bytes read by all comparisons so far, both files counted.
    [[nodiscard]] std::uint64_t bytesRead() const { return bytesRead_; }

private:
    [[nodiscard]] ContentResult compareRanges(ContentReader& a, ContentReader& b, std::span<const ByteRange> ranges);
    // A failed read is told as one of the head.
    [[nodiscard]] ContentResult compareRange(ContentReader& a, ContentReader& b, std::uint64_t length);

    ShellNamespace& shell_;
    const EngineOptions& options_;
    const CancelFlag& cancel_;
    std::vector<std::byte> bufferA_, bufferB_;
    bool sampled_ = false;
    std::uint64_t bytesRead_ = 0;
};

// Opens an item for comparing under the rules above; shared by every way of reading contents.
[[nodiscard]] Result<std::unique_ptr<ContentReader>> openForComparing(ShellNamespace& shell, const ShellItem& item,
                                                                      const EngineOptions& options);

// Whether an open file still has the size, modification time and identity that the item was listed with. True for
// streams that cannot tell.
[[nodiscard]] bool stillAsSeen(const ContentReader& reader, const ShellItem& item);

}  // namespace kelvane
