#include "ui/list/file_commands.h"

#include <QFileDialog>
#include <QMenu>

#include "base/desktop_texts/list.h"
#include "ui/core/local_path.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/list_files.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

QFileDialog* fileDialog(const WindowLink& link, const char* name, QFileDialog::AcceptMode mode)
{
    auto* const dialog = new QFileDialog(link.frame());
    dialog->setObjectName(QString::fromLatin1(name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(mode);
    dialog->setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog->setNameFilter(shown(say::listResultsFiles));
    dialog->setDefaultSuffix(QStringLiteral("ikvs"));
    return dialog;
}

void openFile(WindowLink& link, const std::filesystem::path& file)
{
    link.run([file](Workbench& bench) { openResults(bench, file); });
}

void askWhatToOpen(WindowLink& link)
{
    QFileDialog* const dialog = fileDialog(link, "openResultsDialog", QFileDialog::AcceptOpen);
    QObject::connect(dialog, &QFileDialog::fileSelected, &link,
                     [&link](const QString& file) { openFile(link, chosenPath(file)); });
    dialog->open();
}

void askWhereToSave(WindowLink& link)
{
    QFileDialog* const dialog = fileDialog(link, "saveResultsDialog", QFileDialog::AcceptSave);
    QObject::connect(dialog, &QFileDialog::fileSelected, &link, [&link](const QString& file) {
        link.run([path = chosenPath(file)](Workbench& bench) { saveListedResults(bench, path); });
    });
    dialog->open();
}

void fillRecent(WindowLink& link, QMenu& menu)
{
    menu.clear();
    for (const std::u16string& path : link.desktop().settings().recentDocuments.paths) {
        QAction* const action = menu.addAction(toQt(path).replace(QLatin1Char('&'), QStringLiteral("&&")));
        QObject::connect(action, &QAction::triggered, &link, [&link, path] { openFile(link, path); });
    }
    if (menu.isEmpty())
        menu.addAction(shown(say::listNoRecent))->setEnabled(false);
}

}  // namespace

void installFileCommands(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    CommandSet& commands = parts.commands;
    commands.add({.name = "list.open",
                  .label = say::listOpenResults,
                  .menu = MenuId::file,
                  .run = [&link] { askWhatToOpen(link); },
                  .keys = QKeySequence::Open,
                  .when = when::idle,
                  .inToolbar = true});
    QMenu* const recent = commands.addSubmenu(MenuId::file, "file.recent", say::listRecent);
    QObject::connect(recent, &QMenu::aboutToShow, recent, [&link, recent] { fillRecent(link, *recent); });
    commands.add({.name = "list.save",
                  .label = say::listSaveResults,
                  .menu = MenuId::file,
                  .run = [&link] { askWhereToSave(link); },
                  .keys = QKeySequence::Save,
                  .when = when::idle | when::hasItems,
                  .inToolbar = true});
    commands.add({.name = "list.export",
                  .label = say::listExport,
                  .menu = MenuId::file,
                  .run =
                      [&link] {
                          link.run([title = fromQt(link.frame()->windowTitle())](Workbench& bench) {
                              exportTable(bench, title);
                          });
                      },
                  .when = when::idle | when::hasItems});
    QObject::connect(&link, &WindowLink::openRequested, &link,
                     [&link](const std::filesystem::path& file) { openFile(link, file); });
}

}  // namespace kelvane
