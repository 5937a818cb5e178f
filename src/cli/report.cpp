#include "cli/report.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "platform/native_text.h"

namespace kelvane {
namespace {

// Of one group, as far as its files are in view.
struct GroupSums {
    std::uint64_t bytes = 0;
    std::uint64_t largest = 0;
    std::uint64_t files = 0;
};

}  // namespace

void writeReport(OutputFormat format, const Listing& listing, std::ostream& out)
{
    switch (format) {
    case OutputFormat::text:
        return writeTextReport(listing, out);
    case OutputFormat::json:
        return writeJsonReport(listing, out);
    case OutputFormat::csv:
        return writeCsvReport(listing, out);
    case OutputFormat::null:
        return writeNullReport(listing, out);
    }
}

void forEachGroup(const Listing& listing, const std::function<bool(const GroupFacts&)>& visit)
{
    listing.results.forEachRun([&](std::span<const ItemId> run) {
        const ResultGroup& group = listing.results.groupOf(run.front());
        if (!listing.shape.flat)
            return visit({group.number, group.approximate, run});
        for (const ItemId& id : run) {
            if (!visit({group.number, group.approximate, {&id, 1}}))
                return false;
        }
        return true;
    });
}

// The list may be in any order.
ListedCounts countListed(const ResultsModel& results)
{
    std::vector<GroupSums> sums;  // by group id
    results.forEachRow([&](ItemId id) {
        const auto group = static_cast<std::size_t>(results.item(id).group);
        if (group >= sums.size())
            sums.resize(group + 1);
        const std::uint64_t bytes = results.item(id).bytes();
        sums[group].bytes += bytes;
        sums[group].largest = std::max(sums[group].largest, bytes);
        ++sums[group].files;
    });
    ListedCounts counts;
    for (const GroupSums& group : sums) {
        counts.groups += group.files > 0 ? 1 : 0;
        counts.files += group.files;
        counts.freed += group.bytes - group.largest;
    }
    return counts;
}

bool goesOn(const Listing& listing, const std::ostream& out)
{
    return out.good() && !listing.cancel.cancelled();
}

// A NUL ends every name and one more parts two groups, so that any name can be read back.
void writeNullReport(const Listing& listing, std::ostream& out)
{
    bool first = true;
    forEachGroup(listing, [&](const GroupFacts& group) {
        if (!goesOn(listing, out))
            return false;
        if (!std::exchange(first, false) && !listing.shape.flat)
            out.put('\0');
        for (const ItemId id : group.files)
            out << bytesFromNative(listing.file(id).fullName()) << '\0';
        return true;
    });
}

}  // namespace kelvane
