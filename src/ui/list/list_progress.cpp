#include "ui/list/list_progress.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>

#include "base/desktop_texts/frame.h"
#include "base/desktop_texts/list.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

constexpr int toldEveryMs = 100, shownAfterMs = 400;
constexpr int steps = 1000, barWidth = 160;

}  // namespace

ListProgressBar::ListProgressBar(WindowLink& link, QMainWindow& window)
    : QWidget(&window), counts_(new QLabel(this)), bar_(new QProgressBar(this))
{
    setObjectName(QStringLiteral("listProgress"));
    counts_->setTextFormat(Qt::PlainText);
    bar_->setObjectName(QStringLiteral("listProgressBar"));
    bar_->setAccessibleName(shown(desktop_text::listProgressName));
    bar_->setTextVisible(false);
    bar_->setFixedWidth(barWidth);
    auto* const cancel = new QPushButton(shown(desktop_text::boxCancel), this);
    cancel->setObjectName(QStringLiteral("listProgressCancel"));
    connect(cancel, &QPushButton::clicked, this, [&link] { link.cancelJob(); });
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(counts_);
    line->addWidget(bar_);
    line->addWidget(cancel);
    late_.setSingleShot(true);
    late_.setInterval(shownAfterMs);
    connect(&late_, &QTimer::timeout, this, &QWidget::show);
    window.statusBar()->insertPermanentWidget(0, this);
    hide();
}

ListProgressBar* ListProgressBar::of(const WindowLink& link)
{
    return link.frame() != nullptr ? link.frame()->findChild<ListProgressBar*>() : nullptr;
}

void ListProgressBar::begin(const QString& what)
{
    counts_->clear();
    bar_->setAccessibleDescription(what);
    bar_->setRange(0, 0);
    late_.start();
}

void ListProgressBar::setDone(std::uint64_t done, std::uint64_t total)
{
    bar_->setRange(0, total > 0 ? steps : 0);
    if (total == 0)
        return;
    bar_->setValue(static_cast<int>(done * steps / total));
    counts_->setText(shown(desktop_text::listRowsDone, {std::to_string(done), std::to_string(total)}));
}

void ListProgressBar::finish()
{
    late_.stop();
    hide();
}

ListProgress::ListProgress(Workbench& bench, const QString& what) : bench_(bench)
{
    told_.start();
    bench.tell(fromQt(what));
    bench.toMain([what](WindowLink& link) {
        if (ListProgressBar* const bar = ListProgressBar::of(link))
            bar->begin(what);
    });
}

ListProgress::~ListProgress()
{
    bench_.toMain([](WindowLink& link) {
        if (ListProgressBar* const bar = ListProgressBar::of(link))
            bar->finish();
    });
}

void ListProgress::step(std::uint64_t done, std::uint64_t total)
{
    if (told_.elapsed() < toldEveryMs)
        return;
    told_.restart();
    bench_.toMain([done, total](WindowLink& link) {
        if (ListProgressBar* const bar = ListProgressBar::of(link))
            bar->setDone(done, total);
    });
    bench_.serve();
}

}  // namespace kelvane
