// How far long work has come, for a thread that watches it.
#pragma once

#include <atomic>
#include <cstdint>

namespace kelvane {

// In whatever unit the work has; a total of 0 is not known yet. Counted by the thread that works, read by any.
struct WorkCount {
    std::atomic<std::uint32_t> done{0};
    std::atomic<std::uint32_t> total{0};
};

}  // namespace kelvane
