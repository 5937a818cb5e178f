// Whether a clean-up may begin: something is marked, and every group keeps an item.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "base/text_table.h"
#include "results/results_model.h"

namespace kelvane {

enum class PreCheckOutcome : std::uint8_t {
    ready,
    noDefinition,  // nobody knows what the list was scanned for; nothing is said
    nothingMarked,
    groupsWhollyMarked,  // and only these groups are in view now
    notGrouped,
};

struct PreCheck {
    PreCheckOutcome outcome = PreCheckOutcome::ready;
    std::uint32_t groups = 0;  // that are marked whole
    // What to tell the person: a warning for groups, a status text otherwise.
    [[nodiscard]] std::optional<TextId> message() const;
};

// Looks at the rows in view. While items are hidden `askYesNo` is asked whether all of them are to be brought back
// first. When groups are marked whole, all others are hidden under hiding_flag::preCheck; nothing else changes.
[[nodiscard]] PreCheck preCheck(ResultsModel& model, bool hasDefinition,
                                const std::function<bool(std::u16string_view)>& askYesNo);

}  // namespace kelvane
