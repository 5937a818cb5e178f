#include "ui/frame/room_links.h"

#include "platform/native_text.h"
#include "ui/core/window_link.h"
#include "ui/list/results_view.h"
#include "ui/scan/beginner_page.h"
#include "ui/scan/folder_list.h"
#include "ui/scan/scan_pane.h"

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

void searchFolders(WindowLink& link, FolderList& folders, BeginnerPage& express)
{
    QObject::connect(&link, &WindowLink::foldersRequested, &folders,
                     [&folders, &express](const std::vector<std::filesystem::path>& wanted) {
                         std::vector<std::string> all;
                         for (const std::filesystem::path& folder : wanted)
                             all.push_back(bytesFromNative(folder.native()));
                         folders.show(all);
                         express.setFolders(std::move(all));
                     });
}

// Who started a scan by keyboard goes on in the list.
void goToFound(const WindowLink& link, const ScanPane& scan, ResultsView& view)
{
    QObject::connect(&scan, &ScanPane::found, &view, [&link, &view] {
        view.setFocus(Qt::OtherFocusReason);
        if (!link.currentItem())
            view.goTo(0, Qt::NoModifier);
    });
}

}  // namespace

void linkRooms(const FrameParts& parts)
{
    auto* const view = parts.window.findChild<ResultsView*>();
    auto* const scan = parts.window.findChild<ScanPane*>();
    if (view != nullptr)
        goToItems(parts.link, *view);
    if (auto* const folders = parts.window.findChild<FolderList*>())
        searchFolders(parts.link, *folders, *parts.window.findChild<BeginnerPage*>());
    if (view != nullptr && scan != nullptr)
        goToFound(parts.link, *scan, *view);
}

}  // namespace kelvane
