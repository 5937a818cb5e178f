// The mark wizard's work on the thread of a window.
#pragma once

#include "ui/clean/mark_wizard_dialog.h"

namespace kelvane {

class Workbench;

// What a plan would do, in words.
struct WizardEffect {
    QString text;
    QString warning;  // empty: nothing to warn of
    bool possible = false;
};

[[nodiscard]] WizardFacts wizardFacts(Workbench& bench);
[[nodiscard]] WizardEffect previewOf(Workbench& bench, const MarkingPlan& plan);
// Asks about hidden items and lost groups where that is due; what is to be remembered goes back to the main thread.
void markBy(Workbench& bench, const MarkingPlan& plan, const WizardFacts& facts, MarkWizardMemory memory);

}  // namespace kelvane
