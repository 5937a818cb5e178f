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
    // system's own handling of the fault goes on. `notSupported` where the system has no means for it.
    [[nodiscard]] virtual Status install(const std::filesystem::path& dump) = 0;

    // Writes a dump of the running process, without a fault: for windows that hang. The process goes on.
    [[nodiscard]] virtual Status writeNow(const std::filesystem::path& dump) = 0;
};

}  // namespace kelvane
