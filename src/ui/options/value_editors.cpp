#include "ui/options/value_editors.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QSpinBox>
#include <algorithm>
#include <limits>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

QHBoxLayout* rowOf(QWidget& editor)
{
    auto* const layout = new QHBoxLayout(&editor);
    layout->setContentsMargins(0, 0, 0, 0);
    return layout;
}

void setBounds(QSpinBox& box, const NumberRule& rule)
{
    constexpr std::int64_t widest = std::numeric_limits<int>::max();  // of a spin box
    const bool bounded = rule.clamp == Clamp::intoRange || rule.clamp == Clamp::elseDefault;
    const std::int64_t most = rule.clamp == Clamp::none ? widest : std::min(rule.most, widest);
    box.setRange(static_cast<int>(bounded ? rule.least : 0), static_cast<int>(most));
    const bool isCoarse = most - rule.least > 5'000 && rule.unit == 1;
    box.setSingleStep(rule.clamp == Clamp::belowIsZero ? 1'000 : isCoarse ? 500 : 1);
}

}  // namespace

TickEditor::TickEditor(const QString& label, SettingAccess<bool> access)
    : ValueEditor(std::move(access)), box_(new QCheckBox(label))
{
    rowOf(*this)->addWidget(box_);
    setFocusProxy(box_);
    connect(box_, &QCheckBox::toggled, this, [this](bool on) { tell(on); });
}

void TickEditor::display(const Settings& settings)
{
    const QSignalBlocker quiet(box_);
    box_->setChecked(read(settings));
}

NumberEditor::NumberEditor(const SettingRow& row, SettingAccess<std::uint32_t> access)
    : ValueEditor(std::move(access)), box_(new QSpinBox)
{
    const auto& rule = std::get<NumberRule>(row.rule);
    setBounds(*box_, rule);
    box_->setKeyboardTracking(false);  // half a number is not meant yet
    box_->setGroupSeparatorShown(true);
    if (row.unit != TextId{})
        box_->setSuffix(u' ' + shown(row.unit));
    if (rule.clamp == Clamp::belowIsZero)
        box_->setSpecialValueText(shown(row.unit == say::unitMilliseconds ? say::valueNone : say::valueNothing));
    box_->setMinimumWidth(150);
    QHBoxLayout* const layout = rowOf(*this);
    layout->addWidget(box_);
    layout->addStretch();
    setFocusProxy(box_);
    connect(box_, &QSpinBox::valueChanged, this, [this](int value) { tell(static_cast<std::uint32_t>(value)); });
}

void NumberEditor::display(const Settings& settings)
{
    const QSignalBlocker quiet(box_);
    const std::uint32_t value = read(settings);
    const bool fits = box_->minimum() < 0 || value <= static_cast<std::uint32_t>(box_->maximum());
    box_->setValue(fits ? static_cast<int>(value) : box_->maximum());
}

BitsEditor::BitsEditor(SettingAccess<std::uint32_t> access) : ValueEditor(std::move(access)), line_(new QLineEdit)
{
    const QRegularExpression hexadecimal(QStringLiteral("0x[0-9A-Fa-f]{1,8}"));
    line_->setValidator(new QRegularExpressionValidator(hexadecimal, line_));
    line_->setMaximumWidth(150);
    QHBoxLayout* const layout = rowOf(*this);
    layout->addWidget(line_);
    layout->addStretch();
    setFocusProxy(line_);
    connect(line_, &QLineEdit::editingFinished, this, [this] {
        if (line_->isModified())
            tell(line_->text().toUInt(nullptr, 16));
    });
}

void BitsEditor::display(const Settings& settings)
{
    line_->setText(QStringLiteral("0x%1").arg(read(settings), 0, 16));
}

TextEditor::TextEditor(SettingAccess<std::u16string> access, bool isList, bool browse)
    : ValueEditor(std::move(access)), line_(new QLineEdit)
{
    QHBoxLayout* const layout = rowOf(*this);
    layout->addWidget(line_);
    if (isList)
        line_->setPlaceholderText(shown(say::listSeparatedByCommas));
    if (browse) {
        auto* const button = new QPushButton(shown(say::buttonBrowse));
        layout->addWidget(button);
        connect(button, &QPushButton::clicked, this, &TextEditor::chooseFile);
    }
    setFocusProxy(line_);
    connect(line_, &QLineEdit::editingFinished, this, [this] {
        if (line_->isModified())
            tell(fromQt(line_->text()));
    });
}

void TextEditor::display(const Settings& settings)
{
    if (const QString text = toQt(read(settings)); text != line_->text())
        line_->setText(text);
    line_->setModified(false);
}

void TextEditor::chooseFile()
{
    auto* const chooser = new QFileDialog(this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFile);
    connect(chooser, &QFileDialog::fileSelected, this, [this](const QString& file) { tell(fromQt(file)); });
    chooser->open();
}

FixedText::FixedText(std::function<std::u16string(const Settings&)> show) : show_(std::move(show)), label_(new QLabel)
{
    label_->setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(true);
    rowOf(*this)->addWidget(label_);
}

void FixedText::display(const Settings& settings)
{
    const QString text = toQt(show_(settings));
    label_->setText(text.isEmpty() ? QStringLiteral("\u2013") : text);
}

}  // namespace kelvane
