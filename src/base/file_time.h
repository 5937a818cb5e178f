// Points in time as the property system counts them.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace kelvane {

// A count of 100-nanosecond intervals since 1601-01-01 00:00 UTC (the FILETIME of Windows); 0 means unknown.
struct FileTime {
    std::int64_t ticks = 0;
    friend auto operator<=>(FileTime, FileTime) = default;
};

inline constexpr std::int64_t ticksPerSecond = 10'000'000;
inline constexpr std::int64_t ticksPerMillisecond = 10'000;

// Converts from seconds and nanoseconds since 1970; the part below 100 ns is cut off.
[[nodiscard]] FileTime fileTimeFromUnix(std::int64_t seconds, std::int64_t nanoseconds) noexcept;

// "2026-11-21T02:31:00.1234567Z": ISO 8601 in UTC; the fraction is left out when it is 0, trailing zeros are kept off.
[[nodiscard]] std::string toIso8601(FileTime time);

}  // namespace kelvane
