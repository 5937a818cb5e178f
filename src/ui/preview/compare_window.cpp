#include "ui/preview/compare_window.h"

#include <QListWidget>
#include <QPointer>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "base/desktop_texts/preview.h"
#include "platform/native_text.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/preview/compare_facts.h"
#include "ui/preview/compare_pictures.h"
#include "ui/preview/compare_texts.h"

namespace kelvane {
namespace {

namespace say = desktop_text;
constexpr int mostListHeight = 110;

void openWindow(WindowLink& link, GroupMembers members)
{
    if (members.members.empty()) {
        Q_EMIT link.statusTold(shown(say::compareNeedsTwo));
        return;
    }
    auto* const window = new CompareWindow(link, std::move(members));  // deletes itself
    window->show();
}

}  // namespace

CompareWindow::CompareWindow(WindowLink& link, GroupMembers members)
    : QDialog(link.frame()),
      members_(std::move(members)),
      worker_(link.desktop()),
      list_(new QListWidget(this)),
      tabs_(new QTabWidget(this)),
      texts_(new CompareTexts(this)),
      pictures_(new ComparePictures(this)),
      facts_(new CompareFacts(this))
{
    setObjectName(QStringLiteral("compareWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(shown(say::compareWindowTitle));
    resize(1000, 640);
    list_->setObjectName(QStringLiteral("compare.members"));
    list_->setAccessibleName(shown(say::compareMembers));
    list_->setMaximumHeight(mostListHeight);
    tabs_->setObjectName(QStringLiteral("compare.tabs"));
    tabs_->addTab(texts_, shown(say::compareTexts));
    tabs_->addTab(pictures_, shown(say::comparePictures));
    tabs_->addTab(facts_, shown(say::compareProperties));
    auto* const all = new QVBoxLayout(this);
    all->addWidget(list_);
    all->addWidget(tabs_, 1);
    fillList();
    connect(list_, &QListWidget::itemChanged, this, &CompareWindow::choose);
    read();
}

void CompareWindow::fillList()
{
    for (const GroupMembers::Member& member : members_.members) {
        auto* const row = new QListWidgetItem(toQt(displayFromNative(member.file->fullName())), list_);
        row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        row->setCheckState(member.chosen ? Qt::Checked : Qt::Unchecked);
    }
}

// A fifth one takes the place of the first that is ticked, since four columns are all that there is room for.
void CompareWindow::choose()
{
    if (filling_)
        return;
    filling_ = true;
    auto* const ticked = list_->currentItem();
    for (int row = 0; chosen().size() > mostCompared && row < list_->count(); ++row)
        if (list_->item(row) != ticked)
            list_->item(row)->setCheckState(Qt::Unchecked);
    filling_ = false;
    read();
}

std::vector<Ref<const ShellItem>> CompareWindow::chosen() const
{
    std::vector<Ref<const ShellItem>> files;
    for (int row = 0; row < list_->count(); ++row)
        if (list_->item(row)->checkState() == Qt::Checked)
            files.push_back(members_.members[static_cast<std::size_t>(row)].file);
    return files;
}

void CompareWindow::read()
{
    worker_.dropAll();
    ++generation_;
    worker_.post([target = QPointer<CompareWindow>(this), generation = generation_, files = chosen(),
                  columns = members_.columns](PreviewTools& tools) {
        auto compared = std::make_shared<const ComparedFiles>(readCompared(files, columns, tools));
        postToMain([target, generation, compared] {
            if (target && target->generation_ == generation)
                target->take(*compared);
        });
    });
}

void CompareWindow::take(const ComparedFiles& compared)
{
    texts_->show(compared);
    pictures_->show(compared);
    facts_->show(compared);
    bool pictures = false;
    for (const ComparedFile& file : compared.files)
        pictures = pictures || file.content.picture;
    tabs_->setTabEnabled(0, !compared.texts.columns.empty());
    tabs_->setTabEnabled(1, pictures);
    if (!tabs_->isTabEnabled(tabs_->currentIndex()))
        tabs_->setCurrentIndex(pictures ? 1 : 2);
}

void compareAroundCurrent(WindowLink& link)
{
    if (const auto item = link.currentItem())
        link.fetch(
            &link, [item = *item](Workbench& bench) { return membersAround(bench, item); },
            [&link](GroupMembers members) { openWindow(link, std::move(members)); });
}

void compareSelected(WindowLink& link)
{
    link.fetch(&link, selectedMembers, [&link](GroupMembers members) { openWindow(link, std::move(members)); });
}

}  // namespace kelvane
