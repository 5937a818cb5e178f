#include "ui/preview/previewed_file.h"

#include <algorithm>

#include "results/result_columns.h"
#include "ui/core/workbench.h"

namespace kelvane {

PreviewedFile previewedFile(Workbench& bench, ItemId item)
{
    const ResultsModel& results = bench.results();
    PreviewedFile known;
    if (static_cast<std::uint32_t>(item) >= results.idLimit() || results.item(item).has(item_state::removed))
        return known;
    known.file = results.item(item).file.itemRef();
    const ResultGroup& group = results.groupOf(item);
    const auto& members = group.members;
    if (members.size() > 1)
        known.first = results.item(members.front() == item ? members[1] : members.front()).file.itemRef();
    if (const auto at = std::find(members.begin(), members.end(), item); at != members.begin() && at != members.end())
        known.before = results.item(*(at - 1)).file.itemRef();
    known.approximate = group.approximate;
    known.joinedByHand = group.joinedByHand;
    if (const ListSession* const session = bench.session()) {
        known.columns = joinColumns(session->columns);
        known.options = session->criteria ? session->criteria->options : session->options;
        if (session->criteria)
            known.definition = session->criteria->definition;
    }
    return known;
}

}  // namespace kelvane
