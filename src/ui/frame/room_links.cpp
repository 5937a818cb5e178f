#include "ui/frame/room_links.h"

#include "platform/native_text.h"
#include "ui/core/window_link.h"
#include "ui/list/results_view.h"
#include "ui/scan/folder_list.h"

namespace kelvane {
namespace {

void goToItems(WindowLink& link, ResultsView& view)
{
    QObject::connect(&link, &WindowLink::itemWanted, &view, [&link, &view](ItemId item) {
        link.fetchOfList(
            &view, [item](Workbench& bench) { return bench.results().rowOf(item); },
            [&view](const std::optional<Row>& row) {
                if (row)
                    view.goTo(*row, Qt::NoModifier);
            });
    });
}

void searchFolders(WindowLink& link, FolderList& folders)
{
    QObject::connect(&link, &WindowLink::folderRequested, &folders, [&folders](const std::filesystem::path& folder) {
        folders.show({bytesFromNative(folder.native())});
    });
}

}  // namespace

void linkRooms(const FrameParts& parts)
{
    if (auto* const view = parts.window.findChild<ResultsView*>())
        goToItems(parts.link, *view);
    if (auto* const folders = parts.window.findChild<FolderList*>())
        searchFolders(parts.link, *folders);
}

}  // namespace kelvane
