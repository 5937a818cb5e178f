// The results as a text table: comma-separated for spreadsheets, or with tabs for the clipboard.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "props/property_source.h"
#include "results/results_model.h"

namespace kelvane {

enum class TableMode {
    csv,   // cells with a comma, a quotation mark or a line break are quoted, their quotation marks doubled
    tabs,  // tabs and line breaks within a cell become blanks
};

// What a spreadsheet does with a cell that begins with = + - @, a tab or a carriage return: it computes it, and the
// names of files come from anywhere.
enum class Formulas {
    kept,     // for programs that read the table: every cell is the text itself
    defused,  // for a file that a spreadsheet is about to open: an apostrophe goes before such a cell unless it is a
              // number, and the row tells its path in "path_bytes"
};

// Puts a table together row by row, in UTF-8; rows end in CR LF. In CSV a last column "path_bytes" is added when some
// row needs it: it has the percent-encoded path of each file whose name is no valid UTF-8 (shown with U+FFFD) or was
// altered, and is empty in the other rows. One thread.
class TableBuilder {
public:
    // Without titles there is no title row: the list is in a view without columns.
    TableBuilder(TableMode mode, Formulas formulas, std::span<const std::u16string> titles);

    // `path` is the file's, in the form of path rules.
    void add(std::span<const std::u16string> cells, std::string_view path);

    [[nodiscard]] bool isEmpty() const { return rowEnds_.empty(); }
    // The whole table; empty when no row was added. Ends the builder.
    [[nodiscard]] std::string take();

private:
    struct OddRow {
        std::size_t row;
        std::string encodedPath;
    };

    // Whether the cell had to be altered.
    bool append(std::string& line, std::string cell) const;
    [[nodiscard]] std::string withPathColumn() const;

    TableMode mode_;
    Formulas formulas_;
    std::string titles_;
    std::string rows_;
    std::vector<std::size_t> rowEnds_;  // in rows_, where the line break goes
    std::vector<OddRow> oddRows_;       // rising
};

// What the list shows: its columns from the left, or nothing but one text a row.
struct TableView {
    std::vector<std::u16string> titles;                                         // empty in a view without columns
    std::function<std::u16string(ItemContext& file, std::size_t column)> cell;  // of such a view: column 0
};

// The list with these columns; without any, the text of an item is its name. The source outlives the view.
[[nodiscard]] TableView viewOfColumns(std::vector<PropRef> columns, const PropertySource& properties);

// Asked before each row, of which there are so many: whether to go on. It may change marks, order and view, and take
// items off the list, but begin no other one.
using GoOn = std::function<bool(std::size_t done, std::size_t total)>;

// One row for each item that is selected and in view at the beginning, in the order of the list; nothing when stopped.
[[nodiscard]] std::optional<std::string> tableOfSelection(ResultsModel& results, const TableView& view, TableMode mode,
                                                          Formulas formulas, const GoOn& goOn);
[[nodiscard]] std::string tableOfSelection(ResultsModel& results, const TableView& view, TableMode mode,
                                           Formulas formulas);

}  // namespace kelvane
