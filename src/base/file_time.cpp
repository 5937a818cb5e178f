#include "base/file_time.h"

#include <chrono>
#include <cstdio>

namespace kelvane {
namespace {

constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;

std::string fractionText(std::int64_t ticks)
{
    if (ticks == 0)
        return {};
    char digits[16];
    std::snprintf(digits, sizeof digits, ".%07lld", static_cast<long long>(ticks));
    std::string text = digits;
    text.erase(text.find_last_not_of('0') + 1);
    return text;
}

}  // namespace

FileTime fileTimeFromUnix(std::int64_t seconds, std::int64_t nanoseconds) noexcept
{
    return {(seconds + secondsFrom1601To1970) * ticksPerSecond + nanoseconds / 100};
}

std::string toIso8601(FileTime time)
{
    namespace chrono = std::chrono;
    const auto ticks = time.ticks - secondsFrom1601To1970 * ticksPerSecond;
    const chrono::sys_seconds moment{
        chrono::floor<chrono::seconds>(chrono::duration<std::int64_t, std::ratio<1, ticksPerSecond>>(ticks))};
    const auto day = chrono::floor<chrono::days>(moment);
    const chrono::year_month_day date{day};
    const chrono::hh_mm_ss clock{moment - day};
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text + fractionText(ticks - moment.time_since_epoch().count() * ticksPerSecond) + "Z";
}

}  // namespace kelvane
