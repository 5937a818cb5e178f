#include "ui/preview/compare_pictures.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "base/desktop_texts/preview.h"
#include "ui/core/text.h"
#include "ui/core/wrapped_label.h"
#include "ui/preview/picture_difference.h"
#include "ui/preview/picture_view.h"

namespace kelvane {
namespace {

namespace say = desktop_text;
constexpr int turnMs = 600;

}  // namespace

ComparePictures::ComparePictures(QWidget* parent)
    : QWidget(parent),
      columns_(new QHBoxLayout),
      overlay_(new QCheckBox(shown(say::compareOverlay), this)),
      strength_(new QSlider(Qt::Horizontal, this)),
      blink_(new QCheckBox(shown(say::compareBlink), this)),
      summary_(new QLabel(this))
{
    overlay_->setObjectName(QStringLiteral("compare.overlay"));
    blink_->setObjectName(QStringLiteral("compare.blink"));
    strength_->setObjectName(QStringLiteral("compare.strength"));
    strength_->setAccessibleName(shown(say::compareStrength));
    strength_->setToolTip(shown(say::compareStrength));
    strength_->setRange(1, 16);
    strength_->setValue(4);
    summary_->setObjectName(QStringLiteral("compare.pictureSummary"));
    auto* const bar = new QHBoxLayout;
    bar->addWidget(overlay_);
    bar->addWidget(strength_);
    bar->addWidget(blink_);
    bar->addWidget(summary_, 1);
    auto* const all = new QVBoxLayout(this);
    all->addLayout(columns_, 1);
    all->addLayout(bar);
    turns_.setInterval(turnMs);
    connect(overlay_, &QCheckBox::toggled, this, &ComparePictures::paint);
    connect(strength_, &QSlider::valueChanged, this, &ComparePictures::paint);
    connect(blink_, &QCheckBox::toggled, this, &ComparePictures::paint);
    connect(&turns_, &QTimer::timeout, this, &ComparePictures::blink);
}

void ComparePictures::show(const ComparedFiles& compared)
{
    for (const Column& column : shown_)
        delete column.box;
    shown_.clear();
    for (const ComparedFile& file : compared.files)
        addColumn(file);
    paint();
}

void ComparePictures::addColumn(const ComparedFile& file)
{
    auto* const box = new QWidget(this);
    Column column{box, new WrappedLabel("", box), new PictureView(box), imageOf(file.content.picture), file.name};
    column.title->setText(file.name);
    column.title->setToolTip(plainTip(file.folder));
    column.view->setObjectName(QStringLiteral("compare.picture%1").arg(shown_.size()));
    auto* const layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(column.title);
    layout->addWidget(column.view, 1);
    columns_->addWidget(box, 1);
    shown_.push_back(std::move(column));
}

// While pictures blink the first view alone is there, and shows one after the other.
void ComparePictures::paint()
{
    const bool inTurn = blink_->isChecked() && shown_.size() > 1;
    inTurn ? turns_.start() : turns_.stop();
    overlay_->setEnabled(!inTurn);
    strength_->setEnabled(!inTurn && overlay_->isChecked());
    double most = 0.0;
    bool some = false;
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        const Column& column = shown_[i];
        column.box->setVisible(!inTurn || i == 0);
        if (column.image.isNull()) {
            column.view->showMessage(shown(say::compareNoPicture));
            continue;
        }
        const PictureDifference apart = pictureDifference(shown_.front().image, column.image,
                                                          palette().color(QPalette::Highlight), strength_->value());
        most = std::max(most, apart.share);
        some = some || i > 0;
        column.view->show(overlay_->isChecked() && i > 0 && !apart.image.isNull() ? apart.image : column.image);
    }
    const auto percent = static_cast<long>(std::ceil(100 * most));
    summary_->setText(!some          ? QString()
                      : percent == 0 ? shown(say::comparePictureSame)
                                     : shown(say::comparePictureDiffer, {std::to_string(percent)}));
    if (!shown_.empty())
        shown_.front().title->setText(shown_.front().name);
}

void ComparePictures::blink()
{
    if (shown_.empty())
        return;
    turn_ = (turn_ + 1) % shown_.size();
    shown_.front().view->show(shown_[turn_].image);
    shown_.front().title->setText(shown_[turn_].name);
}

}  // namespace kelvane
