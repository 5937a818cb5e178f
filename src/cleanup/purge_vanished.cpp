#include <algorithm>

#include "base/text_table.h"
#include "cleanup/cleanup_run.h"

namespace kelvane {
namespace {

constexpr std::uint32_t silentItems = 100;

// What lies in an archive is taken to be there as long as the archive is. Only a plain answer that there is nothing
// takes a row away: a disk that fails for a moment does not.
bool hasVanished(const ShellItem& item, FileSystem& files)
{
    const ShellItem* outermost = &item;
    while (!outermost->inFileSystem() && outermost->parent() != nullptr)
        outermost = outermost->parent();
    const auto details = files.details(outermost->path(), Links::asThemselves);
    return !details && details.error().kind == ErrorKind::notFound;
}

}  // namespace

std::vector<ItemId> purgeVanished(ResultsModel& results, FileSystem& files, const CancelFlag& cancel,
                                  const StatusText& told)
{
    if (told && results.itemCount() > silentItems)
        told(text(TextId::checkingItems));
    std::vector<ItemId> items, vanished;
    results.forEachItem([&](ItemId id) { items.push_back(id); });
    std::reverse(items.begin(), items.end());
    for (const ItemId id : items) {
        if (cancel.cancelled())
            break;
        if (hasVanished(results.item(id).file.item(), files))
            vanished.push_back(id);
    }
    (void)results.remove(vanished, Undoable::no);
    return vanished;
}

}  // namespace kelvane
