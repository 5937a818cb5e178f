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

GroupSizes sizesOf(const GroupFacts& group)
{
    GroupSizes sizes;
    for (const ShellItem* file : group.files) {
        const FileSize size = file->info().size;
        sizes.smallest = std::min(sizes.smallest, size);
        sizes.largest = std::max(sizes.largest, size);
        sizes.total += size.bytes;
    }
    return sizes;
}

std::string groupTitle(const GroupFacts& group)
{
    const GroupSizes sizes = sizesOf(group);
    const std::string number = std::to_string(group.number);
    const std::string files = countedFiles(group.files.size());
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
    forEachGroup(results, [&](const GroupFacts& group) {
        const GroupSizes sizes = sizesOf(group);
        bytes += sizes.total - sizes.largest.bytes;
        return true;
    });
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
    forEachGroup(outcome.results, [&](const GroupFacts& group) {
        if (!goesOn(outcome, out))
            return false;
        out << (std::exchange(first, false) ? "" : "\n") << groupTitle(group) << '\n';
        for (const ShellItem* file : group.files)
            out << printable(bytesFromNative(file->fullName())) << '\n';
        return true;
    });
}

void writeSummary(const ScanOutcome& outcome, std::ostream& err)
{
    const std::uint64_t groups = outcome.results.groupCount();
    const std::uint64_t duplicates = outcome.results.itemCount() - groups;
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
