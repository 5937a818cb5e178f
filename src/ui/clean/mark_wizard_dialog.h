// The mark wizard: which items are kept in each group, and what that would mark.
#pragma once

#include <QDialog>
#include <cstdint>
#include <optional>

#include "results/mark_wizard.h"

class QButtonGroup;
class QComboBox;
class QLabel;
class QPushButton;
class QTimer;
class QVBoxLayout;

namespace kelvane {

class WindowLink;
enum class ListNumber : std::uint32_t;
class WizardRules;

// What the dialog needs of the window's thread.
struct WizardFacts {
    CScanNode definition;
    std::vector<std::string> drives;
};

// Asks the window's thread for the facts, and opens the dialog.
void openMarkWizard(WindowLink& link);

// Deletes itself when it is closed.
class MarkWizardDialog final : public QDialog {
    Q_OBJECT

public:
    MarkWizardDialog(WindowLink& link, WizardFacts facts);

private:
    [[nodiscard]] QWidget* makeRules();
    void addRules(QVBoxLayout& layout);
    void addRule(QVBoxLayout& layout, const MarkWizardRow& row, KeepRule preselected);
    QWidget* makeFolderLine();
    void addFolder(const std::string& folder);
    void addFurtherRules(QVBoxLayout& layout);
    QWidget* makeEffect();
    QWidget* makeButtons();

    [[nodiscard]] std::optional<MarkingRule> chosen() const;
    [[nodiscard]] std::optional<MarkingPlan> plan() const;
    void changed();
    void preview();
    void mark();

    WindowLink& link_;
    const WizardFacts facts_;
    const ListNumber list_;  // that it was opened for
    CMarkWizardDlg wizard_;
    QButtonGroup* choices_;    // numbered by their rules
    QWidget* area_ = nullptr;  // of the rules
    QComboBox* folder_ = nullptr;
    WizardRules* further_ = nullptr;
    QLabel* effect_ = nullptr;
    QLabel* warning_ = nullptr;
    QPushButton* apply_ = nullptr;
    QTimer* delay_;
    bool asked_ = false;  // a preview is on its way
    bool again_ = false;  // and out of date already
};

}  // namespace kelvane
