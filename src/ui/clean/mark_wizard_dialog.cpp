#include "ui/clean/mark_wizard_dialog.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "base/desktop_texts/clean.h"
#include "ui/clean/boxes.h"
#include "ui/clean/place_list.h"
#include "ui/clean/rules_area.h"
#include "ui/clean/text_values.h"
#include "ui/clean/wizard_marks.h"
#include "ui/clean/wizard_rules.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/frame/theme.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr int delayMs = 150;     // of the preview behind a key or click
constexpr int leastWidth = 520;  // of the rules

const char* nameOf(KeepRule rule)
{
    switch (rule) {
    case KeepRule::biggest:
        return "ruleBiggest";
    case KeepRule::smallest:
        return "ruleSmallest";
    case KeepRule::newest:
        return "ruleNewest";
    case KeepRule::oldest:
        return "ruleOldest";
    case KeepRule::first:
        return "ruleFirst";
    case KeepRule::last:
        return "ruleLast";
    default:
        return "ruleUnder";
    }
}

QLabel* small(const QString& text)
{
    auto* const label = new QLabel(text);
    label->setWordWrap(true);
    label->setContentsMargins(24, 0, 0, 0);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

}  // namespace

void openMarkWizard(WindowLink& link)
{
    link.fetch(
        &link, [](Workbench& bench) { return wizardFacts(bench); },
        [&link](WizardFacts facts) { (new MarkWizardDialog(link, std::move(facts)))->open(); });
}

MarkWizardDialog::MarkWizardDialog(WindowLink& link, WizardFacts facts)
    : QDialog(topOf(link)),
      link_(link),
      facts_(std::move(facts)),
      list_(link.list()),
      wizard_(facts_.definition, link.desktop().platform().paths(), facts_.drives, link.desktop().wizard),
      choices_(new QButtonGroup(this)),
      delay_(new QTimer(this))
{
    setObjectName(QStringLiteral("markWizard"));
    setWindowTitle(toQt(CMarkWizardDlg::title()));
    setAttribute(Qt::WA_DeleteOnClose);
    delay_->setSingleShot(true);
    delay_->setInterval(delayMs);
    connect(delay_, &QTimer::timeout, this, &MarkWizardDialog::preview);
    auto* const layout = new QVBoxLayout(this);
    auto* const question = new QLabel(toQt(CMarkWizardDlg::question()));
    QFont font = question->font();
    font.setBold(true);
    question->setFont(font);
    layout->addWidget(question);
    auto* const explanation = new QLabel(toQt(CMarkWizardDlg::explanation()));
    explanation->setWordWrap(true);
    layout->addWidget(explanation);
    layout->addWidget(makeRules());
    layout->addWidget(makeEffect());
    layout->addWidget(makeButtons());
    setMinimumWidth(leastWidth + layout->contentsMargins().left() + layout->contentsMargins().right());
    resize(sizeHint());        // a dialog would take two thirds of the screen at most, and hide the further rules
    apply_->setDefault(true);  // not before it is in the dialog
    if (QAbstractButton* const preselected = choices_->checkedButton())
        preselected->setFocus();
    connect(&link, &WindowLink::figuresChanged, this, &MarkWizardDialog::changed);
    changed();
}

// As high as they are, and to be scrolled where that is more than the screen has room for.
QWidget* MarkWizardDialog::makeRules()
{
    auto* const rules = new QWidget;
    auto* const layout = new QVBoxLayout(rules);
    layout->setContentsMargins({});
    addRules(*layout);
    if ((link_.desktop().settings().flags & settings_flag::advanced) != 0)
        addFurtherRules(*layout);
    layout->addStretch();
    area_ = new RulesArea(*rules, leastWidth);
    return area_;
}

void MarkWizardDialog::addRules(QVBoxLayout& layout)
{
    const KeepRule preselected = wizard_.preselected();
    std::optional<TextId> heading;
    QVBoxLayout* box = nullptr;
    for (const MarkWizardRow& row : CMarkWizardDlg::rows()) {
        if (heading != row.heading) {
            auto* const group = new QGroupBox(shown(row.heading));
            box = new QVBoxLayout(group);
            box->setSpacing(2);
            layout.addWidget(group);
            heading = row.heading;
        }
        addRule(*box, row, preselected);
    }
}

void MarkWizardDialog::addRule(QVBoxLayout& layout, const MarkWizardRow& row, KeepRule preselected)
{
    auto* const choice = new QRadioButton(shown(row.label));
    choice->setObjectName(QString::fromLatin1(nameOf(row.rule)));
    const bool enabled = wizard_.isEnabled(row.rule);
    choice->setEnabled(enabled);
    choice->setChecked(enabled && row.rule == preselected);
    if (!enabled)
        choice->setToolTip(shown(row.rule == KeepRule::under ? say::wizardNoFolder : say::wizardRuleOff));
    layout.addWidget(choice);
    if (row.reason) {
        choice->setAccessibleDescription(shown(*row.reason));
        QLabel* const reason = small(shown(*row.reason));
        reason->setEnabled(enabled);
        layout.addWidget(reason);
    }
    if (row.rule == KeepRule::under)
        layout.addWidget(makeFolderLine());
    choices_->addButton(choice, static_cast<int>(row.rule));  // one choice, although boxes part it
    connect(choice, &QRadioButton::toggled, this, &MarkWizardDialog::changed);
}

