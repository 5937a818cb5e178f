#include "app/progress_text.h"

#include <array>
#include <cstdio>

#include "base/filled_text.h"

namespace kelvane {
namespace {

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

}  // namespace

ProgressFigures figuresOf(const ScanProgress& progress)
{
    return {phaseText(progress.phase), progress.items, progress.totalItems, progress.bytes, progress.totalBytes};
}

ProgressTexts progressTexts(const ProgressFigures& figures, std::uint64_t elapsed, const SizeWords& size)
{
    ProgressTexts texts{itemsText(figures), {}, {}, {}};
    if (figures.bytes > 0)
        texts.read =
            figures.bytesAreRead ? filledText(TextId::progressRead, {size({figures.bytes})}) : size({figures.bytes});
    if (figures.bytesAreRead && figures.bytes > 0 && elapsed >= 1000)
        texts.pace = filledText(TextId::progressPace, {size({figures.bytes * 1000 / elapsed})});
    if (const auto left = timeLeft(figures, elapsed))
        texts.left = filledText(TextId::progressLeft, {minutesText(*left)});
    return texts;
}

}  // namespace kelvane
