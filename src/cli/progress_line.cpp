#include "cli/progress_line.h"

#include <array>
#include <cstdio>
#include <optional>
#include <ostream>

#include "base/filled_text.h"
#include "base/size_text.h"

namespace kelvane {
namespace {

constexpr unsigned usualColumns = 80;
constexpr std::uint64_t soonestEstimateMs = 2'000;  // a rate over less time says little about the rest

std::string phaseText(ScanPhase phase)
{
    switch (phase) {
    case ScanPhase::gathering:
        return filledText(TextId::phaseGathering);
    case ScanPhase::sorting:
        return filledText(TextId::phaseSorting);
    case ScanPhase::comparing:
        return filledText(TextId::phaseComparing);
    case ScanPhase::describing:
        return filledText(TextId::phaseTexts);
    }
    return {};
}

std::string itemsText(const ProgressFigures& figures)
{
    if (figures.totalItems == 0)
        return countedText(figures.items, TextId::oneFile, TextId::manyFiles);
    return filledText(TextId::progressItems, {std::to_string(figures.items), std::to_string(figures.totalItems)});
}

// How many milliseconds the rest takes at the pace so far: by bytes where bytes are what the phase works on.
std::optional<std::uint64_t> timeLeft(const ProgressFigures& figures, std::uint64_t elapsed)
{
    const bool byBytes = figures.totalBytes > 0;
    const std::uint64_t done = byBytes ? figures.bytes : figures.items;
    const std::uint64_t total = byBytes ? figures.totalBytes : figures.totalItems;
    if (elapsed < soonestEstimateMs || done == 0 || done > total)
        return std::nullopt;
    const double pace = static_cast<double>(elapsed) / static_cast<double>(done);
    return static_cast<std::uint64_t>(pace * static_cast<double>(total - done));
}

std::string minutesText(std::uint64_t milliseconds)
{
    const std::uint64_t seconds = (milliseconds + 999) / 1000;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%llu:%02u", static_cast<unsigned long long>(seconds / 60),
                  static_cast<unsigned>(seconds % 60));
    return text.data();
}

// So many bytes, or fewer where a character of UTF-8 would be cut.
std::size_t wholeCharacters(const std::string& line, std::size_t most)
{
    if (line.size() <= most)
        return line.size();
    while (most > 0 && (static_cast<unsigned char>(line[most]) & 0xC0) == 0x80)
        --most;
    return most;
}

}  // namespace

ProgressFigures figuresOf(const ScanProgress& progress)
{
    return {phaseText(progress.phase), progress.items, progress.totalItems, progress.bytes, progress.totalBytes};
}

ProgressLine::ProgressLine(std::ostream& err, const Clock& clock, unsigned columns)
    : err_(err), clock_(clock), width_(columns > 1 ? columns - 1 : 1), partBegan_(clock.ticks())
{
}

void ProgressLine::show(const ProgressFigures& figures)
{
    if (figures.title != part_) {
        if (!part_.empty())
            partBegan_ = clock_.ticks();
        part_ = figures.title;
    }
    draw(compose(figures));
}

// Whole parts are left out from the right until the line fits.
std::string ProgressLine::compose(const ProgressFigures& figures) const
{
    const std::uint64_t elapsed = clock_.ticks() - partBegan_;
    std::array<std::string, 4> parts = {itemsText(figures)};
    if (figures.bytes > 0)
        parts[1] = figures.bytesAreRead ? filledText(TextId::progressRead, {sizeText({figures.bytes})})
                                        : sizeText({figures.bytes});
    if (figures.bytesAreRead && figures.bytes > 0 && elapsed >= 1000)
        parts[2] = filledText(TextId::progressPace, {sizeText({figures.bytes * 1000 / elapsed})});
    if (const auto left = timeLeft(figures, elapsed))
        parts[3] = filledText(TextId::progressLeft, {minutesText(*left)});
    std::string line = figures.title;
    for (const auto& part : parts) {
        if (!part.empty() && line.size() + 2 + part.size() <= width_)
            line += ", " + part;
    }
    return line;
}

void ProgressLine::draw(std::string line)
{
    line.resize(wholeCharacters(line, width_));
    const std::size_t shown = line.size();
    if (shown < drawn_)
        line.append(drawn_ - shown, ' ');
    drawn_ = shown;
    err_ << '\r' + line + '\r' << std::flush;
}

void ProgressLine::erase()
{
    if (drawn_ == 0)
        return;
    draw({});
}

std::optional<ProgressLine> wantedProgressLine(ProgressMode mode, const Console& console, const Clock& clock)
{
    if (mode == ProgressMode::never || (mode == ProgressMode::automatic && !console.errorColumns))
        return std::nullopt;
    return std::optional<ProgressLine>(std::in_place, console.err, clock, console.errorColumns.value_or(usualColumns));
}

}  // namespace kelvane
