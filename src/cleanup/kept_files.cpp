#include "cleanup/kept_files.h"

namespace kelvane {
namespace {

bool ranOutOfHandles(const std::variant<HeldKept, CleanupFailure>& answer)
{
    const auto* failure = std::get_if<CleanupFailure>(&answer);
    return failure != nullptr && failure->error.kind == ErrorKind::tooManyOpen;
}

}  // namespace

std::variant<HeldKept, CleanupFailure> KeptFiles::hold(ItemId kept)
{
    if (!last_ || last_->id != kept)
        last_ = Known{kept, look(model_.item(kept).file.item())};
    auto answer = last_->answer;
    if (ranOutOfHandles(answer))
        last_.reset();
    return answer;
}

std::variant<HeldKept, CleanupFailure> KeptFiles::look(const ShellItem& kept)
{
    // A link that was not followed keeps no contents.
    if (!kept.inFileSystem() || kept.info().kind == FileKind::link)
        return CleanupFailure{CleanupFault::keptChanged, {ErrorKind::wrongType, 0, {}}};
    HeldKept held{kept.path(), nullptr, {}};
    if (kept.info().kind == FileKind::regular) {
        auto file = openThroughLinks(placeOf(kept));
        if (!file)
            return lookFailure(file.error(), CleanupFault::keptChanged);
        held.file = std::move(*file);
    }
    const auto now = held.file ? held.file->details() : ports_.files.details(held.path, Links::followed);
    if (!now)
        return lookFailure(now.error(), CleanupFault::keptChanged);
    if (!isAsSeen(*now, kept.info()))
        return CleanupFailure{CleanupFault::keptChanged, {}};
    if (isInTrash(kept, held))
        return CleanupFailure{CleanupFault::keptInTrash, {}};
    held.now = *now;
    return held;
}

bool KeptFiles::isInTrash(const ShellItem& kept, const HeldKept& held)
{
    if (!held.file || isSeenThroughLink(kept))
        return ports_.operations.isInTrash(held.path);
    const auto [known, isNew] = trashFolders_.try_emplace(held.path.parent_path().native());
    if (isNew)
        known->second = ports_.operations.isInTrash(held.path);
    return known->second;
}

void KeptFiles::release()
{
    last_.reset();
    trashFolders_.clear();
}

// A held folder opens regular files only, so the links at the end of a path that a scan followed are taken one by one.
Result<std::shared_ptr<HeldFile>> KeptFiles::openThroughLinks(ItemPlace place)
{
    constexpr int mostLinks = 40;  // as many as systems follow themselves
    for (int links = 0; links < mostLinks; ++links) {
        const auto folder = folders_.open(place.folder);
        if (!folder)
            return folder.error();
        auto file = (*folder)->open(place.name);
        if (file)
            return std::shared_ptr<HeldFile>(std::move(*file));
        if (file.error().kind != ErrorKind::wrongType)
            return file.error();
        const auto target = (*folder)->readLink(place.name);
        if (!target)
            return file.error();
        place = placeOf(place.folder / *target);
    }
    return Error{ErrorKind::notFound, 0, {}};
}

}  // namespace kelvane
