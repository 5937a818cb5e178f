#include "ui/list/item_commands.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

#include "app/error_text.h"
#include "base/desktop_texts/list.h"
#include "base/filled_text.h"
#include "cleanup/results_table.h"
#include "platform/native_text.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/item_choice.h"
#include "ui/list/list_columns.h"
#include "ui/list/list_files.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

// Of an entry of an archive: the archive, which is what other programs can open.
const ShellItem& onDisk(const ShellItem& item)
{
    return item.enclosingArchive() != nullptr ? *item.enclosingArchive() : item;
}

void openPath(Workbench& bench, const std::filesystem::path& path)
{
    if (const Status opened = bench.platform().processes().openFile(path); !opened)
        showProblem(bench, toUtf16(filledText(say::listOpenFailed,
                                              {toUtf8(displayFromNative(path.native())), errorText(opened.error())})));
}

void openItem(WindowLink& link, bool folder)
{
    if (!link.currentItem())
        return;
    link.runOnList([item = *link.currentItem(), folder](Workbench& bench) {
        const std::filesystem::path path = onDisk(bench.results().item(item).file.item()).path();
        openPath(bench, folder ? path.parent_path() : path);
    });
}

void toClipboard(Workbench& bench, const QString& copied)
{
    bench.toMain([copied](WindowLink&) { QApplication::clipboard()->setText(copied); });
}

void copyPaths(WindowLink& link)
{
    link.runOnList([current = link.currentItem()](Workbench& bench) {
        QStringList paths;
        for (const ItemId item : itemsInQuestion(bench.results(), current))
            paths << toQt(displayFromNative(bench.results().item(item).file.item().fullName()));
        toClipboard(bench, paths.join(QLatin1Char('\n')));
    });
}

void copyTable(WindowLink& link)
{
    link.run([](Workbench& bench) {
        if (bench.session() != nullptr)
            toClipboard(bench, toQt(tableOfSelection(
                                   bench.results(), viewOfColumns(columnsInView(bench), bench.session()->access.source),
                                   TableMode::tabs, Formulas::kept)));
    });
}

}  // namespace

void installItemCommands(const FrameParts& parts, ResultsView& view)
{
    WindowLink& link = parts.link;
    CommandSet& commands = parts.commands;
    const auto add = [&](const char* name, TextId label, std::function<void()> run, const QKeySequence& keys,
                         unsigned when) {
        commands.add(
            {.name = name, .label = label, .menu = MenuId::edit, .run = std::move(run), .keys = keys, .when = when});
    };
    add(
        "item.copyText", say::listCopyText, [&link] { copyTable(link); }, QKeySequence::Copy, when::isSelected);
    add(
        "item.copyPaths", say::listCopyPath, [&link] { copyPaths(link); }, Qt::CTRL | Qt::ALT | Qt::Key_C,
        when::hasCurrent);
    add(
        "item.open", say::listOpenItem, [&link] { openItem(link, false); }, {}, when::hasCurrent);
    add(
        "item.openFolder", say::listOpenFolder, [&link] { openItem(link, true); }, Qt::SHIFT | Qt::Key_Return,
        when::hasCurrent);
    add(
        "item.properties", say::listProperties,
        [&link] {
            if (link.currentItem())
                showProperties(link, *link.currentItem());
        },
        Qt::ALT | Qt::Key_Return, when::hasCurrent);
    QObject::connect(&view, &ResultsView::opened, &view, [&link] { openItem(link, false); });
}

void installContextMenu(const FrameParts& parts, ResultsView& view)
{
    QObject::connect(&view, &ResultsView::menuAsked, &view, [&view, &commands = parts.commands](const QPoint& place) {
        auto* const menu = new QMenu(&view);
        menu->setObjectName(QStringLiteral("listMenu"));
        menu->setAttribute(Qt::WA_DeleteOnClose);
        for (const char* const name : {"item.open", "item.openFolder", "item.properties", "", "preview.compare",
                                       "view.sideBySide", "item.notDuplicates", "", "edit.regroup", "edit.merge",
                                       "edit.remove", "", "item.copyPaths", "item.copyText"}) {
            QAction* const action = commands.find(QString::fromLatin1(name));
            if (*name == '\0')
                menu->addSeparator();
            else if (action != nullptr && action->isVisible())
                menu->addAction(action);
        }
        if (auto* const tags = commands.menu(MenuId::mark)->findChild<QMenu*>(QStringLiteral("item.tag")))
            menu->addMenu(tags);
        menu->popup(place);
    });
}

}  // namespace kelvane
