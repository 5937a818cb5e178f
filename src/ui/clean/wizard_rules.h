// The further rules of the mark wizard: names, what decides among equals, folders.
#pragma once

#include <QWidget>

#include "results/marking_rules.h"

class QComboBox;
class QLineEdit;

namespace kelvane {

class PlaceList;

class WizardRules final : public QWidget {
    Q_OBJECT

public:
    WizardRules();

    // The plan by the rule that was chosen, and these.
    [[nodiscard]] MarkingPlan around(const MarkingRule& chosen) const;

Q_SIGNALS:
    void changed();

private:
    QComboBox* makeRuleBox(const char* name);

    QLineEdit* names_;
    QComboBox* then_[2];
    PlaceList* preferred_;
    PlaceList* protected_;
};

}  // namespace kelvane
