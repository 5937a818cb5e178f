#include "ui/list/filter_bar.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>

#include "base/desktop_texts/list.h"
#include "base/filled_text.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/list/list_columns.h"

namespace kelvane {
namespace {

constexpr std::chrono::milliseconds typingPause{120};

void filterBy(Workbench& bench, const std::u16string& text, bool allColumns)
{
    if (bench.filter() == nullptr)
        return;
    std::vector<PropRef> columns = columnsInView(bench);
    if (!allColumns && !columns.empty())
        columns.resize(1);
    bench.filter()->searchIn(std::move(columns));
    if (bench.filter()->apply(text) == FilterOutcome::done)
        return;
    bench.tell(toUtf16(filledText(desktop_text::listNothingMatches, {toUtf8(text)})));
    bench.toMain([](WindowLink&) { QApplication::beep(); });
}

}  // namespace

FilterBar::FilterBar(WindowLink& link, QWidget* parent)
    : QWidget(parent),
      link_(link),
      edit_(new QLineEdit(this)),
      allColumns_(new QCheckBox(shown(desktop_text::listSearchAll), this))
{
    edit_->setObjectName(QStringLiteral("filterEdit"));
    edit_->setPlaceholderText(shown(desktop_text::listFilterHint));
    edit_->setAccessibleName(shown(desktop_text::listFilterHint));
    edit_->setClearButtonEnabled(true);
    edit_->installEventFilter(this);
    allColumns_->setObjectName(QStringLiteral("filterAllColumns"));
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(6, 4, 6, 4);
    line->addWidget(edit_, 1);
    line->addWidget(allColumns_);
    settled_.setSingleShot(true);
    settled_.setInterval(typingPause);
    connect(&settled_, &QTimer::timeout, this, &FilterBar::typed);
    connect(edit_, &QLineEdit::textChanged, &settled_, qOverload<>(&QTimer::start));
    connect(allColumns_, &QCheckBox::toggled, this, &FilterBar::typed);
    connect(edit_, &QLineEdit::returnPressed, this, [this] {
        apply(edit_->text());  // however short it is
        Q_EMIT left();
    });
    connect(&link, &WindowLink::listBegan, edit_, &QLineEdit::clear);
}

void FilterBar::addCommands(const FrameParts& parts)
{
    parts.commands.add({.name = "edit.filter",
                        .label = desktop_text::listFilter,
                        .menu = MenuId::edit,
                        .run =
                            [this] {
                                edit_->setFocus(Qt::ShortcutFocusReason);
                                edit_->selectAll();
                            },
                        .keys = QKeySequence::Find,
                        .beginsSection = true});
}

bool FilterBar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != edit_ || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Escape)
        edit_->clear();
    if (key == Qt::Key_Escape || key == Qt::Key_Down)
        Q_EMIT left();
    return key == Qt::Key_Escape || key == Qt::Key_Down;
}

void FilterBar::typed()
{
    const QString text = edit_->text();
    if (text.isEmpty() || filterApplies(fromQt(text), link_.desktop().settings().charactersToFilter))
        apply(text);
    else
        apply({});
}

void FilterBar::apply(const QString& text)
{
    settled_.stop();
    if (text.isEmpty() && !filters_)
        return;  // nothing of this bar's to take back: what is hidden otherwise stays so
    filters_ = !text.isEmpty();
    Q_EMIT applied();
    link_.runOnList(
        [wanted = fromQt(text), all = allColumns_->isChecked()](Workbench& bench) { filterBy(bench, wanted, all); });
}

}  // namespace kelvane
