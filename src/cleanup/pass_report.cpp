#include "cleanup/pass_report.h"

namespace kelvane {

void PassReport::end(const ItemOutcome& ended)
{
    const CleanupCommand& command = plan_.commands[ended.command];
    if (ended.result == ItemResult::done) {
        ++outcome.succeeded;
        outcome.freed += command.frees;
        outcome.recycled = outcome.recycled || !ended.trashed.empty();
    }
    if (ended.result == ItemResult::failed || ended.result == ItemResult::declined)
        ++outcome.errors;
    observer_.itemEnded(ended);
    observer_.progress(++items_, bytes_ += command.bytes);
}

void PassReport::leave(std::size_t command, ItemId kept)
{
    ItemOutcome left;
    left.command = command;
    left.kept = kept;
    observer_.itemEnded(left);
}

std::vector<std::size_t> commandsOf(const CleanupPlan& plan, bool links)
{
    std::vector<std::size_t> numbers;
    for (std::size_t number = 0; number < plan.commands.size(); ++number) {
        if ((plan.commands[number].action == CleanupAction::link) == links)
            numbers.push_back(number);
    }
    return numbers;
}

}  // namespace kelvane
