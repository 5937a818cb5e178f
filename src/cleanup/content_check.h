// The byte by byte comparison before something goes.
#pragma once

#include <cstddef>
#include <memory>

#include "base/cancel.h"
#include "platform/held_files.h"

namespace kelvane {

// Keeps its buffers from one comparison to the next. One thread.
class ContentCheck {
public:
    // Both are of this size; one that proves to be shorter makes them different. `cancelled` between two chunks.
    [[nodiscard]] Result<bool> areEqual(HeldFile& a, HeldFile& b, FileSize size, const CancelFlag& cancel);

private:
    std::unique_ptr<std::byte[]> ofA_, ofB_;
};

}  // namespace kelvane
