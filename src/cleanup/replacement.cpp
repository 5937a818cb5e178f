#include "cleanup/replacement.h"

#include "cleanup/seen_files.h"

namespace kelvane {
namespace {

using Failure = std::optional<CleanupFailure>;

class Replacement {
public:
    Replacement(const HeldPair& pair, const NativeString& temporary, FileSystem& files)
        : pair_(pair), folder_(*pair.folder), temporary_(temporary), aside_(temporary), files_(files)
    {
    }

    Placement run(LinkKind kind)
    {
        // Another name of the kept file is known; a symbolic link is a file of its own.
        const Result<FileDetails> link = kind == LinkKind::hard ? pair_.keptNow : folder_.look(temporary_);
        if (!link)
            return {Placed::undecided, CleanupFailure{CleanupFault::system, link.error()}};
        // Somebody may have taken the name in this instant: what is theirs stays.
        if (kind == LinkKind::symbolic && link->kind != FileKind::link)
            return {Placed::undecided, CleanupFailure{CleanupFault::changed, {}}};
        link_ = *link;
        if (const Status moved = moveAside(); !moved) {
            CleanupFailure failure = lookFailure(moved.error(), CleanupFault::changed);
            // Some systems report a failure of what they did.
            return isOurLink(pair_.name) && !isOurLink(temporary_) ? putBack(std::move(failure))
                                                                   : abandon(std::move(failure));
        }
        if (const Failure found = surprise())
            return putBack(*found);
        return removeAside();
    }

private:
    [[nodiscard]] bool isOurLink(const NativeString& name) const
    {
        const auto now = folder_.look(name);
        return now && now->kind == link_.kind && now->identity == link_.identity;
    }

    [[nodiscard]] Status moveAside()
    {
        const Status exchanged = folder_.exchange(temporary_, pair_.name);
        if (exchanged || exchanged.error().kind != ErrorKind::notSupported)
            return exchanged;
        aside_ = asideName(temporary_);
        return overwrite();
    }

    // Without an exchange the old file first gets the other name as well. What somebody put under the item's name in
    // this instant would be lost, so the look comes right before.
    [[nodiscard]] Status overwrite()
    {
        const Status linked = folder_.hardLink(*pair_.item, aside_);
        // Whatever the answer is the name may be there now, unless it is somebody else's.
        overwrites_ = linked || linked.error().kind != ErrorKind::exists;
        if (!linked)
            return linked;
        const auto now = folder_.look(pair_.name);
        if (!now)
            return now.error();
        if (!isAsSeen(*now, pair_.itemNow))
            return Error{ErrorKind::changed, 0, {}};
        return folder_.replace(temporary_, pair_.name);
    }

    // What came aside has to be the held file, untouched, and what stands there now the link. That is looked at last:
    // once the old file is gone nothing else has its bytes.
    [[nodiscard]] Failure surprise() const
    {
        if (pair_.item->isBeingWritten())
            return CleanupFailure{CleanupFault::beingWritten, {}};
        const auto aside = folder_.look(aside_);
        if (!aside)
            return lookFailure(aside.error(), CleanupFault::changed);
        if (!isAsSeen(*aside, pair_.itemNow))
            return CleanupFailure{CleanupFault::changed, {}};
        const auto place = link_.kind == FileKind::link
                               ? files_.details(pair_.folder->path() / pair_.name, Links::followed)
                               : folder_.look(pair_.name);
        if (!place)
            return lookFailure(place.error(), CleanupFault::keptChanged);
        return isAsSeen(*place, pair_.keptNow) ? Failure() : CleanupFailure{CleanupFault::keptChanged, {}};
    }

    [[nodiscard]] Placement removeAside()
    {
        const Status removed = folder_.remove(aside_);
        if (removed || isFree(aside_))
            return {};
        return putBack({CleanupFault::system, removed.error()});
    }

    [[nodiscard]] bool isFree(const NativeString& name) const
    {
        const auto now = folder_.look(name);
        return !now && now.error().kind == ErrorKind::notFound;
    }

    [[nodiscard]] Placement putBack(CleanupFailure failure)
    {
        // Somebody has replaced the link already: theirs stays.
        if (!isOurLink(pair_.name))
            return {Placed::undecided, std::move(failure)};
        const Status back = overwrites_ ? folder_.replace(aside_, pair_.name) : folder_.exchange(aside_, pair_.name);
        if (!back)
            return {Placed::undecided, std::move(failure)};
        return abandon(std::move(failure));
    }

    // The item has its name, and the names beside it have to go.
    [[nodiscard]] Placement abandon(CleanupFailure failure)
    {
        // Where nobody can see what has the item's name, the name aside may be the old file's last one.
        const auto now = folder_.look(pair_.name);
        if (overwrites_ && !now && now.error().kind != ErrorKind::notFound)
            return {Placed::undecided, std::move(failure)};
        const bool asideGone = !overwrites_ || isGone(aside_, pair_.itemNow);
        const bool linkGone = isGone(temporary_, link_);
        return {asideGone && linkGone ? Placed::notDone : Placed::undecided, std::move(failure)};
    }

    // Removes only what is known; what else has the name is not ours to remove.
    [[nodiscard]] bool isGone(const NativeString& name, const FileInfo& known)
    {
        const auto now = folder_.look(name);
        if (!now)
            return now.error().kind == ErrorKind::notFound;
        if (now->identity != known.identity || now->kind != known.kind)
            return false;
        return folder_.remove(name).ok() || isFree(name);
    }

    const HeldPair& pair_;
    HeldFolder& folder_;
    const NativeString& temporary_;
    NativeString aside_;  // where the old file is once it left
    FileSystem& files_;
    FileDetails link_;
    bool overwrites_ = false;  // the old file has two names: there is no exchange here
};

bool isLinkToKept(const HeldPair& pair, const NativeString& name, const FileInfo& now)
{
    if (now.kind != FileKind::link)
        return areOneFile(now.identity, pair.keptNow.identity);
    const auto target = pair.folder->readLink(name);
    return target && *target == pair.keptPath;
}

}  // namespace

Placement placeLink(const HeldPair& pair, const NativeString& temporary, LinkKind kind, FileSystem& files)
{
    return Replacement(pair, temporary, files).run(kind);
}

Placement abandonLink(const HeldPair& pair, const NativeString& temporary, CleanupFailure failure)
{
    const auto now = pair.folder->look(temporary);
    if (!now && now.error().kind == ErrorKind::notFound)
        return {Placed::notDone, std::move(failure)};
    if (now && isLinkToKept(pair, temporary, *now) && pair.folder->remove(temporary))
        return {Placed::notDone, std::move(failure)};
    // A name that somebody else took meanwhile is not ours.
    const bool isTaken = now && failure.error.kind == ErrorKind::exists;
    return {isTaken ? Placed::notDone : Placed::undecided, std::move(failure)};
}

}  // namespace kelvane
