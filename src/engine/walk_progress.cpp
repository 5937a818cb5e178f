#include "engine/walk_progress.h"

#include "base/text_table.h"
#include "engine/message_text.h"

namespace kelvane {
namespace {

constexpr std::uint64_t textInterval = 1001;
constexpr std::uint64_t numbersInterval = 100;
constexpr std::size_t longestName = 128;
// Even a cheap clock is not asked for every file.
constexpr unsigned itemsPerLook = 64;

}  // namespace

void WalkProgress::enteringFolder(const ShellItem& folder, std::uint64_t candidates)
{
    if (!isDue(lastText_, textInterval))
        return;
    const std::u16string name = shell_.displayName(folder);
    observer_.status(withText(text(TextId::searchingIn), cutTo(name, longestName)));
    observer_.caption(std::u16string(text(TextId::phaseGathering)) + u" (" +
                      decimal(static_cast<std::int64_t>(candidates)) + u")");
}

void WalkProgress::counted(std::uint64_t candidates)
{
    if (untilClock_-- != 0)
        return;
    untilClock_ = itemsPerLook;
    if (isDue(lastNumbers_, numbersInterval))
        observer_.progress({.phase = ScanPhase::gathering, .items = candidates});
}

bool WalkProgress::isDue(std::optional<std::uint64_t>& last, std::uint64_t interval) const
{
    const std::uint64_t now = clock_.ticks();
    if (last && now >= *last && now - *last < interval)
        return false;
    last = now;
    return true;
}

}  // namespace kelvane
