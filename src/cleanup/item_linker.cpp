#include "cleanup/item_linker.h"

#include "base/filled_text.h"

namespace kelvane {
namespace {

LinkAttempt failedWith(CleanupFault fault, Error error)
{
    return {{Placed::notDone, CleanupFailure{fault, std::move(error)}}, LinkKind::none, false, true};
}

// The file system says that the bytes differ, which it looked at itself.
LinkAttempt failedClone(const Error& error)
{
    return failedWith(error.kind == ErrorKind::changed ? CleanupFault::different : CleanupFault::system, error);
}

LinkAttempt failedLink(const HeldPair& pair, const NativeString& temporary, const Error& error)
{
    return {abandonLink(pair, temporary, {CleanupFault::system, error}), LinkKind::none, false, true};
}

}  // namespace

std::uint8_t waysOf(const CleanupCommand& command)
{
    if (command.ways != 0)
        return command.ways;
    switch (command.link) {
    case LinkKind::hard:
        return link_way::hard;
    case LinkKind::symbolic:
        return link_way::symbolic;
    case LinkKind::clone:
        return link_way::clone;
    case LinkKind::automatic:
        return link_way::hard | link_way::symbolic;
    case LinkKind::none:
        break;
    }
    return 0;
}

LinkAttempt ItemLinker::link(const HeldPair& pair, const NativeString& temporary, std::uint8_t ways,
                             const ShellItem& item, const ShellItem& kept)
{
    LinkAttempt failed = failedWith(CleanupFault::system, {ErrorKind::notSupported, 0, filledText(TextId::faultNoWay)});
    if ((ways & link_way::clone) != 0) {
        const Status cloned = pair.item->shareBlocks(*pair.kept);
        if (cloned)
            return {{}, LinkKind::clone};
        failed = failedClone(cloned.error());
        if (cloned.error().kind != ErrorKind::notSupported)
            return failed;
    }
    if ((ways & link_way::hard) != 0) {
        const Status linked = pair.folder->hardLink(*pair.kept, temporary);
        if (linked)
            return place(pair, temporary, LinkKind::hard);
        failed = failedLink(pair, temporary, linked.error());
        failed.tooManyNames = ports_.held.isTooManyLinks(linked.error());
        if (failed.tooManyNames || failed.placement.state == Placed::undecided)
            return failed;
    }
    if ((ways & link_way::symbolic) == 0)
        return failed;
    const Status linked = makeSymbolic(pair, temporary, item, kept);
    return linked ? place(pair, temporary, LinkKind::symbolic) : failedLink(pair, temporary, linked.error());
}

Status ItemLinker::makeSymbolic(const HeldPair& pair, const NativeString& temporary, const ShellItem& item,
                                const ShellItem& kept)
{
    const Status made = pair.folder->symbolicLink(pair.keptPath, temporary);
    if (made || volumes_.isOnNetwork(item) || volumes_.isOnNetwork(kept))
        return made;
    return elevated_.make(pair.folder->path() / temporary, pair.keptPath, made.error());
}

LinkAttempt ItemLinker::place(const HeldPair& pair, const NativeString& temporary, LinkKind kind)
{
    LinkAttempt attempt;
    attempt.placement = placeLink(pair, temporary, kind, ports_.files);
    attempt.kind = attempt.placement.state == Placed::done ? kind : LinkKind::none;
    return attempt;
}

}  // namespace kelvane
