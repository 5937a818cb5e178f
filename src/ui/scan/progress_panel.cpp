#include "ui/scan/progress_panel.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/progress_text.h"
#include "base/desktop_texts/scan.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"
#include "ui/core/wrapped_label.h"

namespace kelvane {
namespace {

constexpr int fullBar = 1000;

// How much is left to do is known once all files are gathered.
bool canBeForetold(ScanPhase phase)
{
    return phase == ScanPhase::comparing || phase == ScanPhase::describing;
}

QString figuresLine(const ScanTick& tick)
{
    const ProgressTexts texts = progressTexts(figuresOf(tick.progress), tick.phaseMs, shownSizeText);
    QStringList parts;
    for (const std::string* part : {&texts.items, &texts.read, &texts.pace})
        if (!part->empty())
            parts.append(toQt(*part));
    if (canBeForetold(tick.progress.phase) && !texts.left.empty())
        parts.append(toQt(texts.left));
    return parts.join(QStringLiteral(", "));
}

}  // namespace

ProgressPanel::ProgressPanel(QWidget* parent)
    : QWidget(parent),
      caption_(new WrappedLabel("scan.caption", this)),
      bar_(new QProgressBar(this)),
      figures_(new WrappedLabel("scan.figures", this))
{
    setObjectName(QStringLiteral("scan.progress"));
    setAccessibleName(shown(desktop_text::progressPaneName));
    bar_->setObjectName(QStringLiteral("scan.bar"));
    bar_->setAccessibleName(shown(desktop_text::progressPaneName));
    bar_->setTextVisible(false);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(caption_);
    layout->addWidget(bar_);
    layout->addWidget(figures_);
    layout->addWidget(makeButtons());
}

QWidget* ProgressPanel::makeButtons()
{
    auto* const row = new QWidget(this);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    pause_ = new QPushButton(shown(desktop_text::scanPauseButton), row);
    pause_->setObjectName(QStringLiteral("scan.pauseButton"));
    pause_->setCheckable(true);
    connect(pause_, &QPushButton::clicked, this, &ProgressPanel::pauseWanted);
    auto* const cancel = new QPushButton(shown(desktop_text::scanStopButton), row);
    cancel->setObjectName(QStringLiteral("scan.cancelButton"));
    connect(cancel, &QPushButton::clicked, this, &ProgressPanel::cancelWanted);
    layout->addStretch();
    layout->addWidget(pause_);
    layout->addWidget(cancel);
    return row;
}

void ProgressPanel::begin()
{
    figuresText_.clear();
    groupsText_.clear();
    setCaption(shown(desktop_text::progressStarting));
    bar_->setRange(0, 0);
    showFigures();
}

void ProgressPanel::setCaption(const QString& text)
{
    captionText_ = text;
    caption_->setText(pause_->isChecked() ? shown(desktop_text::progressPaused) : captionText_);
}

void ProgressPanel::show(const ScanTick& tick)
{
    figuresText_ = figuresLine(tick);
    showBar(tick.progress);
    showFigures();
}

void ProgressPanel::showBar(const ScanProgress& progress)
{
    const bool byBytes = progress.totalBytes > 0;
    const std::uint64_t total = byBytes ? progress.totalBytes : progress.totalItems;
    const std::uint64_t done = byBytes ? progress.bytes : progress.items;
    bar_->setRange(0, total > 0 ? fullBar : 0);
    if (total > 0)
        bar_->setValue(
            static_cast<int>(static_cast<double>(std::min(done, total)) / static_cast<double>(total) * fullBar));
}

void ProgressPanel::setGroups(std::uint32_t groups)
{
    const QString count = groups == 1 ? shown(TextId::oneGroup) : shown(TextId::manyGroups, {std::to_string(groups)});
    groupsText_ = groups == 0 ? QString() : shown(desktop_text::progressGroupsSoFar, {count.toStdString()});
    showFigures();
}

void ProgressPanel::setPaused(bool paused)
{
    pause_->setChecked(paused);
    pause_->setText(shown(paused ? desktop_text::scanContinueButton : desktop_text::scanPauseButton));
    setCaption(captionText_);
}

void ProgressPanel::showFigures()
{
    figures_->setText(figuresText_ + (groupsText_.isEmpty() ? QString() : QStringLiteral("\n") + groupsText_));
}

}  // namespace kelvane
