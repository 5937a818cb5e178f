#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <utility>

#include "base/size_text.h"
#include "cli/printable.h"
#include "cli/report.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

std::string counted(std::uint64_t count, const char* one, const char* many)
{
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

struct GroupSizes {
    FileSize smallest{UINT64_MAX};
    FileSize largest;
    std::uint64_t total = 0;
};

GroupSizes sizesOf(const ResultGroup& group)
{
    GroupSizes sizes;
    for (const ResultItem* item : group.items) {
        const FileSize size = item->file->info().size;
        sizes.smallest = std::min(sizes.smallest, size);
        sizes.largest = std::max(sizes.largest, size);
        sizes.total += size.bytes;
    }
    return sizes;
}

std::string groupTitle(const ResultGroup& group)
{
    const GroupSizes sizes = sizesOf(group);
    std::string title = "Group " + std::to_string(group.number) + ": " + counted(group.items.size(), "file", "files");
    if (sizes.smallest == sizes.largest)
        title += ", " + sizeText(sizes.largest) + " each";
    else
        title += ", " + sizeText(sizes.smallest) + " to " + sizeText(sizes.largest);
    return title + (group.approximate ? ", compared approximately" : "");
}

// Whichever file of a group is kept, at least this much goes.
std::uint64_t reclaimable(const ResultsModel& results)
{
    std::uint64_t bytes = 0;
    for (const auto& group : results.groups()) {
        const GroupSizes sizes = sizesOf(*group);
        bytes += sizes.total - sizes.largest.bytes;
    }
    return bytes;
}

std::string secondsText(double seconds)
{
    if (seconds < 0.1)
        return "less than 0.1 seconds";
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f seconds", seconds);
    return text.data();
}

}  // namespace

void writeTextReport(const ScanOutcome& outcome, std::ostream& out)
{
    bool first = true;
    for (const auto& group : outcome.results.groups()) {
        if (!goesOn(outcome, out))
            return;
        out << (std::exchange(first, false) ? "" : "\n") << groupTitle(*group) << '\n';
        for (const ResultItem* item : group->items)
            out << printable(bytesFromNative(item->file->fullName())) << '\n';
    }
}

void writeSummary(const ScanOutcome& outcome, std::ostream& err)
{
    const std::uint64_t groups = outcome.results.groups().size();
    const std::uint64_t duplicates = outcome.results.items().size() - groups;
    if (groups == 0)
        err << "No duplicates found";
    else
        err << '\n'
            << counted(duplicates, "duplicate", "duplicates") << " in " << counted(groups, "group", "groups") << ", "
            << sizeText({reclaimable(outcome.results)}) << " could be freed";
    err << "; " << counted(outcome.report.candidates, "file", "files") << " ("
        << sizeText({outcome.report.candidateBytes}) << ") in " << secondsText(outcome.report.seconds) << '\n';
}

}  // namespace kelvane
