#include "cleanup/marked_files.h"

#include "cleanup/item_links.h"
#include "results/folder_text.h"

namespace kelvane {

MarkedFiles::MarkedFiles(const CleanupPlan& plan, const ResultsModel& model, const PathRules& paths)
    : model_(model), paths_(paths), rows_(model.idLimit(), false)
{
    for (const CleanupCommand& command : plan.commands) {
        rows_[static_cast<std::size_t>(command.item)] = true;
        const ShellItem& item = model.item(command.item).file.item();
        if (command.sameFile || isLinkItself(item))
            continue;
        const FileIdentity identity = item.info().identity;
        if (!identity.known())
            withoutIdentity_.insert(comparablePath(item, paths));
        else if (item.info().kind == FileKind::folder)
            folders_.insert(identity);
        else
            files_.insert(identity);
    }
}

bool MarkedFiles::isMarked(ItemId id) const
{
    if (rows_[static_cast<std::size_t>(id)])
        return true;
    const ShellItem& item = model_.item(id).file.item();
    const FileIdentity identity = item.info().identity;
    if (!identity.known())
        return !withoutIdentity_.empty() && withoutIdentity_.contains(comparablePath(item, paths_));
    return files_.contains(identity) || folders_.contains(identity);
}

void MarkedFiles::keep(ItemId id)
{
    rows_[static_cast<std::size_t>(id)] = false;
    const ShellItem& item = model_.item(id).file.item();
    files_.erase(item.info().identity);
    if (!item.info().identity.known())
        withoutIdentity_.erase(comparablePath(item, paths_));
}

}  // namespace kelvane