QWidget* MarkWizardDialog::makeFolderLine()
{
    folder_ = new QComboBox;
    folder_->setObjectName(QStringLiteral("wizardFolder"));
    folder_->setAccessibleName(shown(say::wizardFolderPicker));
    folder_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (const std::string& folder : wizard_.folders())
        folder_->addItem(pathShown(std::string_view(folder)), QByteArray::fromStdString(folder));
    folder_->setEnabled(wizard_.isEnabled(KeepRule::under));
    auto* const browse = new QPushButton(shown(say::wizardBrowse));
    browse->setObjectName(QStringLiteral("wizardBrowse"));
    browse->setEnabled(folder_->isEnabled());
    connect(browse, &QPushButton::clicked, this, [this] {
        pickFolder(this, shown(say::wizardFolderPicker), [this](const std::string& folder) { addFolder(folder); });
    });
    connect(folder_, &QComboBox::currentIndexChanged, this, &MarkWizardDialog::changed);
    auto* const line = new QWidget;
    auto* const layout = new QHBoxLayout(line);
    layout->setContentsMargins(24, 0, 0, 0);
    layout->addWidget(folder_, 1);
    layout->addWidget(browse);
    return line;
}

void MarkWizardDialog::addFolder(const std::string& folder)
{
    folder_->addItem(pathShown(std::string_view(folder)), QByteArray::fromStdString(folder));
    folder_->setCurrentIndex(folder_->count() - 1);
}

void MarkWizardDialog::addFurtherRules(QVBoxLayout& layout)
{
    auto* const toggle = new QToolButton;
    toggle->setObjectName(QStringLiteral("wizardMore"));
    toggle->setText(shown(say::wizardMore));
    toggle->setCheckable(true);
    toggle->setAutoRaise(true);
    toggle->setArrowType(Qt::RightArrow);
    toggle->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    further_ = new WizardRules;
    further_->setVisible(false);
    connect(further_, &WizardRules::changed, this, &MarkWizardDialog::changed);
    connect(toggle, &QToolButton::toggled, this, [this, toggle](bool on) {
        toggle->setArrowType(on ? Qt::DownArrow : Qt::RightArrow);
        further_->setVisible(on);
        area_->updateGeometry();
        resize(sizeHint());
        changed();
    });
    layout.addWidget(toggle);
    layout.addWidget(further_);
}

QWidget* MarkWizardDialog::makeEffect()
{
    auto* const box = new QGroupBox(shown(say::wizardEffect));
    auto* const layout = new QVBoxLayout(box);
    effect_ = new QLabel(shown(say::wizardCounting));
    effect_->setObjectName(QStringLiteral("wizardEffect"));
    effect_->setWordWrap(true);
    warning_ = new QLabel;
    warning_->setObjectName(QStringLiteral("wizardWarning"));
    warning_->setWordWrap(true);
    warning_->setVisible(false);
    makeWarning(*warning_);
    layout->addWidget(effect_);
    layout->addWidget(warning_);
    return box;
}

QWidget* MarkWizardDialog::makeButtons()
{
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    apply_ = buttons->addButton(shown(say::wizardApply), QDialogButtonBox::ActionRole);
    apply_->setObjectName(QStringLiteral("wizardApply"));
    connect(apply_, &QPushButton::clicked, this, &MarkWizardDialog::mark);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    return buttons;
}

std::optional<MarkingRule> MarkWizardDialog::chosen() const
{
    if (choices_->checkedButton() == nullptr)
        return std::nullopt;
    MarkingRule rule{static_cast<KeepRule>(choices_->checkedId()), {}, {}};
    if (rule.rule == KeepRule::under)
        rule.folder = folder_->currentData().toByteArray().toStdString();
    return rule;
}

// What is out of sight counts for nothing.
std::optional<MarkingPlan> MarkWizardDialog::plan() const
{
    const auto rule = chosen();
    if (!rule)
        return std::nullopt;
    return further_ != nullptr && further_->isVisible() ? further_->around(*rule) : MarkingPlan{{*rule}, {}, {}};
}

void MarkWizardDialog::changed()
{
    if (delay_ != nullptr)
        delay_->start();
}

void MarkWizardDialog::preview()
{
    again_ = asked_;
    const auto wanted = plan();
    if (asked_ || !wanted)
        return;
    asked_ = true;
    link_.fetch(
        this, [plan = *wanted](Workbench& bench) { return previewOf(bench, plan); },
        [this](const WizardEffect& effect) {
            asked_ = false;
            if (again_)
                return preview();
            effect_->setText(effect.text);
            warning_->setText(effect.warning);
            warning_->setVisible(!effect.warning.isEmpty());
            apply_->setEnabled(effect.possible);
        });
}

void MarkWizardDialog::mark()
{
    const auto wanted = plan();
    if (!wanted)
        return;
    const bool single = further_ == nullptr || !further_->isVisible();
    if (single)
        link_.desktop().wizard.rule = wanted->chain.front().rule;
    link_.runOn(list_, [plan = *wanted, facts = facts_, memory = link_.desktop().wizard](Workbench& bench) {
        markBy(bench, plan, facts, memory);
    });
    accept();
}

}  // namespace kelvane
