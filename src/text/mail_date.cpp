#include <algorithm>
#include <array>
#include <charconv>

#include "base/words.h"
#include "text/document_values.h"
#include "text/mail_headers.h"

namespace kelvane {
namespace {

constexpr std::string_view months = "janfebmaraprmayjunjulaugsepoctnovdec";

struct Zone {
    std::string_view name;
    int hours;
};
// RFC 5322, section 4.3; any other name means UTC.
constexpr std::array zones = {Zone{"edt", -4}, Zone{"est", -5}, Zone{"cdt", -5}, Zone{"cst", -6},
                              Zone{"mdt", -6}, Zone{"mst", -7}, Zone{"pdt", -7}, Zone{"pst", -8}};

std::optional<int> numberOf(std::string_view word)
{
    int number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && end == word.data() + word.size() ? std::optional(number) : std::nullopt;
}

unsigned monthOf(std::string_view word)
{
    const std::size_t at = word.size() >= 3 ? months.find(word.substr(0, 3)) : std::string_view::npos;
    return at != std::string_view::npos && at % 3 == 0 ? static_cast<unsigned>(at / 3 + 1) : 0;
}

// Two digits are of the years 1950 to 2049, three are counted from 1900.
int yearOf(int written)
{
    if (written < 50)
        return 2000 + written;
    return written < 1000 ? 1900 + written : written;
}

std::chrono::minutes zoneOf(std::string_view word)
{
    if (word.starts_with('+') || word.starts_with('-')) {
        const int written = numberOf(word.substr(1)).value_or(0);
        const int minutes = written / 100 * 60 + written % 100;
        return std::chrono::minutes(word.front() == '-' ? -minutes : minutes);
    }
    const auto zone = std::find_if(zones.begin(), zones.end(), [word](const Zone& each) { return each.name == word; });
    return std::chrono::hours(zone != zones.end() ? zone->hours : 0);
}

// "09:55:06", "9:55"
bool readClock(std::string_view word, CalendarTime& time)
{
    const auto parts = splitWords(word, ':');
    if (parts.size() < 2 || parts.size() > 3)
        return false;
    const auto hour = numberOf(parts[0]), minute = numberOf(parts[1]);
    const auto second = parts.size() == 3 ? numberOf(parts[2]) : 0;
    if (!hour || !minute || !second)
        return false;
    time.hour = *hour;
    time.minute = *minute;
    time.second = *second;
    return true;
}

}  // namespace

std::optional<FileTime> mailDate(std::string_view value)
{
    std::string text = asciiLower(value.substr(0, std::min<std::size_t>(value.find('('), 100)));
    std::replace_if(
        text.begin(), text.end(), [](char byte) { return byte == '\t' || byte == ','; }, ' ');
    auto words = splitWords(text, ' ');
    if (!words.empty() && !numberOf(words.front()))
        words.erase(words.begin());  // the day of the week
    if (words.size() < 4)
        return std::nullopt;
    const auto day = numberOf(words[0]), year = numberOf(words[2]);
    CalendarTime time;
    if (!day || *day < 1 || !year || *year < 0 || !readClock(words[3], time))
        return std::nullopt;
    time.day = static_cast<unsigned>(*day);
    time.month = monthOf(words[1]);
    time.year = yearOf(*year);
    time.east = zoneOf(words.size() > 4 ? words[4] : std::string());
    return momentOf(time);
}

}  // namespace kelvane
