#include "cli/clean_watch.h"

#include "base/filled_text.h"

namespace kelvane {
namespace {

constexpr std::uint64_t intervalMs = 100;

TextId titleOf(CleanupAction action)
{
    if (action == CleanupAction::link)
        return TextId::puttingLinks;
    return action == CleanupAction::recycle ? TextId::movingToTrash : TextId::deletingForGood;
}

}  // namespace

CleanWatch::CleanWatch(const Console& console, const Clock& clock, ProgressMode mode)
    : clock_(clock), line_(wantedProgressLine(mode, console, clock))
{
}

// Links take as long as their contents, which are compared first; a removal takes the same for a file of any size.
void CleanWatch::begin(const CleanupPlan& plan)
{
    figures_.title = filledText(titleOf(plan.action));
    figures_.bytesAreRead = false;
    figures_.totalItems = plan.commands.size();
    figures_.totalBytes = 0;
    for (const CleanupCommand& command : plan.commands)
        figures_.totalBytes += plan.action == CleanupAction::link ? command.bytes : 0;
}

void CleanWatch::progress(std::uint64_t items, std::uint64_t bytes)
{
    const std::uint64_t now = clock_.ticks();
    if (!line_ || now - drawn_ < intervalMs)
        return;
    drawn_ = now;
    figures_.items = items;
    figures_.bytes = bytes;
    line_->show(figures_);
}

void CleanWatch::erase()
{
    if (line_)
        line_->erase();
}

}  // namespace kelvane
