// Port: what is left of a crash for the makers of the program to look at.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane {

// A dump is a minidump (Microsoft's published format), which debuggers of every system open.
class CrashCapture {
public:
    virtual ~CrashCapture() = default;

    // From now on a fault that nothing handles leaves a dump in this file, an older one of the name replaced; then the
    // system's own handling of the fault goes on. `notSupported` where the system has no means for it. Call it on the
    // main thread, before there are others: on Linux it starts a process beside this one.
    [[nodiscard]] virtual Status install(const std::filesystem::path& dump) = 0;

    // Makes sure that a fault of the calling thread is captured even when its stack is used up. install() does it for
    // its own thread; a thread that runs deep calls this as it begins.
    virtual void guardThisThread() {}

    // Writes a dump of the running process, without a fault: for windows that hang. The process goes on.
    [[nodiscard]] virtual Status writeNow(const std::filesystem::path& dump) = 0;
};

}  // namespace kelvane
