#include "platform/camera_time.h"

#include <chrono>

namespace kelvane {
namespace {

constexpr bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// A number of up to so many digits, and one of the marks behind it where it is there. Cameras fill up with blanks.
std::optional<int> take(std::string_view& text, std::size_t width, std::string_view marks)
{
    while (text.starts_with(' '))
        text.remove_prefix(1);
    int value = 0;
    std::size_t digits = 0;
    for (; digits < width && digits < text.size() && isDigit(text[digits]); ++digits)
        value = value * 10 + (text[digits] - '0');
    if (digits == 0)
        return std::nullopt;
    text.remove_prefix(digits);
    if (!text.empty() && marks.find(text.front()) != std::string_view::npos)
        text.remove_prefix(1);
    return value;
}

std::int64_t fractionTicks(std::string_view digits)
{
    std::int64_t ticks = 0;
    std::int64_t unit = ticksPerSecond / 10;
    for (; !digits.empty() && isDigit(digits.front()) && unit > 0; digits.remove_prefix(1), unit /= 10)
        ticks += (digits.front() - '0') * unit;
    return ticks;
}

}  // namespace

std::optional<FileTime> cameraTime(std::string_view text, std::string_view fraction)
{
    namespace chrono = std::chrono;
    const auto year = take(text, 4, ":-/");
    const auto month = take(text, 2, ":-/");
    const auto day = take(text, 2, "T");
    if (!year || !month || !day || *year <= 1601)
        return std::nullopt;
    const chrono::year_month_day date{chrono::year(*year), chrono::month(static_cast<unsigned>(*month)),
                                      chrono::day(static_cast<unsigned>(*day))};
    const int hour = take(text, 2, ":").value_or(0);
    const int minute = take(text, 2, ":").value_or(0);
    const int second = take(text, 2, "").value_or(0);
    if (!date.ok() || hour > 23 || minute > 59 || second > 60)
        return std::nullopt;
    const chrono::sys_seconds moment =
        chrono::sys_days(date) + chrono::hours(hour) + chrono::minutes(minute) + chrono::seconds(second);
    if (text.starts_with('.'))
        fraction = text.substr(1);
    return FileTime{fileTimeFromUnix(moment.time_since_epoch().count(), 0).ticks + fractionTicks(fraction)};
}

}  // namespace kelvane
