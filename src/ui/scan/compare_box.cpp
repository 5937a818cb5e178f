#include "ui/scan/compare_box.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>
#include <utility>

#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"
#include "ui/frame/theme.h"
#include "ui/scan/property_picker.h"

namespace kelvane {
namespace {

constexpr int exact = 100;

// What a degree of similarity means for a person who has not tried it.
QString meaningOf(int percent)
{
    if (percent == exact)
        return shown(desktop_text::similarityExact);
    const TextId id = percent >= 90   ? desktop_text::similarityNear
                      : percent >= 75 ? desktop_text::similarityAlike
                      : percent >= 50 ? desktop_text::similarityLoose
                                      : desktop_text::similarityHardly;
    return shown(id, {std::to_string(percent)});
}

QLabel* wrappedLabel(const char* name)
{
    auto* const label = new QLabel;
    label->setObjectName(QString::fromLatin1(name));
    label->setWordWrap(true);
    return label;
}

}  // namespace

CompareBox::CompareBox(const Desktop& desktop, QWidget* parent)
    : QGroupBox(shown(desktop_text::compareHeading), parent),
      desktop_(desktop),
      contents_(new QCheckBox(shown(desktop_text::compareContents))),
      sameType_(new QCheckBox(shown(desktop_text::compareSameType))),
      pick_(new QPushButton(shown(desktop_text::matchProperties))),
      properties_(wrappedLabel("scan.propertyNames")),
      meaning_(wrappedLabel("scan.similarityMeaning")),
      problem_(wrappedLabel("scan.compareProblem")),
      similarity_(new QSlider(Qt::Horizontal))
{
    makeControls();
    makeLayout();
    refresh();
}

void CompareBox::makeControls()
{
    contents_->setObjectName(QStringLiteral("scan.contents"));
    sameType_->setObjectName(QStringLiteral("scan.sameType"));
    pick_->setObjectName(QStringLiteral("scan.pickProperties"));
    pick_->setEnabled(false);
    similarity_->setObjectName(QStringLiteral("scan.similarity"));
    similarity_->setRange(1, exact);
    similarity_->setPageStep(5);
    problem_->hide();
    makeWarning(*problem_);
    for (QCheckBox* const box : {contents_, sameType_})
        connect(box, &QCheckBox::toggled, this, &CompareBox::edited);
    connect(pick_, &QPushButton::clicked, this, &CompareBox::pickProperties);
    connect(similarity_, &QSlider::valueChanged, this, [this] {
        refresh();
        Q_EMIT edited();
    });
}

void CompareBox::makeLayout()
{
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(contents_);
    auto* const properties = new QHBoxLayout;
    properties->addWidget(pick_);
    properties->addWidget(properties_, 1);
    layout->addLayout(properties);
    auto* const similarity = new QHBoxLayout;
    auto* const label = new QLabel(shown(desktop_text::compareSimilarity));
    label->setBuddy(similarity_);
    similarity->addWidget(label);
    similarity->addWidget(similarity_, 1);
    layout->addLayout(similarity);
    layout->addWidget(meaning_);
    layout->addWidget(sameType_);
    layout->addWidget(problem_);
}

void CompareBox::show(const CScanNode& definition)
{
    contents_->setChecked(definition.has(scan_flag::contents));
    sameType_->setChecked(definition.has(scan_flag::sameType));
    similarity_->setValue(definition.effectiveSimilarity());
    names_ = toQt(definition.properties);
    refresh();
}

void CompareBox::read(CScanNode& definition) const
{
    definition.set(scan_flag::contents, contents_->isChecked());
    definition.set(scan_flag::sameType, sameType_->isChecked());
    definition.set(scan_flag::fuzzy, similarity_->value() < exact);
    definition.similarity = similarity_->value();
    definition.properties = names_.toStdString();
}

void CompareBox::setProperties(std::vector<PropertyRow> rows)
{
    rows_ = std::move(rows);
    pick_->setEnabled(true);
    refresh();
}

void CompareBox::showProblem(const QString& problem)
{
    problem_->setText(problem);
    problem_->setVisible(!problem.isEmpty());
}

void CompareBox::pickProperties()
{
    auto* const picker = new PropertyPicker(desktop_, rows_, names_, window());
    picker->setAttribute(Qt::WA_DeleteOnClose);
    connect(picker, &QDialog::accepted, this, [this, picker] {
        names_ = picker->chosen();
        refresh();
        Q_EMIT edited();
    });
    picker->open();
}

void CompareBox::refresh()
{
    properties_->setText(names_.isEmpty() ? shown(desktop_text::comparePropertiesNone) : labelsOf(names_, rows_));
    meaning_->setText(meaningOf(similarity_->value()));
    similarity_->setAccessibleDescription(meaning_->text());
}

}  // namespace kelvane
