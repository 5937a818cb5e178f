// A copy that was to take the place of a link, when a clean-up was being taken back.
#include <algorithm>
#include <vector>

#include "cleanup/settle_place.h"

namespace kelvane {
namespace {

constexpr std::size_t chunk = 256 * 1024;  // bytes

// Fewer bytes than asked for mean the end or an error; both are more than the other file has.
std::size_t readSome(HeldFile& file, std::uint64_t offset, std::vector<std::byte>& buffer)
{
    const auto count = file.readAt(offset, buffer);
    return count ? *count : 0;
}

// What a copy that came to no end may be: the first bytes of the whole, and zeros where a loss of power took some.
bool holdsNothingElse(HeldFile& copy, HeldFile& whole)
{
    const auto length = copy.details();
    if (!length)
        return false;
    std::vector<std::byte> ofCopy(chunk), ofWhole(chunk);
    for (std::uint64_t offset = 0; offset < length->size.bytes;) {
        const std::size_t count = readSome(copy, offset, ofCopy);
        if (count == 0 || readSome(whole, offset, ofWhole) < count)
            return false;
        for (std::size_t i = 0; i < count; ++i) {
            if (ofCopy[i] != ofWhole[i] && ofCopy[i] != std::byte{0})
                return false;
        }
        offset += count;
    }
    return true;
}

bool isTrue(const Result<bool>& answer)
{
    return answer && *answer;
}

class Splitting {
public:
    Splitting(const JournalEntry& entry, const PassPorts& ports)
        : entry_(entry), ports_(ports), place_(entry, ports), spare_(entry.undoTemporary)
    {
    }

    Verdict settle()
    {
        if (const Status opened = place_.open(); !opened)
            return notOpened(opened.error());
        const auto item = place_.at(place_.name());
        const auto spare = place_.at(spare_);
        if (!item || !spare)
            return place_.undecided(CleanupFault::system, item ? spare.error() : item.error());
        if (isTheLink(*item))
            return backToLink(*spare);
        if (*item == Found::nothing)
            return intoFreePlace(*spare);
        if (isTheLink(*spare))
            return dropLink(*spare);
        return *spare == Found::nothing ? Verdict{EntryState::undone, LinkKind::none, std::nullopt}
                                        : verified(CleanupFault::placeTaken);
    }

private:
    Verdict notOpened(const Error& error)
    {
        if (error.kind == ErrorKind::notFound && folderIsGone(entry_.intent.item, entry_.intent.itemWas, ports_.files))
            return place_.decidedBut(EntryState::done, CleanupFault::gone);
        return place_.undecided(CleanupFault::system, error);
    }

    // A clone is the item's own file still.
    bool isTheLink(Found found) const { return entry_.link == LinkKind::clone ? found == Found::old : isLink(found); }

    Verdict backToLink(Found spare)
    {
        if (spare == Found::nothing)
            return {EntryState::done, LinkKind::none, std::nullopt};
        if (isTheLink(spare))
            return place_.decidedBut(EntryState::done, CleanupFault::changed, spare_);
        const bool spareable = isPartOf(place_.contentOf(place_.name()));
        return spareable ? dropped(EntryState::done) : place_.undecided(CleanupFault::keptChanged, {}, spare_);
    }

    // The copy has its place, and the link came aside.
    Verdict dropLink(Found spare)
    {
        const bool spareable = spare == Found::symbolicLink || isTrue(place_.hasAnotherName(spare_)) ||
                               isTrue(place_.sameContent(place_.name(), spare_)) || isPartOf(place_.openKept());
        return spareable ? dropped(EntryState::undone) : place_.undecided(CleanupFault::changed, {}, spare_);
    }

    Verdict intoFreePlace(Found spare)
    {
        if (spare == Found::nothing)
            return place_.decidedBut(EntryState::done, CleanupFault::gone);
        if (!isTheLink(spare))
            return verified(CleanupFault::gone);
        const Status back = place_.folder().rename(spare_, place_.name());
        return back ? Verdict{EntryState::done, LinkKind::none, std::nullopt}
                    : place_.undecided(CleanupFault::system, back.error(), spare_);
    }

    // Something else has the place, or nothing: the copy, or what came aside for it, may be the only one.
    Verdict verified(CleanupFault fault)
    {
        if (!isPartOf(place_.openKept()))
            return place_.undecided(fault, {}, spare_);
        Verdict verdict = dropped(EntryState::done);
        if (verdict.state)
            verdict.told = place_.decidedBut(EntryState::done, fault).told;
        return verdict;
    }

    bool isPartOf(const Result<std::unique_ptr<HeldFile>>& whole)
    {
        const auto copy = place_.folder().open(spare_);
        return whole && copy && !(*copy)->isBeingWritten() && holdsNothingElse(**copy, **whole);
    }

    Verdict dropped(EntryState state)
    {
        const Status dropped = place_.drop(spare_);
        return dropped ? Verdict{state, LinkKind::none, std::nullopt}
                       : place_.undecided(CleanupFault::system, dropped.error(), spare_);
    }

    const JournalEntry& entry_;
    const PassPorts& ports_;
    EntryPlace place_;
    const NativeString& spare_;
};

}  // namespace

Verdict settleSplit(const JournalEntry& entry, const PassPorts& ports)
{
    return Splitting(entry, ports).settle();
}

}  // namespace kelvane
