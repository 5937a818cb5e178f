#include "ui/preview/group_members.h"

#include <algorithm>

#include "results/result_columns.h"
#include "ui/core/workbench.h"

namespace kelvane {
namespace {

// The chosen ones stand first, so that they are among those offered.
GroupMembers made(Workbench& bench, const std::vector<ItemId>& chosen)
{
    const ResultsModel& results = bench.results();
    GroupMembers all;
    for (const ItemId item : chosen)
        all.members.push_back({results.item(item).file.itemRef(), true});
    for (const ItemId item : results.groupOf(chosen.front()).members) {
        if (all.members.size() < mostOffered && std::find(chosen.begin(), chosen.end(), item) == chosen.end())
            all.members.push_back({results.item(item).file.itemRef(), false});
    }
    if (const ListSession* const session = bench.session())
        all.columns = joinColumns(session->columns);
    return all;
}

}  // namespace

GroupMembers membersAround(Workbench& bench, ItemId item)
{
    const ResultsModel& results = bench.results();
    if (static_cast<std::uint32_t>(item) >= results.idLimit() || results.item(item).has(item_state::removed))
        return {};
    std::vector<ItemId> chosen{item};
    for (const ItemId member : results.groupOf(item).members) {
        if (member != item && chosen.size() < 2)
            chosen.push_back(member);
    }
    return chosen.size() < 2 ? GroupMembers{} : made(bench, chosen);
}

GroupMembers selectedMembers(Workbench& bench)
{
    const ResultsModel& results = bench.results();
    std::vector<ItemId> chosen;
    results.forEachRow([&](ItemId item) {
        if (results.item(item).has(item_state::selected) && chosen.size() <= mostCompared)
            chosen.push_back(item);
    });
    const bool oneGroup = std::all_of(chosen.begin(), chosen.end(), [&](ItemId item) {
        return results.item(item).group == results.item(chosen.front()).group;
    });
    return chosen.size() < 2 || chosen.size() > mostCompared || !oneGroup ? GroupMembers{} : made(bench, chosen);
}

}  // namespace kelvane
