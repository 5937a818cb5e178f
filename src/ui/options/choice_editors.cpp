#include "ui/options/choice_editors.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

QIcon swatch(const QColor& color)
{
    QPixmap pixmap(32, 16);
    pixmap.fill(color);
    QPainter painter(&pixmap);
    painter.setPen(Qt::gray);
    painter.drawRect(0, 0, 31, 15);
    return pixmap;
}

}  // namespace

ChoiceEditor::ChoiceEditor(Texts texts, SettingAccess<std::uint32_t> access)
    : ValueEditor(std::move(access)), texts_(std::move(texts)), box_(new QComboBox)
{
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(box_);
    layout->addStretch();
    setFocusProxy(box_);
    connect(box_, &QComboBox::activated, this, [this](int index) { tell(static_cast<std::uint32_t>(index)); });
}

void ChoiceEditor::display(const Settings& settings)
{
    const QSignalBlocker quiet(box_);
    box_->clear();
    box_->addItems(texts_(settings));
    box_->setCurrentIndex(static_cast<int>(read(settings)));
}

ColorEditor::ColorEditor(SettingAccess<std::uint32_t> access)
    : ValueEditor(std::move(access)),
      button_(new QPushButton(shown(desktop_text::chooseColor))),
      ofSystem_(new QCheckBox(shown(desktop_text::colorOfSystem)))
{
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    button_->setIconSize({32, 16});
    layout->addWidget(ofSystem_);
    layout->addWidget(button_);
    layout->addStretch();
    setFocusProxy(ofSystem_);
    connect(ofSystem_, &QCheckBox::toggled, this,
            [this](bool on) { tell(on ? view_color::ofSystem : storedColor(palette().color(QPalette::Base))); });
    connect(button_, &QPushButton::clicked, this, &ColorEditor::choose);
}

void ColorEditor::display(const Settings& settings)
{
    const QSignalBlocker quiet(ofSystem_);
    color_ = read(settings);
    const bool ofSystem = color_ == view_color::ofSystem;
    ofSystem_->setChecked(ofSystem);
    button_->setEnabled(!ofSystem);
    button_->setIcon(swatch(ofSystem ? palette().color(QPalette::Base) : colorOf(color_)));
}

void ColorEditor::choose()
{
    auto* const dialog = new QColorDialog(colorOf(color_), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QColorDialog::colorSelected, this, [this](const QColor& color) { tell(storedColor(color)); });
    dialog->open();
}

QColor colorOf(std::uint32_t stored)
{
    return QColor::fromRgb(stored & 0xFF, stored >> 8 & 0xFF, stored >> 16 & 0xFF);
}

std::uint32_t storedColor(const QColor& color)
{
    return static_cast<std::uint32_t>(color.red() | color.green() << 8 | color.blue() << 16);
}

}  // namespace kelvane
