#include "results/marking_rules.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/filled_text.h"
#include "results/keep_chain.h"

namespace kelvane {
namespace {

struct Split {
    std::vector<ItemId> marked, kept;
};

Status check(const ResultsModel& model, const MarkingPlan& plan)
{
    if (!model.isGrouped())
        return Error{ErrorKind::invalid, 0, filledText(TextId::listNotGrouped)};
    // A folder without a name holds nothing, and everything would be marked.
    const bool hasNowhere = std::any_of(plan.chain.begin(), plan.chain.end(), [](const MarkingRule& rule) {
        return rule.rule == KeepRule::under && rule.folder.empty();
    });
    if (hasNowhere || (plan.chain.empty() && plan.preferredFolders.empty()))
        return Error{ErrorKind::invalid, 0, filledText(TextId::nothingToKeep)};
    return {};
}

void count(MarkingPreview& preview, const ResultsModel& model, std::span<const ItemId> group,
           const std::vector<bool>& kept)
{
    std::uint64_t marked = 0;
    for (std::size_t row = 0; row < group.size(); ++row) {
        if (kept[row])
            continue;
        ++marked;
        preview.marked.bytes += model.item(group[row]).bytes();
    }
    preview.marked.items += marked;
    preview.groups += marked > 0 ? 1 : 0;
    preview.groupsLost += marked == group.size() ? 1 : 0;
}

// The one walk behind telling and doing.
Result<MarkingPreview> walk(ResultsModel& model, const MarkingPlan& plan, const MarkingPorts& ports, Split* split)
{
    if (Status refused = check(model, plan); !refused)
        return refused.error();
    MarkingPreview preview;
    KeepChain chain(model, plan, ports);
    model.forEachRun([&](std::span<const ItemId> group) {
        if (group.size() < 2)
            return true;
        const std::vector<bool> kept = chain.kept(group);
        count(preview, model, group, kept);
        preview.protectedItems += chain.protectedRows();
        for (std::size_t row = 0; split != nullptr && row < group.size(); ++row)
            (kept[row] ? split->kept : split->marked).push_back(group[row]);
        return true;
    });
    return preview;
}

}  // namespace

bool MarkingPlan::mayMarkWholeGroups() const
{
    return chain.size() == 1 && chain.front().rule == KeepRule::under && preferredFolders.empty();
}

Result<MarkingPreview> previewMarks(ResultsModel& model, const MarkingPlan& plan, const MarkingPorts& ports)
{
    return walk(model, plan, ports, nullptr);
}

Result<MarkingPreview> applyMarks(ResultsModel& model, const MarkingPlan& plan, const MarkingPorts& ports)
{
    Split split;
    Result<MarkingPreview> preview = walk(model, plan, ports, &split);
    if (!preview)
        return preview;
    if (model.hasTickBoxes()) {
        model.retick(split.marked, split.kept);
        return preview;
    }
    model.clearSelection();
    model.mark(split.marked, Mark::selected, true);
    return preview;
}

}  // namespace kelvane
