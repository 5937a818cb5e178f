#include "cleanup/cleanup_plan.h"

#include <algorithm>
#include <optional>
#include <variant>

#include "base/filled_text.h"
#include "cleanup/freed_bytes.h"
#include "cleanup/item_links.h"
#include "results/compared_values.h"

namespace kelvane {
namespace {

class Planner {
public:
    Planner(const ResultsModel& model, const CleanupRequest& request, const CleanupFacts& facts)
        : model_(model), request_(request), facts_(facts)
    {
        const bool folders = facts.definition.category() == Category::folders;
        plan_.action = request.action == CleanupAction::link && folders ? CleanupAction::recycle : request.action;
    }

    // False when no row of the group would stay.
    [[nodiscard]] bool addGroup(std::span<const ItemId> group)
    {
        const auto isMarked = [this](ItemId id) { return model_.isMarked(id); };
        if (std::none_of(group.begin(), group.end(), isMarked))
            return true;
        const std::optional<ItemId> kept = groupOriginal(model_, group);
        if (!kept)
            return false;
        for (const ItemId id : group) {
            if (isMarked(id))
                addItem(id, *kept);
        }
        return true;
    }

    [[nodiscard]] bool linksArePossible() const
    {
        return plan_.action != CleanupAction::link ||
               (plan_.allInFileSystem && !plan_.anyOnNetwork && !anyFolder_ &&
                !facts_.definition.has(scan_flag::fuzzy) && groupsHaveOneSize(facts_.definition));
    }

    [[nodiscard]] CleanupPlan finish()
    {
        plan_.frees = countFreedBytes(model_, facts_, plan_.commands);
        return std::move(plan_);
    }

private:
    void addItem(ItemId id, ItemId kept)
    {
        const ShellItem& item = model_.item(id).file.item();
        ++plan_.marked.items;
        plan_.marked.bytes += model_.item(id).bytes();
        plan_.allInFileSystem = plan_.allInFileSystem && item.inFileSystem();
        plan_.anyOnNetwork =
            plan_.anyOnNetwork || hasNetworkPath(item, facts_.paths) || (facts_.onNetwork && facts_.onNetwork(item));
        anyFolder_ = anyFolder_ || item.info().kind == FileKind::folder;
        const auto means = meansFor(item, model_.item(kept).file.item());
        if (const auto* obstacle = std::get_if<CleanupObstacle>(&means))
            plan_.skipped.push_back({id, *obstacle});
        else
            plan_.commands.push_back(command(id, kept, std::get<LinkChoice>(means)));
    }

    [[nodiscard]] std::variant<LinkChoice, CleanupObstacle> meansFor(const ShellItem& item, const ShellItem& kept) const
    {
        if (!item.inFileSystem())
            return CleanupObstacle::inArchive;
        if (!kept.inFileSystem())
            return CleanupObstacle::keptInArchive;
        if (mayBeKeptItself(item, kept))
            return CleanupObstacle::maybeKeptItself;
        if (plan_.action != CleanupAction::link)
            return LinkChoice{};
        return chooseLink(item, kept, request_, facts_);
    }

    [[nodiscard]] CleanupCommand command(ItemId id, ItemId kept, LinkChoice means) const
    {
        const ResultItem& row = model_.item(id);
        const ShellItem &item = row.file.item(), &keptItem = model_.item(kept).file.item();
        CleanupCommand command;
        command.item = id;
        command.kept = kept;
        command.group = row.groupNumber();
        command.action = plan_.action;
        command.link = means.first;
        command.ways = means.ways;
        command.approximate = model_.groupOf(id).approximate;
        command.joinedByHand = model_.groupOf(id).joinedByHand;
        command.sameFile = isSameFile(item, keptItem) && !isLinkItself(item);
        // A clone keeps all that the file has but its blocks.
        if (means.ways != 0 && means.first != LinkKind::clone && facts_.metadataLoss)
            command.loses = facts_.metadataLoss(item, keptItem);
        command.bytes = row.bytes();
        return command;
    }

    const ResultsModel& model_;
    const CleanupRequest& request_;
    const CleanupFacts& facts_;
    CleanupPlan plan_;
    bool anyFolder_ = false;
};

}  // namespace

bool CleanupPlan::canBeUndone() const
{
    const auto isFinal = [](const CleanupCommand& command) { return command.action != CleanupAction::recycle; };
    return action == CleanupAction::recycle && allInFileSystem && !anyOnNetwork &&
           std::none_of(commands.begin(), commands.end(), isFinal);
}

std::optional<ItemId> groupOriginal(const ResultsModel& model, std::span<const ItemId> group)
{
    const auto isMarked = [&](ItemId id) { return model.isMarked(id); };
    const auto marked = std::find_if(group.begin(), group.end(), isMarked);
    if (marked == group.end())
        return std::nullopt;
    if (marked != group.begin())
        return *(marked - 1);
    const auto kept = std::find_if_not(marked, group.end(), isMarked);
    return kept != group.end() ? std::optional(*kept) : std::nullopt;
}

Result<CleanupPlan> planCleanup(const ResultsModel& model, const CleanupRequest& request, const CleanupFacts& facts)
{
    if (!model.isGrouped())
        return Error{ErrorKind::invalid, 0, filledText(TextId::listNotGrouped)};
    Planner planner(model, request, facts);
    bool everyGroupKept = true;
    model.forEachRun([&](std::span<const ItemId> group) { return everyGroupKept = planner.addGroup(group); });
    if (!everyGroupKept)
        return Error{ErrorKind::invalid, 0, filledText(TextId::groupsWhollyMarked)};
    if (!planner.linksArePossible())
        return Error{ErrorKind::notSupported, 0, filledText(TextId::linkingNotPossible)};
    return planner.finish();
}

}  // namespace kelvane
