// Where rows and group headings stand in a list of any length, from top to bottom.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "ui/core/row_mirror.h"

namespace kelvane {

// Pixels. `perLine` rows stand next to one another: one in a view of details, several in one of thumbnails.
struct ListMeasures {
    int lineHeight = 20;
    int headingHeight = 0;
    int perLine = 1;
    friend bool operator==(const ListMeasures&, const ListMeasures&) = default;
};

// A section is a group with its heading, or the whole list where groups are not kept together. Looking up costs the
// logarithm of the number of sections, rebuilding a pass over the rows.
class ListLayout {
public:
    struct Spot {
        std::size_t section = 0;
        std::optional<Row> row{};  // nothing on a heading
    };

    void rebuild(const RowMirror& rows);
    void measure(const ListMeasures& measures);

    [[nodiscard]] const ListMeasures& measures() const { return measures_; }
    [[nodiscard]] int height() const { return tops_.empty() ? 0 : tops_.back(); }
    [[nodiscard]] Row rowCount() const { return starts_.empty() ? 0 : starts_.back(); }
    [[nodiscard]] std::size_t sectionCount() const { return starts_.empty() ? 0 : starts_.size() - 1; }
    [[nodiscard]] bool hasHeadings() const { return grouped_; }

    [[nodiscard]] std::size_t sectionOf(Row row) const;
    // Which comes to lie at a height; beyond the list the first or the last one.
    [[nodiscard]] std::size_t sectionAt(int y) const;
    [[nodiscard]] Row firstRow(std::size_t section) const { return starts_[section]; }
    [[nodiscard]] Row endRow(std::size_t section) const { return starts_[section + 1]; }
    [[nodiscard]] int topOf(std::size_t section) const { return tops_[section]; }
    [[nodiscard]] int headingHeight() const { return grouped_ ? measures_.headingHeight : 0; }
    // Of the row's line.
    [[nodiscard]] int lineTop(Row row) const;
    [[nodiscard]] int placeInLine(Row row) const;
    // What is at a height, and in that place of its line; nothing outside.
    [[nodiscard]] std::optional<Spot> at(int y, int place) const;

private:
    [[nodiscard]] int linesOf(std::size_t section) const;
    void stack();

    ListMeasures measures_;
    std::vector<Row> starts_;  // of sections, and the number of rows
    std::vector<int> tops_;    // likewise, and the height
    bool grouped_ = true;
};

}  // namespace kelvane
