#include "ui/clean/wizard_rules.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>

#include "base/desktop_texts/clean.h"
#include "ui/clean/place_list.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr int noRule = -1;

// Those that decide by the item alone; "&" of the wizard's own labels is taken off.
constexpr std::pair<KeepRule, TextId> tieBreakers[] = {
    {KeepRule::biggest, TextId::keepBiggest},
    {KeepRule::smallest, TextId::keepSmallest},
    {KeepRule::newest, TextId::keepNewest},
    {KeepRule::oldest, TextId::keepOldest},
    {KeepRule::shortestPath, say::keepShortestPath},
    {KeepRule::longestPath, say::keepLongestPath},
    {KeepRule::shallowest, say::keepShallowest},
    {KeepRule::deepest, say::keepDeepest},
    {KeepRule::first, TextId::keepFirst},
    {KeepRule::last, TextId::keepLast},
};

}  // namespace

WizardRules::WizardRules()
    : names_(new QLineEdit),
      then_{makeRuleBox("wizardThen"), makeRuleBox("wizardThenAgain")},
      preferred_(new PlaceList("wizardPreferred", shown(say::wizardPreferred))),
      protected_(new PlaceList("wizardProtected", shown(say::wizardProtected)))
{
    names_->setObjectName(QStringLiteral("wizardNames"));
    names_->setPlaceholderText(shown(say::wizardNamesHint));
    connect(names_, &QLineEdit::textChanged, this, &WizardRules::changed);
    connect(preferred_, &PlaceList::changed, this, &WizardRules::changed);
    connect(protected_, &PlaceList::changed, this, &WizardRules::changed);
    auto* const form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(shown(say::wizardNames), names_);
    form->addRow(shown(say::wizardThen), then_[0]);
    form->addRow(shown(say::wizardThenAgain), then_[1]);
    form->addRow(preferred_);
    form->addRow(protected_);
}

QComboBox* WizardRules::makeRuleBox(const char* name)
{
    auto* const box = new QComboBox;
    box->setObjectName(QString::fromLatin1(name));
    box->addItem(shown(say::wizardNoRule), noRule);
    for (const auto& [rule, label] : tieBreakers)
        box->addItem(shown(label).remove(QLatin1Char('&')), static_cast<int>(rule));
    connect(box, &QComboBox::currentIndexChanged, this, &WizardRules::changed);
    return box;
}

MarkingPlan WizardRules::around(const MarkingRule& chosen) const
{
    MarkingPlan plan;
    const QString names = names_->text().trimmed();
    if (!names.isEmpty())
        plan.chain.push_back({KeepRule::nameMatches, {}, names.toStdString()});
    plan.chain.push_back(chosen);
    for (const QComboBox* const box : then_)
        if (const int rule = box->currentData().toInt(); rule != noRule)
            plan.chain.push_back({static_cast<KeepRule>(rule), {}, {}});
    plan.preferredFolders = preferred_->folders();
    plan.protectedFolders = protected_->folders();
    return plan;
}

}  // namespace kelvane
