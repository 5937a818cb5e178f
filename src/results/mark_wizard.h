// The mark wizard without its window: which rules it offers, which are disabled, what it remembers.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/text_table.h"
#include "engine/scan_node.h"
#include "results/marking_rules.h"

namespace kelvane {

// What outlives a dialog, for the program's run. Held by the caller, the same one for every window.
struct MarkWizardMemory {
    std::optional<KeepRule> rule;   // chosen last
    bool hiddenStayHidden = false;  // the question about hidden items was answered with No
};

// One choice of the dialog. Its labels mark the letter of their key with "&".
struct MarkWizardRow {
    KeepRule rule;
    TextId heading;  // rows of one heading stand together
    TextId label;
    std::optional<TextId> reason;
};

// One dialog, for the results of one scan. Used by one thread.
class CMarkWizardDlg {
public:
    // `drives` are the roots of all logical drives, shown when the whole computer was searched. All but the drives must
    // outlive the dialog.
    CMarkWizardDlg(const CScanNode& definition, const PathRules& paths, const std::vector<std::string>& drives,
                   MarkWizardMemory& memory);

    [[nodiscard]] static std::u16string_view title() { return text(TextId::wizardTitle); }
    [[nodiscard]] static std::u16string_view question() { return text(TextId::wizardQuestion); }
    [[nodiscard]] static std::u16string_view explanation() { return text(TextId::wizardExplanation); }

    [[nodiscard]] static const std::array<MarkWizardRow, 7>& rows();
    // What was compared cannot tell the items of a group apart; without folders nothing lies under one.
    [[nodiscard]] bool isEnabled(KeepRule rule) const;
    // The rule chosen last, or the first one that is enabled.
    [[nodiscard]] KeepRule preselected() const;
    // For the location rule: where was searched, and all drives when that includes the computer.
    [[nodiscard]] const std::vector<std::string>& folders() const { return folders_; }

    // Remembers the rule and marks by it. Items out of view are asked about first, until the answer is No; Yes brings
    // them back. Where groups would lose every copy, that is told and asked about too; `cancelled`, and no mark
    // changes, when the answer is No. `invalid`, and nothing changes, for a disabled rule and as applyMarks() says.
    [[nodiscard]] Result<MarkingPreview> apply(ResultsModel& model, const MarkingRule& chosen,
                                               const MarkingPorts& ports,
                                               const std::function<bool(std::u16string_view)>& askYesNo);
    // The same by several rules, whichever they are; remembers none of them.
    [[nodiscard]] Result<MarkingPreview> apply(ResultsModel& model, const MarkingPlan& plan, const MarkingPorts& ports,
                                               const std::function<bool(std::u16string_view)>& askYesNo);

private:
    const CScanNode& definition_;
    MarkWizardMemory& memory_;
    std::vector<std::string> folders_;
};

// That groups would lose, or lost, every copy: to be told, and asked about before. Empty when none would.
[[nodiscard]] std::string lossWarning(const MarkingPreview& preview);

}  // namespace kelvane
