// The commands that a person gives for marks, for groups and for what is in view.
#pragma once

#include <optional>

#include "base/text_table.h"
#include "results/results_model.h"
#include "results/stored_marks.h"

namespace kelvane {

enum class MarkCommand {
    storeMarks,       // of the items in view, in the place of those stored before
    tickStored,       // in view
    untickStored,     // in view
    invertTicks,      // in view
    clearTicks,       // in view
    showTicked,       // hides all others
    showAll,          // however they were hidden
    removeSelection,  // off the list, undoable
    regroupSelection,
    mergeWithPrevious,
};

// What the caller has to say.
struct CommandAnswer {
    std::optional<TextId> message{};
    bool beep = false;  // as a warning: the selection is not one that the command can work on
    friend bool operator==(const CommandAnswer&, const CommandAnswer&) = default;
};

// What the command is called in menus.
[[nodiscard]] TextId nameOf(MarkCommand command) noexcept;

CommandAnswer carryOut(MarkCommand command, ResultsModel& model, StoredMarks& stored);

}  // namespace kelvane
