// A link that was to take the place of an item.
#include <algorithm>
#include <array>

#include "cleanup/settle_place.h"

namespace kelvane {
namespace {

class Replaced {
public:
    Replaced(const JournalEntry& entry, const PassPorts& ports)
        : entry_(entry), ports_(ports), place_(entry, ports), spares_{{{entry.intent.temporary, Found::nothing}, {}}}
    {
        if (!entry.intent.temporary.empty())
            spares_[1].name = asideName(entry.intent.temporary);
    }

    Verdict settle()
    {
        if (const Status opened = place_.open(); !opened)
            return notOpened(opened.error());
        if (const Status looked = look(); !looked)
            return place_.undecided(CleanupFault::system, looked.error());
        switch (item_) {
        case Found::old:
            return cleared(EntryState::notDone);
        case Found::hardLink:
        case Found::symbolicLink:
            return old() != nullptr ? complete(*old()) : cleared(EntryState::done);
        case Found::nothing:
            return old() != nullptr ? putIntoFreePlace(*old()) : nothingThere();
        case Found::other:
            break;
        }
        return old() != nullptr ? leave(*old()) : cleared(EntryState::notDone);
    }

    // Nothing of what is to be gone after a finished replacement is there.
    bool isFinished()
    {
        if (!place_.open() || !look() || item_ == Found::other)
            return true;  // nothing tells
        const auto isOurs = [](const Spare& spare) { return spare.found == Found::old || isLink(spare.found); };
        return item_ != Found::old && std::none_of(spares_.begin(), spares_.end(), isOurs);
    }

private:
    // A name beside the item.
    struct Spare {
        NativeString name;
        Found found = Found::nothing;
    };

    Verdict notOpened(const Error& error)
    {
        if (error.kind == ErrorKind::notFound && folderIsGone(entry_.intent.item, entry_.intent.itemWas, ports_.files))
            return place_.decidedBut(EntryState::notDone, CleanupFault::gone);
        return place_.undecided(CleanupFault::system, error);
    }

    Status look()
    {
        const auto item = place_.at(place_.name());
        if (!item)
            return item.error();
        item_ = *item;
        for (Spare& spare : spares_) {
            const auto found = place_.at(spare.name);
            if (!found)
                return found.error();
            spare.found = *found;
        }
        return {};
    }

    // Where the old file went, unless it is in its place.
    Spare* old()
    {
        for (Spare& spare : spares_) {
            if (spare.found == Found::old)
                return &spare;
        }
        return nullptr;
    }

    // The old file goes when the link shows the same bytes; else it comes back.
    Verdict complete(Spare& old)
    {
        const auto same = place_.sameContent(place_.name(), old.name);
        if (!same || !*same)
            return takeBack(old);
        const Status flushed = place_.folder().flush();
        const Status dropped = flushed ? place_.drop(old.name) : flushed;
        if (!dropped)
            return place_.undecided(CleanupFault::system, dropped.error(), old.name);
        old.found = Found::nothing;
        return cleared(EntryState::done);
    }

    Verdict takeBack(Spare& old)
    {
        const auto mayBeReplaced =
            item_ == Found::symbolicLink ? Result<bool>(true) : place_.hasAnotherName(place_.name());
        if (!mayBeReplaced)
            return place_.undecided(CleanupFault::system, mayBeReplaced.error(), old.name);
        if (!*mayBeReplaced)
            return place_.undecided(CleanupFault::keptChanged, {}, old.name);
        const Status exchanged = place_.folder().exchange(old.name, place_.name());
        old.found = exchanged ? item_ : Found::nothing;
        const Status back = !exchanged && exchanged.error().kind == ErrorKind::notSupported
                                ? place_.folder().replace(old.name, place_.name())
                                : exchanged;
        if (!back)
            return place_.undecided(CleanupFault::system, back.error(), old.name);
        item_ = Found::old;
        return cleared(EntryState::notDone);
    }

    Verdict putIntoFreePlace(Spare& old)
    {
        const Status back = place_.folder().rename(old.name, place_.name());
        if (!back)
            return place_.undecided(back.error().kind == ErrorKind::exists ? CleanupFault::placeTaken
                                                                           : CleanupFault::system,
                                    back.error(), old.name);
        old.found = Found::nothing;
        item_ = Found::old;
        return cleared(EntryState::notDone);
    }

    // Somebody else's file has the place.
    Verdict leave(Spare& old)
    {
        old.found = Found::nothing;  // for clearing, which is to leave it alone
        (void)cleared(EntryState::notDone);
        return place_.undecided(CleanupFault::placeTaken, {}, old.name);
    }

    // Somebody else has taken the item away; the kept file should have what was in it.
    Verdict nothingThere()
    {
        Verdict verdict = cleared(EntryState::notDone);
        if (verdict.state && !verdict.told && !place_.openKept())
            return place_.decidedBut(EntryState::notDone, CleanupFault::gone);
        return verdict;
    }

    // The item's name is as it shall be, and the names beside it go.
    Verdict cleared(EntryState state)
    {
        Verdict verdict{state, LinkKind::none, std::nullopt};
        if (state == EntryState::done)
            verdict.link = item_ == Found::symbolicLink ? LinkKind::symbolic : LinkKind::hard;
        for (const Spare& spare : spares_) {
            if (spare.found == Found::nothing)
                continue;
            const auto spareable = maySpare(spare);
            const Status dropped = !spareable ? spareable.error() : *spareable ? place_.drop(spare.name) : Status();
            if (!dropped)
                return place_.undecided(CleanupFault::system, dropped.error(), spare.name);
            if (!*spareable)
                verdict.told = place_.decidedBut(state, CleanupFault::changed, spare.name).told;
        }
        return verdict;
    }

    // Whether what it leads to is there under another name, or its content is.
    Result<bool> maySpare(const Spare& spare)
    {
        if (spare.found == Found::symbolicLink)
            return true;
        if (spare.found == Found::other)
            return false;
        const auto named = place_.hasAnotherName(spare.name);
        if (!named || *named || item_ == Found::nothing)
            return named;
        return place_.sameContent(place_.name(), spare.name);
    }

    const JournalEntry& entry_;
    const PassPorts& ports_;
    EntryPlace place_;
    Found item_ = Found::nothing;
    std::array<Spare, 2> spares_;
};

}  // namespace

Verdict settleReplacement(const JournalEntry& entry, const PassPorts& ports)
{
    return Replaced(entry, ports).settle();
}

bool isBehind(const JournalEntry& entry, const PassPorts& ports)
{
    if (entry.intent.action != CleanupAction::link)
        return settleRemoval(entry, ports).state == EntryState::notDone;
    return entry.link != LinkKind::clone && !Replaced(entry, ports).isFinished();
}

}  // namespace kelvane
