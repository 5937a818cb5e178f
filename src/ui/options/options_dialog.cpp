#include "ui/options/options_dialog.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "base/desktop_texts/options.h"
#include "ui/core/message_box.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/options/option_page.h"
#include "ui/options/options_keeper.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

QPushButton* button(const char* name, TextId label)
{
    auto* const made = new QPushButton(shown(label));
    made->setObjectName(QString::fromLatin1(name));
    return made;
}

}  // namespace

OptionsDialog::OptionsDialog(WindowLink& link)
    : QDialog(link.frame()),
      keeper_(new OptionsKeeper(link, this)),
      search_(new QLineEdit),
      list_(new QListWidget),
      stack_(new QStackedWidget),
      nothing_(new QLabel(shown(say::optionsNothingFound)))
{
    setObjectName(QStringLiteral("optionsDialog"));
    setWindowTitle(shown(say::optionsTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(860, 620);
    search_->setObjectName(QStringLiteral("optionsSearch"));
    search_->setPlaceholderText(shown(say::optionsSearch));
    search_->setAccessibleName(shown(say::optionsSearch));
    search_->setClearButtonEnabled(true);
    list_->setObjectName(QStringLiteral("optionsPages"));
    list_->setAccessibleName(shown(say::optionsPages));
    list_->setFixedWidth(180);
    list_->setSpacing(2);
    nothing_->setAlignment(Qt::AlignCenter);
    auto* const middle = new QHBoxLayout;
    middle->addWidget(list_);
    middle->addWidget(stack_, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(search_);
    layout->addLayout(middle, 1);
    makePages(link);  // before the buttons, which come after them by keyboard too
    layout->addWidget(makeButtons());
    for (QPushButton* const made : findChildren<QPushButton*>())
        made->setAutoDefault(false);  // Enter ends an entry, and presses nothing
    connect(search_, &QLineEdit::textChanged, this, &OptionsDialog::search);
    connect(keeper_, &OptionsKeeper::changed, this, &OptionsDialog::display);
    connect(keeper_, &OptionsKeeper::failed, this, [this](const QString& text) { tell(text, true); });
    connect(keeper_, &OptionsKeeper::told, this, [this](const QString& text) { tell(text, false); });
    list_->setCurrentRow(0);
    search_->setFocus();
}

void OptionsDialog::makePages(WindowLink& link)
{
    CXApplication& application = link.desktop().application();
    std::unique_lock lock(application.sharedState());
    const SettingsContext context = application.context();
    lock.unlock();
    for (const OptionsPage which : optionPages()) {
        auto* const made = new OptionPage(which, *keeper_, context);
        pages_.push_back(made);
        stack_->addWidget(made);
        list_->addItem(made->title());
        if (which == OptionsPage::notices)
            made->addButton(button("showAllNotices", say::showAllNotices),
                            [](Settings& settings) { settings.noticesOff = 0; });
    }
    stack_->addWidget(nothing_);
    connect(list_, &QListWidget::currentRowChanged, stack_, &QStackedWidget::setCurrentIndex);
    display();
}

QWidget* OptionsDialog::makeButtons()
{
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    QPushButton* const reset = button("optionsReset", say::optionsResetPage);
    QPushButton* const bring = button("optionsImport", say::optionsImport);
    QPushButton* const write = button("optionsExport", say::optionsExport);
    QPushButton* const close = button("optionsClose", say::buttonClose);
    for (QPushButton* const made : {reset, bring, write})
        layout->addWidget(made);
    layout->addStretch();
    layout->addWidget(close);
    connect(reset, &QPushButton::clicked, this, &OptionsDialog::askReset);
    connect(bring, &QPushButton::clicked, this, &OptionsDialog::chooseImport);
    connect(write, &QPushButton::clicked, this, &OptionsDialog::chooseExport);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    return row;
}

void OptionsDialog::display()
{
    const Settings settings = keeper_->settings();
    for (OptionPage* const shownPage : pages_)
        shownPage->display(settings);
}

void OptionsDialog::search(const QString& typed)
{
    const QStringList words = typed.split(u' ', Qt::SkipEmptyParts);
    int first = -1;
    for (int row = 0; row < list_->count(); ++row) {
        const bool fits = pages_[static_cast<std::size_t>(row)]->search(words);
        list_->item(row)->setHidden(!fits);
        if (fits && first < 0)
            first = row;
    }
    if (first < 0) {
        stack_->setCurrentWidget(nothing_);
        return;
    }
    if (list_->currentRow() < 0 || list_->currentItem()->isHidden())
        list_->setCurrentRow(first);
    stack_->setCurrentIndex(list_->currentRow());
}

OptionPage* OptionsDialog::page() const
{
    const int row = list_->currentRow();
    return row < 0 ? nullptr : pages_[static_cast<std::size_t>(row)];
}

void OptionsDialog::askReset()
{
    OptionPage* const which = page();
    if (which == nullptr)
        return;
    QMessageBox* const box = makePlainBox(this, "optionsResetQuestion", QMessageBox::Question,
                                          shown(say::optionsResetQuestion, {which->title().toStdString()}),
                                          QMessageBox::Yes | QMessageBox::No, shown(say::optionsTitle));
    connect(box, &QMessageBox::finished, which, [which](int answer) {
        if (answer == QMessageBox::Yes)
            which->reset();
    });
    box->open();
}

void OptionsDialog::chooseExport()
{
    auto* const chooser = new QFileDialog(this, {}, QStringLiteral("kelvane.ini"), shown(say::iniFiles));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setAcceptMode(QFileDialog::AcceptSave);
    chooser->setDefaultSuffix(QStringLiteral("ini"));
    connect(chooser, &QFileDialog::fileSelected, keeper_, &OptionsKeeper::exportTo);
    chooser->open();
}

void OptionsDialog::chooseImport()
{
    auto* const chooser = new QFileDialog(this, {}, {}, shown(say::iniFiles));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFile);
    connect(chooser, &QFileDialog::fileSelected, keeper_, &OptionsKeeper::importFrom);
    chooser->open();
}

void OptionsDialog::tell(const QString& text, bool isFailure)
{
    const QMessageBox::Icon icon = isFailure ? QMessageBox::Warning : QMessageBox::Information;
    makePlainBox(this, "optionsMessage", icon, text, QMessageBox::Ok, shown(say::optionsTitle))->open();
}

}  // namespace kelvane
