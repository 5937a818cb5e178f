#include "cleanup/pre_check.h"

#include <algorithm>
#include <vector>

namespace kelvane {
namespace {

struct WhollyMarked {
    std::uint32_t groups = 0;
    std::vector<ItemId> others;  // rows of all other groups
};

WhollyMarked whollyMarked(const ResultsModel& model)
{
    WhollyMarked found;
    model.forEachRun([&](std::span<const ItemId> group) {
        if (std::all_of(group.begin(), group.end(), [&](ItemId id) { return model.isMarked(id); }))
            ++found.groups;
        else
            found.others.insert(found.others.end(), group.begin(), group.end());
        return true;
    });
    return found;
}

}  // namespace

std::optional<TextId> PreCheck::message() const
{
    switch (outcome) {
    case PreCheckOutcome::nothingMarked:
        return TextId::nothingMarked;
    case PreCheckOutcome::groupsWhollyMarked:
        return TextId::groupsWhollyMarked;
    case PreCheckOutcome::notGrouped:
        return TextId::listNotGrouped;
    case PreCheckOutcome::ready:
    case PreCheckOutcome::noDefinition:
        break;
    }
    return std::nullopt;
}

PreCheck preCheck(ResultsModel& model, bool hasDefinition, const std::function<bool(std::u16string_view)>& askYesNo)
{
    if (model.hiddenCount() > 0 && askYesNo(text(TextId::includeHiddenQuestion)))
        model.showAll();
    if (model.inView(model.markInForce()).items == 0)
        return {PreCheckOutcome::nothingMarked, 0};
    if (!hasDefinition)
        return {PreCheckOutcome::noDefinition, 0};
    if (!model.isGrouped())
        return {PreCheckOutcome::notGrouped, 0};
    const WhollyMarked found = whollyMarked(model);
    if (found.groups == 0)
        return {};
    (void)model.hide(found.others, hiding_flag::preCheck);
    return {PreCheckOutcome::groupsWhollyMarked, found.groups};
}

}  // namespace kelvane
