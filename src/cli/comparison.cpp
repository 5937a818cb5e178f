#include "cli/comparison.h"

#include <algorithm>
#include <ostream>

#include "app/stage_texts.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "cli/csv.h"
#include "cli/printable.h"
#include "cli/value_json.h"

namespace kelvane {
namespace {

using Row = std::vector<std::string>;

// Characters as a terminal counts them, nearly: bytes of UTF-8 that begin one.
std::size_t shownLength(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// Columns that are empty in every row but the first, the titles, are left out.
void writeTable(const std::vector<Row>& rows, std::ostream& out)
{
    std::vector<std::size_t> widths(rows.front().size());
    for (std::size_t column = 0; column < widths.size(); ++column) {
        const bool used =
            std::any_of(rows.begin() + 1, rows.end(), [&](const Row& row) { return !row[column].empty(); });
        for (const Row& row : rows)
            widths[column] = used ? std::max(widths[column], shownLength(row[column])) : 0;
    }
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t column = 0; column < widths.size(); ++column) {
            if (widths[column] > 0)
                line += row[column] + std::string(widths[column] - shownLength(row[column]) + 2, ' ');
        }
        out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
    }
}

// What the second look at two pictures found.
void writeLook(const StageReport& stage, std::ostream& out)
{
    const std::vector<std::string> lines = lookLines(stage);
    if (!lines.empty())
        out << '\n';
    for (const std::string& line : lines)
        out << line << '\n';
}

void writeText(const Comparison& comparison, std::ostream& out)
{
    out << "A: " << printable(comparison.a) << "\nB: " << printable(comparison.b) << "\n\n";
    std::vector<Row> rows = {stageTitles()};
    for (const StageReport& stage : comparison.stages) {
        rows.push_back(stageCells(stage, comparison.result.approximate));
        for (std::string& cell : rows.back())
            cell = printable(cell);
    }
    writeTable(rows, out);
    for (const StageReport& stage : comparison.stages)
        writeLook(stage, out);
    out << '\n' << conclusionText(comparison) << '\n';
    if (comparison.sameFile)
        out << filledText(TextId::bothNamesOneFile) << '\n';
}

Json optionalJson(const auto& value)
{
    return value ? Json(*value) : Json(nullptr);
}

Json measureJson(const ContentMeasure& measure)
{
    Json json = Json::object();
    if (measure.length > 0 || measure.size > 0)
        json = {{"length", measure.length}, {"size", measure.size}};
    if (measure.duration > 0)
        json["duration"] = measure.duration;
    if (measure.width > 0)
        json.update({{"width", measure.width}, {"height", measure.height}});
    return json;
}

// The value by its kind; a stage that is about no property may still have texts.
Json sideJson(const PropValue& value, const std::u16string& text, const std::optional<ContentMeasure>& measure)
{
    if (measure)
        return measureJson(*measure);
    if (value.missing() && !text.empty())
        return toUtf8(text);
    return valueJson(value, {});
}

Json stageJson(const StageReport& stage)
{
    Json json = {{"stage", stage.stage},
                 {"name", stage.name},
                 {"a", sideJson(stage.a, stage.textA, stage.measureA)},
                 {"b", sideJson(stage.b, stage.textB, stage.measureB)},
                 {"difference", optionalJson(stage.difference)},
                 {"allowed", optionalJson(stage.allowed)},
                 {"equal", stage.equal}};
    if (stage.look)
        json.update({{"colourDifference", stage.look->colourDifference},
                     {"correlation", stage.look->correlation},
                     {"vetoed", stage.vetoed}});
    return json;
}

void writeJson(const Comparison& comparison, std::ostream& out)
{
    Json stages = Json::array();
    Json score;
    for (const StageReport& stage : comparison.stages) {
        stages.push_back(stageJson(stage));
        if (stage.score)
            score = *stage.score;
    }
    out << dump({{"result", comparison.result.stage},
                 {"match", comparison.result.match()},
                 {"approximate", comparison.result.approximate},
                 {"sameFile", comparison.sameFile},
                 {"stages", std::move(stages)},
                 {"score", std::move(score)}},
                Layout::indented)
        << '\n';
}

void writeCsv(const Comparison& comparison, std::ostream& out)
{
    writeCsvRow({"stage", "name", "a", "b", "difference", "allowed", "score", "equal"}, out);
    for (const StageReport& stage : comparison.stages) {
        Row cells = stageCells(stage, false);
        cells[5] = percentText(stage.allowed);
        cells.back() = stage.equal ? "true" : "false";
        writeCsvRow(cells, out);
    }
}

}  // namespace

void writeComparison(OutputFormat format, const Comparison& comparison, std::ostream& out)
{
    if (format == OutputFormat::json)
        writeJson(comparison, out);
    else if (format == OutputFormat::csv)
        writeCsv(comparison, out);
    else
        writeText(comparison, out);
}

}  // namespace kelvane
