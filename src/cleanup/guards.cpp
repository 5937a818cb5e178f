#include "cleanup/guards.h"

#include "cleanup/content_check.h"
#include "cleanup/folder_nesting.h"
#include "cleanup/held_folders.h"
#include "cleanup/item_links.h"
#include "cleanup/kept_files.h"
#include "cleanup/marked_files.h"
#include "cleanup/seen_files.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

using Failure = std::optional<CleanupFailure>;

bool isLinking(const CleanupCommand& command)
{
    return command.action == CleanupAction::link;
}

}  // namespace

class Guards::Impl {
public:
    Impl(const PassPorts& ports, const PassOptions& options, const ResultsModel& model, const CleanupPlan& plan,
         const CancelFlag& cancel)
        : ports_(ports),
          options_(options),
          model_(model),
          cancel_(cancel),
          marked_(plan, model, ports.paths),
          folders_(ports.held),
          keptFiles_(ports, model, folders_)
    {
    }

    std::variant<HeldPair, CleanupFailure> hold(const CleanupCommand& command, ItemId kept)
    {
        if (marked_.isMarked(kept))
            return because(CleanupFault::keptMarked);
        HeldPair pair;
        Failure failure = holdItem(command, pair);
        if (!failure)
            failure = holdKept(kept, pair);
        if (!failure)
            failure = holdApart(pair, kept, command.sameFile && kept == command.kept);
        if (!failure)
            failure = compare(pair, command);
        if (failure)
            return *failure;
        return pair;
    }

    Failure recheck(const HeldPair& pair)
    {
        const auto item = pair.folder->look(pair.name);
        if (!item)
            return lookFailure(item.error(), CleanupFault::changed);
        if (!isAsSeen(*item, pair.itemNow))
            return because(CleanupFault::changed);
        const auto kept = ports_.files.details(pair.keptPath, Links::followed);
        if (!kept)
            return lookFailure(kept.error(), CleanupFault::keptChanged);
        if (!isStillKept(*kept, pair.keptNow))
            return because(CleanupFault::keptChanged);
        if (areOneFile(item->identity, kept->identity) && item->links < 2)
            return because(CleanupFault::sameFile);
        return std::nullopt;
    }

    void keep(ItemId item) { marked_.keep(item); }

    void release()
    {
        keptFiles_.release();
        folders_.release();
    }

private:
    // The run itself may take things out of a kept folder, which changes the folder's time.
    static bool isStillKept(const FileInfo& now, const FileInfo& held)
    {
        if (held.kind == FileKind::folder)
            return now.kind == held.kind && now.identity == held.identity;
        return isAsSeen(now, held);
    }

    Failure holdItem(const CleanupCommand& command, HeldPair& pair)
    {
        const ShellItem& item = model_.item(command.item).file.item();
        if (!item.inFileSystem())
            return CleanupFailure{CleanupFault::system, {ErrorKind::wrongType, 0, {}}};
        ItemPlace place = placeOf(item);
        auto folder = folders_.open(place.folder);
        if (!folder)
            return lookFailure(folder.error(), CleanupFault::changed);
        pair.itemPath = item.path();
        pair.folder = std::move(*folder);
        pair.name = std::move(place.name);
        if (!isLinkItself(item) && item.info().kind == FileKind::regular)
            return openItem(item, isLinking(command), pair);
        if (isLinking(command))
            return because(CleanupFault::isLink);
        return isSeenThroughLink(item) ? lookAtFollowedLink(item, pair) : lookAtItem(item, pair);
    }

    static Failure openItem(const ShellItem& item, bool linking, HeldPair& pair)
    {
        auto file = pair.folder->open(pair.name);
        if (!file)
            return lookFailure(file.error(), CleanupFault::changed);
        pair.item = std::move(*file);
        const auto now = pair.item->details();
        if (!now)
            return lookFailure(now.error(), CleanupFault::changed);
        if (!isAsSeen(*now, item.info()))
            return because(CleanupFault::changed);
        if (linking && pair.item->isBeingWritten())
            return because(CleanupFault::beingWritten);
        pair.itemNow = *now;
        return std::nullopt;
    }

    static Failure lookAtItem(const ShellItem& item, HeldPair& pair)
    {
        const auto now = pair.folder->look(pair.name);
        if (!now)
            return lookFailure(now.error(), CleanupFault::changed);
        if (!isAsSeen(*now, item.info()))
            return because(CleanupFault::changed);
        pair.itemNow = *now;
        return std::nullopt;
    }

    // The scan saw what the link leads to; what goes is the link.
    Failure lookAtFollowedLink(const ShellItem& item, HeldPair& pair)
    {
        const auto now = pair.folder->look(pair.name);
        if (!now)
            return lookFailure(now.error(), CleanupFault::changed);
        const auto target = ports_.files.details(pair.itemPath, Links::followed);
        if (!target)
            return lookFailure(target.error(), CleanupFault::changed);
        if (now->kind != FileKind::link || !isAsSeen(*target, item.info()))
            return because(CleanupFault::changed);
        pair.itemNow = *now;
        return std::nullopt;
    }

