#include "app/stage_texts.h"

#include <array>
#include <cstdio>

#include "base/filled_text.h"
#include "base/utf.h"

namespace kelvane {

std::string percentText(const std::optional<double>& percent)
{
    if (!percent)
        return {};
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.4g %%", *percent);
    return text.data();
}

namespace {

std::string shortNumber(double number)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3g", number);
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

}  // namespace

std::vector<std::string> stageCells(const StageReport& stage, bool approximate)
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

std::vector<std::string> stageTitles()
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

std::vector<std::string> lookLines(const StageReport& stage)
{
    if (!stage.look)
        return {};
    std::vector<std::string> lines{filledText(
        TextId::secondLookFound, {shortNumber(stage.look->colourDifference), shortNumber(stage.look->correlation)})};
    if (stage.vetoed)
        lines.push_back(filledText(TextId::secondLookVetoes));
    return lines;
}

std::string conclusionText(const PairComparison& comparison)
{
    if (!comparison.result.match())
        return filledText(TextId::filesPart, {std::to_string(comparison.result.stage)});
    return filledText(comparison.result.approximate ? TextId::filesMatchSampled : TextId::filesMatch);
}

}  // namespace kelvane
