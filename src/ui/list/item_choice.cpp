#include "ui/list/item_choice.h"

#include <map>

namespace kelvane {

std::vector<ItemId> selectedRows(const ResultsModel& results)
{
    std::vector<ItemId> items;
    if (results.inView(Mark::selected).items == 0)
        return items;
    results.forEachRow([&](ItemId id) {
        if (results.item(id).isSelected())
            items.push_back(id);
    });
    return items;
}

std::vector<ItemId> itemsInQuestion(const ResultsModel& results, std::optional<ItemId> current)
{
    std::vector<ItemId> items = selectedRows(results);
    if (items.empty() && current && !results.item(*current).has(item_state::removed))
        items.push_back(*current);
    return items;
}

std::vector<std::vector<ItemId>> selectedGroups(const ResultsModel& results)
{
    std::map<std::uint32_t, std::vector<ItemId>> groups;
    for (const ItemId id : selectedRows(results))
        groups[results.item(id).groupNumber()].push_back(id);
    std::vector<std::vector<ItemId>> found;
    for (auto& [number, items] : groups)
        if (items.size() > 1)
            found.push_back(std::move(items));
    return found;
}

void toggleTicks(ResultsModel& results, ItemId current)
{
    const ResultItem& item = results.item(current);
    if (!results.hasTickBoxes() || item.has(item_state::removed))
        return;
    const bool on = !item.has(item_state::ticked);
    results.mark(item.isSelected() ? selectedRows(results) : std::vector{current}, Mark::ticked, on);
}

}  // namespace kelvane
