#include "app/listed_results.h"

#include <utility>

namespace kelvane {

std::vector<StoredRow> storedRows(const ResultsModel& results)
{
    std::vector<StoredRow> rows;
    rows.reserve(results.itemCount());
    results.forEachItem([&](ItemId id) {
        const ResultItem& item = results.item(id);
        rows.push_back({item.file.itemRef(), item.groupNumber(), results.groupOf(id).approximate});
    });
    return rows;
}

void addRows(ResultsModel& results, std::vector<StoredRow> rows)
{
    for (StoredRow& row : rows)
        results.add(std::move(row.file), row.group, row.approximate);
}

EngineOptions optionsWithArchives(EngineOptions options, bool entered)
{
    constexpr std::uint32_t archives = option_flag::enterVirtualFolders;
    options.flags = entered ? options.flags | archives : options.flags & ~archives;
    return options;
}

}  // namespace kelvane
