#include "cli/comparison.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>

#include "base/filled_text.h"
#include "base/utf.h"
#include "cli/csv.h"
#include "cli/printable.h"
#include "cli/value_json.h"

namespace kelvane {
namespace {

using Row = std::vector<std::string>;

std::string shortNumber(double number)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3g", number);
    return text.data();
}

std::string percentText(const std::optional<double>& percent)
{
    if (!percent)
        return {};
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.4g %%", *percent);
    return text.data();
}

std::string verdictText(const StageReport& stage, bool approximate)
{
    if (approximate && stage.name == "content")
        return filledText(stage.equal ? TextId::sampledEqual : TextId::sampledDifferent);
    return filledText(stage.equal ? TextId::stageEqual : TextId::stageDifferent);
}

// "3:25.4": minutes, seconds and tenths.
std::string durationText(std::int64_t duration)
{
    const std::int64_t tenths = duration / 1'000'000;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%lld:%02lld.%lld", static_cast<long long>(tenths / 600),
                  static_cast<long long>(tenths / 10 % 60), static_cast<long long>(tenths % 10));
    return text.data();
}

std::string measureText(const ContentMeasure& measure)
{
    std::vector<std::string> parts;
    if (measure.length > 0 || measure.size > 0)
        parts.push_back(
            filledText(TextId::documentMeasure, {std::to_string(measure.length), std::to_string(measure.size)}));
    if (measure.duration > 0)
        parts.push_back(filledText(TextId::lastingMeasure, {durationText(measure.duration)}));
    if (measure.width > 0)
        parts.push_back(
            filledText(TextId::previewMeasure, {std::to_string(measure.width), std::to_string(measure.height)}));
    std::string all;
    for (const std::string& part : parts)
        all += (all.empty() ? "" : ", ") + part;
    return all;
}

// A value as text, or how much of a content was compared.
std::string sideText(const std::u16string& text, const std::optional<ContentMeasure>& measure)
{
    return measure ? measureText(*measure) : toUtf8(text);
}

// Scores are no percentages of a difference: what they have to reach is told.
std::string allowedText(const StageReport& stage)
{
    if (stage.name != "content" || !stage.allowed)
        return percentText(stage.allowed);
    return filledText(TextId::leastScore, {shortNumber(100 - *stage.allowed)});
}

Row stageCells(const StageReport& stage, bool approximate)
{
    return {std::to_string(stage.stage),
            stage.name,
            sideText(stage.textA, stage.measureA),
            sideText(stage.textB, stage.measureB),
            percentText(stage.difference),
            allowedText(stage),
            stage.score ? std::to_string(*stage.score) : "",
            verdictText(stage, approximate)};
}

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

Row titles()
{
    return {filledText(TextId::titleStage),
            filledText(TextId::titleCompared),
            "A",
            "B",
            filledText(TextId::titleDifference),
            filledText(TextId::titleAllowed),
            filledText(TextId::titleScore),
            filledText(TextId::titleResult)};
}

std::string conclusion(const Comparison& comparison)
{
    if (!comparison.result.match())
        return filledText(TextId::filesPart, {std::to_string(comparison.result.stage)});
    return filledText(comparison.result.approximate ? TextId::filesMatchSampled : TextId::filesMatch);
}

// What the second look at two pictures found.
void writeLook(const StageReport& stage, std::ostream& out)
{
    if (!stage.look)
        return;
    out << '\n'
        << filledText(TextId::secondLookFound,
                      {shortNumber(stage.look->colourDifference), shortNumber(stage.look->correlation)})
        << '\n';
    if (stage.vetoed)
        out << filledText(TextId::secondLookVetoes) << '\n';
}

void writeText(const Comparison& comparison, std::ostream& out)
{
    out << "A: " << printable(comparison.a) << "\nB: " << printable(comparison.b) << "\n\n";
    std::vector<Row> rows = {titles()};
    for (const StageReport& stage : comparison.stages) {
        rows.push_back(stageCells(stage, comparison.result.approximate));
        for (std::string& cell : rows.back())
            cell = printable(cell);
    }
    writeTable(rows, out);
    for (const StageReport& stage : comparison.stages)
        writeLook(stage, out);
    out << '\n' << conclusion(comparison) << '\n';
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
