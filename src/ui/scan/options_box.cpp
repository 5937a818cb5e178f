#include "ui/scan/options_box.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

#include "app/typed_size.h"
#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"
#include "ui/frame/theme.h"

namespace kelvane {
namespace {

std::optional<std::uint64_t> sizeIn(const QLineEdit& field)
{
    return parseSize(field.text().remove(u' ').toStdString());
}

// The shortest way to type a size.
QString typedSize(std::string_view digits)
{
    std::uint64_t bytes = toQt(digits).toULongLong();
    QString unit;
    for (const char16_t next : {u'K', u'M', u'G', u'T'}) {
        if (bytes == 0 || bytes % 1024 != 0)
            break;
        bytes /= 1024;
        unit = QChar(next);
    }
    return digits.empty() ? QString() : QString::number(bytes) + unit;
}

}  // namespace

OptionsBox::OptionsBox(bool archives, QWidget* parent)
    : QGroupBox(shown(desktop_text::scanOptionsHeading), parent),
      flags_({{scan_flag::subfolders, false, makeBox("scan.subfolders", desktop_text::optionSubfolders)},
              {scan_flag::ignoreSmall, false, makeBox("scan.ignoreSmall", desktop_text::optionIgnoreSmall)},
              {scan_flag::skipEmpty, false, makeBox("scan.skipEmpty", desktop_text::optionSkipEmpty)},
              {scan_flag::protect, true, makeBox("scan.protect", desktop_text::optionProtect)},
              {scan_flag::skipLinks, true, makeBox("scan.skipLinks", desktop_text::optionSkipLinks)}}),
      archives_(makeBox("scan.archives", desktop_text::optionArchives)),
      exhaustive_(makeBox("scan.exhaustive", desktop_text::optionExhaustive)),
      from_(makeSize("scan.sizeFrom")),
      to_(makeSize("scan.sizeTo")),
      problem_(new QLabel(this))
{
    problem_->setObjectName(QStringLiteral("scan.sizeProblem"));
    problem_->setWordWrap(true);
    makeWarning(*problem_);
    archives_->setEnabled(archives);
    if (!archives)
        archives_->setToolTip(plainTip(shown(desktop_text::archivesNotHere)));
    makeLayout();
    refresh();
}

QCheckBox* OptionsBox::makeBox(const char* name, TextId label)
{
    auto* const box = new QCheckBox(shown(label), this);
    box->setObjectName(QString::fromLatin1(name));
    connect(box, &QCheckBox::toggled, this, &OptionsBox::edited);
    return box;
}

QLineEdit* OptionsBox::makeSize(const char* name)
{
    auto* const field = new QLineEdit(this);
    field->setObjectName(QString::fromLatin1(name));
    field->setPlaceholderText(shown(desktop_text::sizeHint));
    connect(field, &QLineEdit::textChanged, this, [this] {
        refresh();
        Q_EMIT edited();
    });
    return field;
}

void OptionsBox::makeLayout()
{
    auto* const layout = new QFormLayout(this);
    for (const FlagBox& each : flags_)
        layout->addRow(each.box);
    layout->addRow(archives_);
    layout->addRow(exhaustive_);
    layout->addRow(shown(desktop_text::optionSizeFrom), from_);
    layout->addRow(shown(desktop_text::optionSizeTo), to_);
    layout->addRow(problem_);
}

void OptionsBox::show(const ScanOrder& order)
{
    for (const FlagBox& each : flags_)
        each.box->setChecked(order.definition.has(each.flag));
    archives_->setChecked(order.archives && archives_->isEnabled());
    exhaustive_->setChecked(order.exhaustive);
    const std::string_view range = order.definition.sizeRange;
    const std::size_t dash = std::min(range.find('-'), range.size());
    from_->setText(typedSize(range.substr(0, dash)));
    to_->setText(typedSize(range.substr(std::min(dash + 1, range.size()))));
}

void OptionsBox::read(ScanOrder& order) const
{
    for (const FlagBox& each : flags_)
        order.definition.set(each.flag, each.box->isChecked());
    order.archives = archives_->isChecked();
    order.exhaustive = exhaustive_->isChecked();
    if (from_->text().isEmpty() && to_->text().isEmpty())
        order.definition.sizeRange.clear();
    else if (hasProblem())
        order.definition.sizeRange = from_->text().toStdString() + '-' + to_->text().toStdString();
    else
        order.definition.sizeRange = std::to_string(sizeIn(*from_).value_or(0)) + '-' +
                                     (to_->text().isEmpty() ? "" : std::to_string(*sizeIn(*to_)));
}

void OptionsBox::setMode(InterfaceMode mode)
{
    const bool advanced = mode == InterfaceMode::advanced;
    for (const FlagBox& each : flags_)
        each.box->setVisible(advanced || !each.risky);
    archives_->setVisible(advanced);
    exhaustive_->setVisible(advanced);
}

bool OptionsBox::hasProblem() const
{
    return !sizeProblem().isEmpty();
}

QString OptionsBox::sizeProblem() const
{
    for (const QLineEdit* const field : {from_, to_})
        if (!field->text().isEmpty() && !sizeIn(*field))
            return shown(desktop_text::sizeMalformed, {field->text().toStdString()});
    if (!to_->text().isEmpty() && sizeIn(*from_).value_or(0) > *sizeIn(*to_))
        return shown(desktop_text::sizesBackwards);
    return {};
}

void OptionsBox::refresh()
{
    const QString problem = sizeProblem();
    problem_->setText(problem);
    problem_->setVisible(!problem.isEmpty());
}

}  // namespace kelvane
