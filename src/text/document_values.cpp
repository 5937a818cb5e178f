#include "text/document_values.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr bool isSpace(char16_t unit)
{
    return unit <= u' ' || unit == 0xA0;
}

// Reads numbers of a fixed width one after another.
class Digits {
public:
    explicit Digits(std::string_view text) : rest_(text) {}

    std::optional<int> number(std::size_t width)
    {
        if (rest_.size() < width)
            return std::nullopt;
        int value = 0;
        for (const char digit : rest_.substr(0, width)) {
            if (digit < '0' || digit > '9')
                return std::nullopt;
            value = value * 10 + (digit - '0');
        }
        rest_.remove_prefix(width);
        return value;
    }

    // The number behind one of these characters, where that one comes next.
    std::optional<int> after(std::string_view marks, std::size_t width)
    {
        if (rest_.empty() || marks.find(rest_.front()) == std::string_view::npos)
            return std::nullopt;
        Digits behind(rest_.substr(1));
        const auto value = behind.number(width);
        if (value)
            rest_ = behind.rest_;
        return value;
    }

    void skipFraction()
    {
        if (rest_.starts_with('.') || rest_.starts_with(','))
            rest_.remove_prefix(std::min(rest_.find_first_not_of("0123456789", 1), rest_.size()));
    }

    // "+02:00", "-0530", "Z" or nothing
    std::chrono::minutes zone()
    {
        const bool west = rest_.starts_with('-');
        const int hours = after("+-", 2).value_or(0);
        auto minutes = after(":", 2);
        if (!minutes)
            minutes = number(2);
        const std::chrono::minutes east(hours * 60 + minutes.value_or(0));
        return west ? -east : east;
    }

private:
    std::string_view rest_;
};

}  // namespace

std::u16string collapsedText(std::u16string_view text)
{
    std::u16string collapsed;
    bool space = false;
    for (const char16_t unit : text) {
        if (isSpace(unit)) {
            space = !collapsed.empty();
            continue;
        }
        if (space)
            collapsed += u' ';
        space = false;
        collapsed += unit;
    }
    return collapsed;
}

std::vector<std::u16string> listOf(std::u16string_view text, std::u16string_view separators)
{
    std::vector<std::u16string> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(separators), text.size());
        if (std::u16string part = collapsedText(text.substr(0, end)); !part.empty())
            parts.push_back(std::move(part));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

RawValue dateValue(FileTime time)
{
    return RawValue::number(VarType::fileTime, static_cast<std::uint64_t>(time.ticks));
}

std::optional<FileTime> momentOf(const CalendarTime& time)
{
    namespace chrono = std::chrono;
    const chrono::year_month_day date{chrono::year(time.year), chrono::month(time.month), chrono::day(time.day)};
    const bool clock = time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 && time.second >= 0 &&
                       time.second <= 60;
    if (!date.ok() || !clock || time.year <= 1601 || time.year > 9999)
        return std::nullopt;
    const chrono::sys_seconds moment = chrono::sys_days(date) + chrono::hours(time.hour) +
                                       chrono::minutes(time.minute) + chrono::seconds(time.second) - time.east;
    return fileTimeFromUnix(moment.time_since_epoch().count(), 0);
}

std::optional<FileTime> parseIsoDate(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    Digits digits(text);
    CalendarTime time;
    const auto year = digits.number(4);
    if (!year)
        return std::nullopt;
    time.year = *year;
    time.month = static_cast<unsigned>(digits.after("-", 2).value_or(1));
    time.day = static_cast<unsigned>(digits.after("-", 2).value_or(1));
    if (const auto hour = digits.after("T ", 2)) {
        time.hour = *hour;
        time.minute = digits.after(":", 2).value_or(0);
        time.second = digits.after(":", 2).value_or(0);
        digits.skipFraction();
        time.east = digits.zone();
    }
    return momentOf(time);
}

}  // namespace kelvane
