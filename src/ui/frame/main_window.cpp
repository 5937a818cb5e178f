#include "ui/frame/main_window.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QTimer>
#include <QToolBar>
#include <algorithm>

#include "app/setting_bits.h"
#include "base/desktop_texts/frame.h"
#include "ui/core/local_path.h"
#include "ui/core/message_box.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/frame/rooms.h"
#include "ui/frame/status_line.h"
#include "ui/frame/theme.h"
#include "ui/frame/window_layout.h"
#include "ui/frame/window_title.h"

namespace kelvane {
namespace {

constexpr std::uint32_t smallestIcon = 16, biggestIcon = 64;  // pixels of the toolbar

}  // namespace

MainWindow::MainWindow(WindowLink& link)
    : link_(link), commands_(new CommandSet(link, *this)), layout_(new WindowLayout(*this, link.desktop()))
{
    setObjectName(QStringLiteral("mainWindow"));
    setAcceptDrops(true);
    new StatusLine(link, *this);  // parented, as the next one
    new WindowTitle(link, *this);
    panes_ = commands_->addSubmenu(MenuId::view, "view.panes", desktop_text::menuPanes);
    panes_->addAction(commands_->toolbar()->toggleViewAction());
    installRooms({link, *commands_, *this});
    followOptions();
    layout_->restore(commands_->mode());
    connect(commands_, &CommandSet::modeChanged, layout_, &WindowLayout::arrange);
    connect(&link, &WindowLink::optionsChanged, this, &MainWindow::followOptions);
    QTimer::singleShot(0, this, &MainWindow::serveTarget);
}

QDockWidget* MainWindow::addPane(QWidget* content, const char* name, TextId title, Qt::DockWidgetArea area)
{
    auto* const dock = new QDockWidget(shown(title), this);
    dock->setObjectName(QString::fromLatin1(name));
    dock->setWidget(content);
    dock->setProperty(WindowLayout::orderProperty, static_cast<int>(homes_.size()));
    homes_[dock] = area;
    addDockWidget(area, dock);
    panes_->addAction(dock->toggleViewAction());
    return dock;
}

Qt::DockWidgetArea MainWindow::homeOf(const QDockWidget& pane) const
{
    const auto found = homes_.find(&pane);
    return found != homes_.end() ? found->second : Qt::NoDockWidgetArea;
}

void MainWindow::resetLayout()
{
    layout_->reset(commands_->mode());
}

void MainWindow::showFullScreen(bool on)
{
    setWindowState(on ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen);
}

void MainWindow::followOptions()
{
    const Settings settings = link_.desktop().settings();
    applyTheme(themeOf(settings, link_.desktop().memory), settings);
    commands_->setMode(interfaceModeOf(settings));
    const int size = static_cast<int>(std::clamp(settings.iconSize, smallestIcon, biggestIcon));
    commands_->toolbar()->setIconSize({size, size});
    const bool words = commands_->mode() == InterfaceMode::beginner;
    commands_->toolbar()->setToolButtonStyle(words ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();  // the window's own thread decides, and the frame goes when that has ended
    if (link_.job() == Job::none)
        leave();
    else
        askToLeave();
}

void MainWindow::leave()
{
    layout_->remember();
    link_.requestClose();
}

void MainWindow::askToLeave()
{
    if (findChild<QMessageBox*>(QStringLiteral("closeBox")) != nullptr)
        return;  // asked already
    QMessageBox* const box = makeQuestionBox(this, shown(desktop_text::closeWhileBusy));
    box->setObjectName(QStringLiteral("closeBox"));
    connect(box, &QDialog::finished, this, [this](int answer) {
        if (answer == QMessageBox::Yes)
            leave();
    });
    // What the question is about may end before it is answered. The window stays then: there is something to see that
    // was not there when closing was wished for.
    connect(&link_, &WindowLink::jobChanged, box, [box](Job job) {
        if (job == Job::none)
            box->done(QMessageBox::No);
    });
    link_.boxes().open(box);
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        commands_->renewIcons();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!localFiles(*event->mimeData()).empty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    openOrSearch(localFiles(*event->mimeData()));
    event->acceptProposedAction();
}

void MainWindow::serveTarget()
{
    openOrSearch(link_.commandLine().targets);
}

// Folders are to be searched, a file is a scan that was saved; what is not there is left to whoever opens it, or
// searches it beside others, to complain of.
void MainWindow::openOrSearch(const std::vector<std::filesystem::path>& paths)
{
    if (paths.empty())
        return;
    link_.fetch(
        this,
        [paths](Workbench& bench) {
            std::vector<std::filesystem::path> folders, missing;
            for (const std::filesystem::path& path : paths) {
                const auto found = bench.platform().files().details(path, Links::followed);
                if (!found.ok())
                    missing.push_back(path);
                else if (found->kind == FileKind::folder)
                    folders.push_back(path);
            }
            if (!folders.empty())
                folders.insert(folders.end(), missing.begin(), missing.end());
            return folders;
        },
        [this, first = paths.front()](const std::vector<std::filesystem::path>& folders) {
            if (folders.empty())
                Q_EMIT link_.openRequested(first);
            else
                Q_EMIT link_.foldersRequested(folders);
        });
}

}  // namespace kelvane
