#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <utility>

#include "base/filled_text.h"
#include "base/size_text.h"
#include "cli/printable.h"
#include "cli/report.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

std::string countedFiles(std::uint64_t count)
{
    return countedText(count, TextId::oneFile, TextId::manyFiles);
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
    const std::string number = std::to_string(group.number);
    const std::string files = countedFiles(group.items.size());
    const std::string title =
        sizes.smallest == sizes.largest
            ? filledText(TextId::groupOfOneSize, {number, files, sizeText(sizes.largest)})
            : filledText(TextId::groupOfSizes, {number, files, sizeText(sizes.smallest), sizeText(sizes.largest)});
    return title + (group.approximate ? filledText(TextId::groupApproximate) : "");
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
        return filledText(TextId::hardlyAnySeconds);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", seconds);
    return filledText(TextId::manySeconds, {text.data()});
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
    const std::string searched = filledText(TextId::summarySearched, {countedFiles(outcome.report.candidates),
                                                                      sizeText({outcome.report.candidateBytes}),
                                                                      secondsText(outcome.report.seconds)});
    if (groups == 0) {
        err << filledText(TextId::summaryNothing, {searched}) << '\n';
        return;
    }
    err << '\n'
        << filledText(TextId::summaryFound, {countedText(duplicates, TextId::oneDuplicate, TextId::manyDuplicates),
                                             countedText(groups, TextId::oneGroup, TextId::manyGroups),
                                             sizeText({reclaimable(outcome.results)}), searched})
        << '\n';
}

}  // namespace kelvane
