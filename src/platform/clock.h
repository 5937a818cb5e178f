// Port: time.
#pragma once

#include <cstdint>

#include "base/file_time.h"

namespace kelvane {

class Clock {
public:
    virtual ~Clock() = default;
    // Milliseconds since some fixed moment, never going back.
    [[nodiscard]] virtual std::uint64_t ticks() const = 0;
    [[nodiscard]] virtual FileTime now() const = 0;
};

}  // namespace kelvane