    Failure holdKept(ItemId kept, HeldPair& pair)
    {
        auto held = keptFiles_.hold(kept);
        if (auto* failure = std::get_if<CleanupFailure>(&held))
            return std::move(*failure);
        auto& found = std::get<HeldKept>(held);
        pair.keptPath = std::move(found.path);
        pair.kept = std::move(found.file);
        pair.keptNow = found.now;
        return std::nullopt;
    }

    // The two are different files, or two names of one that are known to be.
    Failure holdApart(const HeldPair& pair, ItemId kept, bool namesOfOneFile)
    {
        if (areOneFile(pair.itemNow.identity, pair.keptNow.identity) != namesOfOneFile)
            return because(namesOfOneFile ? CleanupFault::changed : CleanupFault::sameFile);
        if (namesOfOneFile ? isOneName(pair) || isLinkItself(model_.item(kept).file.item()) : isOnePath(pair))
            return because(CleanupFault::sameFile);
        return pair.itemNow.kind == FileKind::folder || marked_.hasFolders() ? nested(pair) : std::nullopt;
    }

    // Two ways to one name: then the file has only one, or both lead to the same name of the same folder.
    bool isOneName(const HeldPair& pair)
    {
        if (pair.itemNow.links < 2)
            return true;
        const auto ofItem = ports_.files.details(pair.itemPath.parent_path(), Links::followed);
        const auto ofKept = ports_.files.details(pair.keptPath.parent_path(), Links::followed);
        if (!ofItem || !ofKept || !areOneFile(ofItem->identity, ofKept->identity))
            return !ofItem || !ofKept;
        return ports_.paths.samePath(bytesFromNative(pair.name), bytesFromNative(pair.keptPath.filename().native()));
    }

    bool isOnePath(const HeldPair& pair)
    {
        return ports_.paths.samePath(bytesFromNative(pair.itemPath.native()), bytesFromNative(pair.keptPath.native()));
    }

    Failure nested(const HeldPair& pair)
    {
        const auto isItem = [&](FileIdentity above) { return above == pair.itemNow.identity; };
        const auto isKept = [&](FileIdentity above) { return above == pair.keptNow.identity; };
        const auto isMarked = [&](FileIdentity above) { return marked_.isMarkedFolder(above); };
        if (anyFolderAbove(pair.keptPath, ports_.files, isItem) || anyFolderAbove(pair.itemPath, ports_.files, isKept))
            return because(CleanupFault::sameFile);
        if (anyFolderAbove(pair.keptPath, ports_.files, isMarked))
            return because(CleanupFault::keptMarked);
        return std::nullopt;
    }

    Failure compare(const HeldPair& pair, const CleanupCommand& command)
    {
        if (!pair.item)
            return std::nullopt;
        const bool linking = isLinking(command);
        const bool forGood = options_.compareBeforeLoss && command.action == CleanupAction::deletePermanently;
        const bool inFull =
            options_.compareInFull && (linking || forGood || command.approximate || command.joinedByHand);
        if ((linking || inFull) && (!pair.kept || pair.itemNow.size != pair.keptNow.size))
            return because(CleanupFault::different);
        if (!inFull || areOneFile(pair.itemNow.identity, pair.keptNow.identity))
            return std::nullopt;
        const auto same = contents_.areEqual(*pair.item, *pair.kept, pair.itemNow.size, cancel_);
        if (!same)
            return CleanupFailure{CleanupFault::system, same.error()};
        return *same ? std::nullopt : Failure(because(CleanupFault::different));
    }

    const PassPorts& ports_;
    const PassOptions& options_;
    const ResultsModel& model_;
    const CancelFlag& cancel_;
    MarkedFiles marked_;
    HeldFolders folders_;
    KeptFiles keptFiles_;
    ContentCheck contents_;
};

Guards::Guards(const PassPorts& ports, const PassOptions& options, const ResultsModel& model, const CleanupPlan& plan,
               const CancelFlag& cancel)
    : impl_(std::make_unique<Impl>(ports, options, model, plan, cancel))
{
}

Guards::~Guards() = default;

std::variant<HeldPair, CleanupFailure> Guards::hold(const CleanupCommand& command, ItemId kept)
{
    return impl_->hold(command, kept);
}

std::optional<CleanupFailure> Guards::recheck(const HeldPair& pair)
{
    return impl_->recheck(pair);
}

void Guards::keep(ItemId item)
{
    impl_->keep(item);
}

void Guards::release()
{
    impl_->release();
}

}  // namespace kelvane
