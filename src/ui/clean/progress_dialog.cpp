#include "ui/clean/progress_dialog.h"

#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

#include "base/desktop_texts/clean.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

constexpr int steps = 1000;

ProgressDialog* existing(const WindowLink& link)
{
    return link.frame()->findChild<ProgressDialog*>(QStringLiteral("cleanProgress"), Qt::FindDirectChildrenOnly);
}

QString countsText(const ProgressState& state)
{
    const auto number = [](std::uint64_t value) { return std::to_string(value); };
    if (state.totalItems == 0)
        return {};
    if (state.totalBytes == 0)
        return shown(desktop_text::cleanProgressItems, {number(state.items), number(state.totalItems)});
    return shown(desktop_text::cleanProgressBytes,
                 {number(state.items), number(state.totalItems), sizeShown(state.bytes).toStdString(),
                  sizeShown(state.totalBytes).toStdString()});
}

int stepOf(const ProgressState& state)
{
    const auto done = static_cast<double>(state.totalBytes > 0 ? state.bytes : state.items);
    const auto all = static_cast<double>(state.totalBytes > 0 ? state.totalBytes : state.totalItems);
    return all > 0 ? static_cast<int>(done / all * steps) : 0;
}

// Seen where the dialog lies behind other windows.
QLabel* addToStatusLine(const WindowLink& link)
{
    auto* const part = new QLabel;
    part->setObjectName(QStringLiteral("status.cleaning"));
    part->setAccessibleName(shown(desktop_text::progressName));
    part->setContentsMargins(8, 0, 8, 0);
    if (auto* const frame = qobject_cast<QMainWindow*>(link.frame()))
        frame->statusBar()->insertPermanentWidget(0, part);
    return part;
}

}  // namespace

ProgressDialog& ProgressDialog::show(WindowLink& link, const QString& title)
{
    ProgressDialog* dialog = existing(link);
    if (dialog == nullptr)
        dialog = new ProgressDialog(link, title);
    dialog->setWindowTitle(title);
    dialog->open();
    return *dialog;
}

void ProgressDialog::finish(WindowLink& link)
{
    if (ProgressDialog* const dialog = existing(link)) {
        dialog->setObjectName({});  // another one may be made before this is gone
        delete dialog->status_;
        dialog->hide();
        dialog->deleteLater();
    }
}

void ProgressDialog::update(WindowLink& link, const ProgressState& state)
{
    if (ProgressDialog* const dialog = existing(link))
        dialog->take(state);
}

ProgressDialog::ProgressDialog(WindowLink& link, const QString& title)
    : QDialog(link.frame()),
      link_(link),
      bar_(new QProgressBar),
      counts_(new QLabel),
      current_(new QLabel),
      status_(addToStatusLine(link))
{
    setObjectName(QStringLiteral("cleanProgress"));
    setMinimumWidth(480);
    bar_->setRange(0, steps);
    bar_->setAccessibleName(shown(desktop_text::progressName));
    bar_->setObjectName(QStringLiteral("cleanProgressBar"));
    counts_->setObjectName(QStringLiteral("cleanProgressCounts"));
    current_->setObjectName(QStringLiteral("cleanProgressCurrent"));
    current_->setAccessibleName(shown(desktop_text::progressCurrent));
    current_->setTextFormat(Qt::PlainText);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::rejected, this, &ProgressDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(title));
    layout->addWidget(bar_);
    layout->addWidget(counts_);
    layout->addWidget(current_);
    layout->addStretch();
    layout->addWidget(buttons);
}

void ProgressDialog::reject()
{
    link_.cancelJob();
}

void ProgressDialog::take(const ProgressState& state)
{
    bar_->setMaximum(state.totalItems > 0 ? steps : 0);  // 0: moves to and fro
    bar_->setValue(stepOf(state));
    counts_->setText(countsText(state));
    if (status_)
        status_->setText(counts_->text().isEmpty() ? windowTitle()
                                                   : windowTitle() + QStringLiteral(": ") + counts_->text());
    current_->setText(QFontMetrics(current_->font()).elidedText(state.current, Qt::ElideMiddle, width() - 40));
}

}  // namespace kelvane
