#include "ui/clean/place_list.h"

#include <QDir>
#include <QFileDialog>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/desktop_texts/clean.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr int folderRole = Qt::UserRole;
constexpr int shownRows = 3;

}  // namespace

PlaceList::PlaceList(const char* name, const QString& title) : QGroupBox(title), list_(new QListWidget)
{
    list_->setObjectName(QString::fromLatin1(name));
    list_->setAccessibleName(QString(title).remove(QLatin1Char('&')));
    list_->setMaximumHeight(list_->fontMetrics().lineSpacing() * shownRows + 2 * list_->frameWidth());
    auto* const more = new QPushButton(shown(desktop_text::folderAdd));
    auto* const less = new QPushButton(shown(desktop_text::folderRemove));
    connect(more, &QPushButton::clicked, this, [this] {
        pickFolder(this, this->title().remove(QLatin1Char('&')), [this](const std::string& folder) { add(folder); });
    });
    connect(less, &QPushButton::clicked, this, [this] {
        delete list_->currentItem();
        Q_EMIT changed();
    });
    auto* const buttons = new QVBoxLayout;
    buttons->addWidget(more);
    buttons->addWidget(less);
    buttons->addStretch();
    auto* const layout = new QHBoxLayout(this);
    layout->addWidget(list_);
    layout->addLayout(buttons);
}

std::vector<std::string> PlaceList::folders() const
{
    std::vector<std::string> all;
    for (int row = 0; row < list_->count(); ++row)
        all.push_back(list_->item(row)->data(folderRole).toByteArray().toStdString());
    return all;
}

void PlaceList::add(const std::string& folder)
{
    auto* const item = new QListWidgetItem(pathShown(std::string_view(folder)), list_);
    item->setData(folderRole, QByteArray::fromStdString(folder));
    list_->setCurrentItem(item);
    Q_EMIT changed();
}

void pickFolder(QWidget* parent, const QString& title, std::function<void(const std::string&)> take)
{
    auto* const picker = new QFileDialog(parent, title);
    picker->setAttribute(Qt::WA_DeleteOnClose);
    picker->setFileMode(QFileDialog::Directory);
    picker->setOption(QFileDialog::ShowDirsOnly);
    QObject::connect(picker, &QFileDialog::fileSelected, parent, [take = std::move(take)](const QString& folder) {
        take(QDir::toNativeSeparators(folder).toStdString());
    });
    picker->open();
}

}  // namespace kelvane
