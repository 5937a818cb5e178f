// The crash capture of Linux with its times, for tests that cannot wait for them.
#pragma once

#include <chrono>
#include <memory>

#include "platform/crash_capture.h"

namespace kelvane::linux_os {

struct CrashTimes {
    std::chrono::milliseconds patience{10'000};   // of a faulting thread with its watcher
    std::chrono::milliseconds leastLife{60'000};  // before a crash, for a new start
};

[[nodiscard]] std::unique_ptr<CrashCapture> makeCrashCapture(const CrashTimes& times);

}  // namespace kelvane::linux_os
