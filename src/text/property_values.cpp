#include "text/property_values.h"

#include <charconv>
#include <chrono>
#include <limits>

namespace kelvane {
namespace {

// Takes pieces off the front of a text.
class Pieces {
public:
    explicit Pieces(std::string_view text) : rest_(text) {}

    bool empty() const { return rest_.empty(); }
    bool skip(char c)
    {
        if (!rest_.starts_with(c))
            return false;
        rest_.remove_prefix(1);
        return true;
    }
    // Exactly so many digits.
    std::optional<int> digits(std::size_t count)
    {
        int number = 0;
        const char* end = rest_.data() + count;
        if (rest_.size() < count || std::from_chars(rest_.data(), end, number).ptr != end || number < 0)
            return std::nullopt;
        rest_.remove_prefix(count);
        return number;
    }
    // As many digits as there are, up to 100 ns; what goes on behind is dropped.
    std::int64_t fraction()
    {
        std::int64_t ticks = 0;
        std::int64_t unit = ticksPerSecond;
        while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') {
            unit /= 10;
            ticks += (rest_.front() - '0') * unit;
            rest_.remove_prefix(1);
        }
        return ticks;
    }

private:
    std::string_view rest_;
};

// "+02:00", "-0330", "Z" or nothing, in seconds.
std::optional<std::int64_t> zone(Pieces& pieces)
{
    if (pieces.empty() || pieces.skip('Z'))
        return 0;
    const bool east = pieces.skip('+');
    if (!east && !pieces.skip('-'))
        return std::nullopt;
    const auto hours = pieces.digits(2);
    if (!hours)
        return std::nullopt;
    pieces.skip(':');
    const std::int64_t seconds = *hours * 3600 + pieces.digits(2).value_or(0) * 60;
    return east ? seconds : -seconds;
}

// Ticks since midnight UTC.
std::optional<std::int64_t> timeOfDay(Pieces& pieces)
{
    if (pieces.empty())
        return 0;
    if (!pieces.skip('T') && !pieces.skip(' '))
        return std::nullopt;
    const auto hours = pieces.digits(2);
    const auto minutes = hours && pieces.skip(':') ? pieces.digits(2) : std::nullopt;
    if (!minutes)
        return std::nullopt;
    std::int64_t ticks = (*hours * 60 + *minutes) * 60 * ticksPerSecond;
    if (pieces.skip(':')) {
        ticks += pieces.digits(2).value_or(0) * ticksPerSecond;
        if (pieces.skip('.') || pieces.skip(','))
            ticks += pieces.fraction();
    }
    const auto offset = zone(pieces);
    return offset && *hours < 25 && *minutes < 60 ? std::optional(ticks - *offset * ticksPerSecond) : std::nullopt;
}

}  // namespace

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view space = " \t\r\n";
    const std::size_t first = text.find_first_not_of(space);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

std::optional<FileTime> isoDate(std::string_view text)
{
    Pieces pieces(trimmed(text));
    const auto years = pieces.digits(4);
    if (!years || *years < 1601)
        return std::nullopt;
    const auto part = [&pieces] { return pieces.skip('-') ? pieces.digits(2).value_or(0) : 1; };
    const int months = part();
    const int monthDays = part();
    const std::chrono::year_month_day date{std::chrono::year(*years), std::chrono::month(static_cast<unsigned>(months)),
                                           std::chrono::day(static_cast<unsigned>(monthDays))};
    const auto ticks = timeOfDay(pieces);
    if (!date.ok() || !ticks)
        return std::nullopt;
    const std::int64_t fullDays = std::chrono::sys_days(date).time_since_epoch().count();
    return FileTime{fileTimeFromUnix(fullDays * 86'400, 0).ticks + *ticks};
}

std::optional<std::uint64_t> isoDuration(std::string_view text)
{
    text = trimmed(text);
    if (!text.starts_with('P'))
        return std::nullopt;
    text.remove_prefix(1);
    constexpr double longest = 1e9;  // seconds
    double seconds = 0;
    bool time = false;
    while (!text.empty()) {
        if (text.front() == 'T') {
            time = true;
            text.remove_prefix(1);
            continue;
        }
        double number = 0;
        const auto end = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed).ptr;
        if (end == text.data() || end == text.data() + text.size())
            return std::nullopt;
        const char unit = *end;
        const double length = !time ? (unit == 'D' ? 86'400 : 0) : unit == 'H' ? 3600 : unit == 'M' ? 60 : unit == 'S';
        seconds += number * length;
        if (length == 0 || !(seconds >= 0 && seconds < longest))
            return std::nullopt;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()) + 1);
    }
    return static_cast<std::uint64_t>(seconds * static_cast<double>(ticksPerSecond));
}

std::optional<std::uint32_t> wholeNumber(std::string_view text)
{
    text = trimmed(text);
    std::uint32_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc() || end != text.data() + text.size() || number > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return number;
}

}  // namespace kelvane
