#include "ui/list/install_list.h"

#include "base/desktop_texts/list.h"
#include "ui/list/file_commands.h"
#include "ui/list/filter_bar.h"
#include "ui/list/item_commands.h"
#include "ui/list/list_commands.h"
#include "ui/list/list_progress.h"
#include "ui/list/list_sorting.h"
#include "ui/list/results_pane.h"
#include "ui/list/results_table.h"
#include "ui/list/view_switch.h"

namespace kelvane {

void installList(const FrameParts& parts)
{
    makeResultsAccessible();
    auto* const pane = new ResultsPane(parts.link);
    parts.window.setCentralWidget(pane);
    new ListProgressBar(parts.link, parts.window);  // owned by the window
    auto* const sorting = new ListSorting(parts.link, pane->view().header());
    installFileCommands(parts);
    installEditCommands(parts, pane->view());
    installItemCommands(parts, pane->view());
    new ViewSwitch(parts, pane->view());  // owned by the view
    installMarkCommands(parts);
    installQuickRules(parts);
    installTags(parts);
    installDeclaration(parts);
    installContextMenu(parts, pane->view());
    sorting->addCommands(parts);
    parts.commands.add({.name = "list.columns",
                        .label = desktop_text::listChooseColumns,
                        .menu = MenuId::view,
                        .run = [pane] { pane->askColumns(); },
                        .when = when::hasItems});
    pane->filterBar().addCommands(parts);
    pane->setFocus();
    QObject::connect(&parts.link, &WindowLink::optionsChanged, pane, [&link = parts.link] {
        link.run([](Workbench& bench) { bench.followOptions(bench.desktop().settings()); });
    });
}

}  // namespace kelvane
