// What the plan of a clean-up and the report of one are written with.
#pragma once

#include <ostream>
#include <string>
#include <utility>

#include "cleanup/cleanup_plan.h"
#include "cli/value_json.h"

namespace kelvane {

// The path of a row, also of one that left the list.
[[nodiscard]] std::string pathOf(const ResultsModel& results, ItemId id);

// "hard link: a (kept: b; frees 4 bytes)"; fit for a terminal.
[[nodiscard]] std::string commandLine(const ResultsModel& results, const CleanupCommand& command);
// "left alone: a: why"; likewise.
[[nodiscard]] std::string aloneLine(const ResultsModel& results, ItemId item, std::string_view why);

[[nodiscard]] Json pathJson(std::string_view bytes);
[[nodiscard]] Json skipJson(const ResultsModel& results, CleanupSkip skip);

// A further member of a document that is being written: an array, one entry a line. `line` makes the entry.
template <class List, class Line>
void writeJsonList(const char* name, const List& list, std::ostream& out, Line line)
{
    out << ",\n\"" << name << "\": [";
    bool first = true;
    for (const auto& entry : list)
        out << (std::exchange(first, false) ? "\n" : ",\n") << dump(line(entry), Layout::oneLine);
    out << (first ? "]" : "\n]");
}

}  // namespace kelvane
