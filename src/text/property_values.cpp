#include "text/property_values.h"

#include <charconv>
#include <limits>

#include "base/file_time.h"

namespace kelvane {
std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view space = " \t\r\n";
    const std::size_t first = text.find_first_not_of(space);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
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
