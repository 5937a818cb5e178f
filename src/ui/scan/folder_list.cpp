#include "ui/scan/folder_list.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QListWidget>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/desktop_texts/scan.h"
#include "platform/native_text.h"
#include "ui/core/local_path.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr int bytesRole = Qt::UserRole;
constexpr int shortestList = 90, tallestList = 150;  // pixels

std::string folderOf(const QListWidgetItem& item)
{
    return item.data(bytesRole).toByteArray().toStdString();
}

// Says what to do as long as there are no folders.
class HintedList final : public QListWidget {
public:
    using QListWidget::QListWidget;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QListWidget::paintEvent(event);
        if (count() > 0)
            return;
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap,
                         shown(desktop_text::foldersHint));
    }
};

}  // namespace

FolderList::FolderList(QWidget* parent) : QWidget(parent), list_(new HintedList(this))
{
    setObjectName(QStringLiteral("scan.folderList"));
    setAcceptDrops(true);
    makeList();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(list_);
    layout->addWidget(makeButtons());
    refresh();
}

void FolderList::makeList()
{
    list_->setObjectName(QStringLiteral("scan.folders"));
    list_->setAccessibleName(shown(desktop_text::foldersListName));
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setMinimumHeight(shortestList);
    list_->setMaximumHeight(tallestList);
    list_->setAcceptDrops(false);  // left to this widget
    connect(list_, &QListWidget::itemSelectionChanged, this, &FolderList::refresh);
    connect(list_, &QListWidget::itemChanged, this, &FolderList::edited);
}

QWidget* FolderList::makeButtons()
{
    auto* const row = new QWidget(this);
    buttons_ = new QHBoxLayout(row);
    buttons_->setContentsMargins({});
    auto* const add = new QPushButton(shown(desktop_text::foldersAdd), row);
    add->setObjectName(QStringLiteral("scan.addFolder"));
    connect(add, &QPushButton::clicked, this, &FolderList::choose);
    remove_ = new QPushButton(shown(desktop_text::foldersRemove), row);
    remove_->setObjectName(QStringLiteral("scan.removeFolder"));
    connect(remove_, &QPushButton::clicked, this, &FolderList::removeSelected);
    buttons_->addWidget(add);
    buttons_->addWidget(remove_);
    buttons_->addStretch();
    return row;
}

void FolderList::addButton(QWidget* button)
{
    buttons_->addWidget(button);
}

std::vector<std::string> FolderList::folders(Qt::CheckState state) const
{
    std::vector<std::string> folders;
    for (int row = 0; row < list_->count(); ++row)
        if (list_->item(row)->checkState() == state)
            folders.push_back(folderOf(*list_->item(row)));
    return folders;
}

QListWidgetItem* FolderList::itemOf(const std::string& folder) const
{
    for (int row = 0; row < list_->count(); ++row)
        if (folderOf(*list_->item(row)) == folder)
            return list_->item(row);
    return nullptr;
}

void FolderList::show(const std::vector<std::string>& folders)
{
    {
        const QSignalBlocker quiet(list_);
        list_->clear();
        for (const std::string& folder : folders)
            append(folder);
    }
    refresh();
    Q_EMIT edited();
}

void FolderList::add(const std::string& folder)
{
    if (QListWidgetItem* const item = itemOf(folder))
        return item->setCheckState(Qt::Checked);
    {
        const QSignalBlocker quiet(list_);
        append(folder);
    }
    list_->viewport()->update();
    Q_EMIT edited();
}

void FolderList::leaveOut(const std::vector<std::string>& folders)
{
    {
        const QSignalBlocker quiet(list_);
        for (const std::string& folder : folders) {
            QListWidgetItem* const there = itemOf(folder);
            (there != nullptr ? there : append(folder))->setCheckState(Qt::Unchecked);
        }
    }
    list_->viewport()->update();
    Q_EMIT edited();
}

QListWidgetItem* FolderList::append(const std::string& folder)
{
    const QString text = toQt(displayFromNative(nativeFromBytes(folder)));
    auto* const item = new QListWidgetItem(text, list_);
    item->setData(bytesRole, QByteArray::fromStdString(folder));
    item->setToolTip(plainTip(text) + plainTip(shown(desktop_text::folderTickTip)));
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Checked);
    return item;
}

void FolderList::choose()
{
    auto* const dialog = new QFileDialog(window(), shown(desktop_text::foldersChoose));
    dialog->setObjectName(QStringLiteral("scan.chooseFolder"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::filesSelected, this, [this](const QStringList& folders) {
        for (const QString& folder : folders)
            add(bytesOfPath(folder));
    });
    dialog->open();
}

void FolderList::removeSelected()
{
    qDeleteAll(list_->selectedItems());
    refresh();
    Q_EMIT edited();
}

void FolderList::refresh()
{
    remove_->setEnabled(!list_->selectedItems().isEmpty());
}

void FolderList::dragEnterEvent(QDragEnterEvent* event)
{
    if (!localFiles(*event->mimeData()).empty())
        event->acceptProposedAction();
}

void FolderList::dropEvent(QDropEvent* event)
{
    for (const QUrl& url : event->mimeData()->urls())
        if (const std::string folder = bytesOfUrl(url); !folder.empty())
            add(folder);
    event->acceptProposedAction();
}

}  // namespace kelvane
