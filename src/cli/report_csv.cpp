#include <ostream>

#include "base/utf.h"
#include "cli/csv.h"
#include "cli/listed_value.h"
#include "cli/value_json.h"
#include "platform/native_text.h"
#include "results/result_columns.h"

namespace kelvane {
namespace {

std::string word(bool yes)
{
    return yes ? "true" : "false";
}

// Bare text; anything else as JSON writes it.
std::string cell(const Json& value)
{
    if (value.is_string())
        return value.get<std::string>();
    return value.is_null() ? std::string{} : dump(value, Layout::oneLine);
}

void writeCounts(const Listing& listing, std::ostream& out)
{
    const ListedCounts counts = countListed(listing.results);
    writeCsvRow({"groups", "files", "duplicates", "freed"}, out);
    writeCsvRow({std::to_string(counts.groups), std::to_string(counts.files), std::to_string(counts.duplicates()),
                 std::to_string(counts.freed)},
                out);
}

void writeTitles(const Listing& listing, std::ostream& out)
{
    std::vector<std::string> titles = {"group", "approximate", "size", "modified", "path", "path_bytes"};
    if (listing.shape.scores != nullptr)
        titles.emplace_back("score");
    if (listing.marksNew())
        titles.emplace_back("new");
    for (const PropRef& column : listing.shape.columns)
        titles.emplace_back(column.info->name);
    writeCsvRow(titles, out);
}

void writeFile(const Listing& listing, const GroupFacts& group, ItemId id, std::ostream& out)
{
    const ShellItem& file = listing.file(id);
    const FileInfo& info = file.info();
    const std::string path = bytesFromNative(file.fullName());
    std::vector<std::string> cells = {std::to_string(group.number),
                                      word(group.approximate),
                                      std::to_string(info.size.bytes),
                                      info.modified.ticks != 0 ? toIso8601(info.modified) : "",
                                      displayText(path),
                                      isValidUtf8(path) ? "" : percentEncode(path)};
    if (listing.shape.scores != nullptr)
        cells.push_back(listing.score(id) ? std::to_string(*listing.score(id)) : "");
    if (listing.marksNew())
        cells.push_back(word(listing.isNew(id)));
    for (const PropRef& column : listing.shape.columns)
        cells.push_back(isDuration(column)
                            ? toUtf8(cellText(listing.results.file(id), column, *listing.shape.properties))
                            : cell(listedValue(listing, id, column)));
    writeCsvRow(cells, out);
}

}  // namespace

void writeCsvReport(const Listing& listing, std::ostream& out)
{
    if (listing.shape.summaryOnly)
        return writeCounts(listing, out);
    writeTitles(listing, out);
    forEachGroup(listing, [&](const GroupFacts& group) {
        if (!goesOn(listing, out))
            return false;
        for (const ItemId id : group.files)
            writeFile(listing, group, id, out);
        return true;
    });
}

}  // namespace kelvane
