// A link becomes a file of its own: a copy beside it, which then takes its place in one step.
#include <algorithm>
#include <vector>

#include "cleanup/undo_steps.h"

namespace kelvane {
namespace {

using Failure = std::optional<CleanupFailure>;

constexpr std::uint64_t chunk = 1 << 20;  // bytes

CleanupFailure systemFailure(const Error& error)
{
    return {CleanupFault::system, error};
}

Failure failureOf(const Status& status)
{
    return status ? Failure{} : systemFailure(status.error());
}

class Split {
public:
    Split(const JournalEntry& entry, SplitItem item, const CancelFlag& cancel)
        : entry_(entry), item_(std::move(item)), cancel_(cancel)
    {
    }

    StepOutcome run()
    {
        auto made = item_.folder->create(entry_.undoTemporary);
        if (!made) {
            outcome_.failure = systemFailure(made.error());
            outcome_.decided = made.error().kind == ErrorKind::exists || isFree(entry_.undoTemporary);
            return std::move(outcome_);
        }
        outcome_.failure = fill(**made);
        // Both are let go of before names change: not every system moves names of open files.
        made.value().reset();
        item_.source.reset();
        if (!outcome_.failure)
            outcome_.failure = place();
        if (outcome_.failure)
            dropCopy();
        return std::move(outcome_);
    }

private:
    Failure fill(NewFile& copy)
    {
        const auto empty = copy.details();
        if (!empty)
            return systemFailure(empty.error());
        copyIs_ = empty->identity;
        if (auto failed = copyBytes(copy))
            return failed;
        if (const Status set = copy.setMetadata(metadata()); !set)
            outcome_.metadataNotKept = set.error();
        if (auto failed = failureOf(copy.flush()))
            return failed;
        const auto copied = copy.details();
        if (!copied)
            return systemFailure(copied.error());
        return copied->size == item_.sourceWas.size ? Failure{} : systemFailure({ErrorKind::io, 0, {}});
    }

    // In plain reads and writes: sharing blocks once more would free nothing of what the two are to have apart.
    Failure copyBytes(NewFile& copy)
    {
        const std::uint64_t size = item_.sourceWas.size.bytes;
        std::vector<std::byte> buffer(static_cast<std::size_t>(std::clamp<std::uint64_t>(size, 1, chunk)));
        for (std::uint64_t offset = 0; offset < size;) {
            if (cancel_.cancelled())
                return systemFailure({ErrorKind::cancelled, 0, {}});
            const auto read = item_.source->readAt(offset, buffer);
            if (!read)
                return systemFailure(read.error());
            if (*read == 0)
                break;
            if (auto failed = failureOf(copy.write(std::span(buffer).first(*read))))
                return failed;
            offset += *read;
        }
        return sourceChanged();
    }

    Failure sourceChanged() const
    {
        const auto now = item_.source->details();
        if (!now)
            return systemFailure(now.error());
        if (now->size == item_.sourceWas.size && now->modified == item_.sourceWas.modified)
            return {};
        return CleanupFailure{entry_.link == LinkKind::symbolic ? CleanupFault::keptChanged : CleanupFault::changed,
                              {}};
    }

    // A clone has kept its metadata, and what a person has set since stays.
    FileMetadata metadata() const
    {
        if (entry_.link != LinkKind::clone)
            return entry_.intent.metadata;
        auto now = item_.source->metadata();
        return now ? *now : entry_.intent.metadata;
    }

    Failure place()
    {
        if (cancel_.cancelled())
            return systemFailure({ErrorKind::cancelled, 0, {}});
        exchangeTried_ = true;
        const Status exchanged = item_.folder->exchange(entry_.undoTemporary, item_.name);
        if (exchanged || isCopy(item_.name))
            return removeAside();
        if (exchanged.error().kind != ErrorKind::notSupported)
            return systemFailure(exchanged.error());
        exchangeTried_ = false;
        return replaceLink();
    }

    // What came aside is looked at: between the check and the exchange anything may have taken the place.
    Failure removeAside()
    {
        auto obstacle = notThatLink(*item_.folder, entry_.undoTemporary, entry_);
        if (!obstacle) {
            const Status removed = item_.folder->remove(entry_.undoTemporary);
            if (removed || isFree(entry_.undoTemporary))
                return {};
            obstacle = systemFailure(removed.error());
        }
        // Whether it went back shows in dropCopy(), which only removes the copy.
        (void)item_.folder->exchange(entry_.undoTemporary, item_.name);
        return obstacle;
    }

    Failure replaceLink()
    {
        if (auto obstacle = notThatLink(*item_.folder, item_.name, entry_))
            return obstacle;
        const Status replaced = item_.folder->replace(entry_.undoTemporary, item_.name);
        return isCopy(item_.name) ? Failure{} : failureOf(replaced);
    }

    // A failure may be told of what has happened nevertheless, so the names themselves are asked.
    bool isFree(NativeView name) const
    {
        const auto there = item_.folder->look(name);
        return !there && there.error().kind == ErrorKind::notFound;
    }

    bool isCopy(NativeView name) const
    {
        const auto there = item_.folder->look(name);
        return there && copyIs_.known() && there->identity == copyIs_;
    }

    // After an exchange that failed on the way the name may hold the old file, which is for settling.
    void dropCopy()
    {
        const bool ours = !exchangeTried_ || isCopy(entry_.undoTemporary);
        outcome_.decided = ours && item_.folder->remove(entry_.undoTemporary).ok();
        outcome_.decided = outcome_.decided || isFree(entry_.undoTemporary);
    }

    const JournalEntry& entry_;
    SplitItem item_;
    const CancelFlag& cancel_;
    FileIdentity copyIs_;
    bool exchangeTried_ = false;
    StepOutcome outcome_;
};

}  // namespace

StepOutcome splitLink(const JournalEntry& entry, const PassPorts& ports, const CancelFlag& cancel)
{
    auto held = holdForSplit(entry, ports);
    if (auto* obstacle = std::get_if<CleanupFailure>(&held))
        return {std::move(*obstacle), {}, true};
    return Split(entry, std::move(std::get<SplitItem>(held)), cancel).run();
}

}  // namespace kelvane
