// "Export search results in CSV format for Excel".
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "cleanup/results_table.h"
#include "platform/clock.h"
#include "platform/file_output.h"
#include "platform/places.h"
#include "platform/processes.h"

namespace kelvane {

struct ExportPorts {
    FileOutput& output;
    Processes& processes;
    const Places& places;
    const Clock& clock;
};

struct ExportOutcome {
    std::filesystem::path file;  // empty when none was written
    std::u16string message;      // for the status bar; empty when all went well, and when there was nothing to write
    std::optional<Error> failure{};  // why it could not be written, or opened
    std::filesystem::path tried{};   // what could not be written: the file, or the folder where none could be made
    bool stopped = false;
};

// Shows all items, selects every one, and writes them below two lines (the window's title, the time in UTC) to a new
// file in the temporary folder, which is then opened with the desktop's program for such files. The file belongs to the
// person alone and is never one that was there already; what fails leaves none. Formulas are defused, since a
// spreadsheet opens it at once. `goOn` is asked before each row; a table that is stopped is not written. On the
// results' thread.
[[nodiscard]] ExportOutcome exportCsv(
    ResultsModel& results, const TableView& view, std::u16string_view windowTitle, const ExportPorts& ports,
    const GoOn& goOn = [](std::size_t, std::size_t) { return true; });

// For a table of what is in view.
void selectRowsInView(ResultsModel& results);

}  // namespace kelvane
