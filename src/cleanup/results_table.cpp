#include "cleanup/results_table.h"

#include <algorithm>

#include "base/utf.h"
#include "platform/native_text.h"
#include "results/result_columns.h"

namespace kelvane {
namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view pathTitle = "path_bytes";
constexpr std::string_view formulaStarts = "=+-@\t\r";

bool isNumber(std::string_view cell)
{
    cell.remove_prefix(cell.starts_with('-') || cell.starts_with('+') ? 1 : 0);
    return !cell.empty() && cell.find_first_not_of("0123456789.,") == std::string_view::npos;
}

bool isFormula(std::string_view cell)
{
    return !cell.empty() && formulaStarts.find(cell.front()) != std::string_view::npos && !isNumber(cell);
}

void replaceBreaks(std::string& cell)
{
    constexpr std::string_view breaks = "\t\n\v\f\r";
    std::replace_if(
        cell.begin(), cell.end(), [&](char c) { return breaks.find(c) != std::string_view::npos; }, ' ');
}

void appendQuoted(std::string& line, std::string_view cell)
{
    line += '"';
    for (const char c : cell)
        line.append(c == '"' ? 2 : 1, c);
    line += '"';
}

}  // namespace

TableBuilder::TableBuilder(TableMode mode, Formulas formulas, std::span<const std::u16string> titles)
    : mode_(mode), formulas_(formulas)
{
    for (const std::u16string& title : titles) {
        if (&title != &titles.front())
            titles_ += mode_ == TableMode::csv ? ',' : '\t';
        append(titles_, toUtf8(title));
    }
}

bool TableBuilder::append(std::string& line, std::string cell) const
{
    if (mode_ == TableMode::tabs) {
        replaceBreaks(cell);
        line += cell;
        return false;
    }
    const bool altered = formulas_ == Formulas::defused && isFormula(cell);
    if (altered)
        cell.insert(cell.begin(), '\'');
    if (cell.find_first_of(",\"\r\n") == std::string::npos)
        line += cell;
    else
        appendQuoted(line, cell);
    return altered;
}

void TableBuilder::add(std::span<const std::u16string> cells, std::string_view path)
{
    bool altered = false;
    for (std::size_t column = 0; column < cells.size(); ++column) {
        if (column > 0)
            rows_ += mode_ == TableMode::csv ? ',' : '\t';
        altered = append(rows_, toUtf8(cells[column])) || altered;
    }
    if (mode_ == TableMode::csv && (altered || !isValidUtf8(path)))
        oddRows_.push_back({rowEnds_.size(), percentEncode(path)});
    rowEnds_.push_back(rows_.size());
    rows_ += lineEnd;
}

std::string TableBuilder::take()
{
    if (isEmpty())
        return {};
    if (!oddRows_.empty())
        return withPathColumn();
    if (!titles_.empty())
        rows_.insert(0, titles_ + std::string(lineEnd));
    return std::move(rows_);
}

std::string TableBuilder::withPathColumn() const
{
    std::string table;
    table.reserve(rows_.size() + rowEnds_.size());
    if (!titles_.empty())
        table.append(titles_).append(",").append(pathTitle).append(lineEnd);
    std::size_t begin = 0;
    auto odd = oddRows_.begin();
    for (std::size_t row = 0; row < rowEnds_.size(); ++row) {
        table.append(rows_, begin, rowEnds_[row] - begin).append(",");
        if (odd != oddRows_.end() && odd->row == row)
            table += (odd++)->encodedPath;
        table += lineEnd;
        begin = rowEnds_[row] + lineEnd.size();
    }
    return table;
}

TableView viewOfColumns(std::vector<PropRef> columns, const PropertySource& properties)
{
    if (columns.empty())
        return {{}, [](ItemContext& file, std::size_t) {
                    return displayFromNative(file.item().path().filename().native());
                }};
    TableView view;
    for (const PropRef& column : columns)
        view.titles.push_back(columnTitle(column));
    view.cell = [columns = std::move(columns), &properties](ItemContext& file, std::size_t column) {
        return cellText(file, columns[column], properties);
    };
    return view;
}

std::optional<std::string> tableOfSelection(ResultsModel& results, const TableView& view, TableMode mode,
                                            Formulas formulas, const GoOn& goOn)
{
    std::vector<ItemId> items;
    results.forEachRow([&](ItemId id) {
        if (results.item(id).isSelected())
            items.push_back(id);
    });
    TableBuilder table(mode, formulas, view.titles);
    std::vector<std::u16string> cells(std::max<std::size_t>(view.titles.size(), 1));
    for (std::size_t row = 0; row < items.size(); ++row) {
        if (!goOn(row, items.size()))
            return std::nullopt;
        ItemContext& file = results.file(items[row]);
        for (std::size_t column = 0; column < cells.size(); ++column)
            cells[column] = view.cell(file, column);
        table.add(cells, bytesFromNative(file.item().fullName()));
    }
    return table.take();
}

std::string tableOfSelection(ResultsModel& results, const TableView& view, TableMode mode, Formulas formulas)
{
    return *tableOfSelection(results, view, mode, formulas, [](std::size_t, std::size_t) { return true; });
}

}  // namespace kelvane
