#include "cli/progress_line.h"

#include <ostream>

namespace kelvane {
namespace {

constexpr unsigned usualColumns = 80;

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
    const ProgressTexts texts = progressTexts(figures, clock_.ticks() - partBegan_);
    std::string line = figures.title;
    for (const std::string* part : {&texts.items, &texts.read, &texts.pace, &texts.left}) {
        if (!part->empty() && line.size() + 2 + part->size() <= width_)
            line += ", " + *part;
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
