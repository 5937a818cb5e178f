// Values of properties, out of the forms in which documents write them.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_time.h"
#include "platform/raw_value.h"

namespace kelvane {

// Without white space at the ends; any run of it inside is one blank.
[[nodiscard]] std::u16string collapsedText(std::u16string_view text);

// The parts between any of the separators, collapsed; empty ones are left out.
[[nodiscard]] std::vector<std::u16string> listOf(std::u16string_view text, std::u16string_view separators);

[[nodiscard]] RawValue dateValue(FileTime time);

// A moment in UTC; nothing for a date that no calendar has, or one before 1601.
struct CalendarTime {
    int year = 0;
    unsigned month = 1, day = 1;
    int hour = 0, minute = 0, second = 0;
    std::chrono::minutes east{0};  // of Greenwich
};
[[nodiscard]] std::optional<FileTime> momentOf(const CalendarTime& time);

// "2024-05-17", "2024-05-17T10:20:30.5+02:00", also "2024-05" and "2024" (ISO 8601 as W3C's note on date and time
// formats has it); without a zone it is taken for UTC, so that the same document gives the same value everywhere.
[[nodiscard]] std::optional<FileTime> parseIsoDate(std::string_view text);

}  // namespace kelvane
