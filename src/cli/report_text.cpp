#include <algorithm>
#include <array>
#include <cstdio>
#include <iomanip>
#include <ostream>
#include <utility>

#include "base/filled_text.h"
#include "base/size_text.h"
#include "base/utf.h"
#include "cli/printable.h"
#include "cli/report.h"
#include "platform/native_text.h"
#include "results/result_columns.h"

namespace kelvane {
namespace {

struct SizeBounds {
    FileSize smallest{UINT64_MAX};
    FileSize largest;
};

SizeBounds sizesOf(const Listing& listing, const GroupFacts& group)
{
    SizeBounds sizes;
    for (const ItemId id : group.files) {
        const FileSize size = listing.file(id).info().size;
        sizes.smallest = std::min(sizes.smallest, size);
        sizes.largest = std::max(sizes.largest, size);
    }
    return sizes;
}

std::string groupTitle(const Listing& listing, const GroupFacts& group)
{
    const SizeBounds sizes = sizesOf(listing, group);
    const std::string number = std::to_string(group.number);
    const std::string files = countedFiles(group.files.size());
    const std::string title =
        group.files.size() == 1 ? filledText(TextId::groupOfOneFile, {number, files, sizeText(sizes.largest)})
        : sizes.smallest == sizes.largest
            ? filledText(TextId::groupOfOneSize, {number, files, sizeText(sizes.largest)})
            : filledText(TextId::groupOfSizes, {number, files, sizeText(sizes.smallest), sizeText(sizes.largest)});
    return title + (group.approximate ? filledText(TextId::groupApproximate) : "");
}

// A tab parts the path from each value: the name itself shows none.
void writeFile(const Listing& listing, ItemId id, std::ostream& out)
{
    if (listing.marksNew())
        out << (listing.isNew(id) ? "+ " : "  ");
    out << printable(bytesFromNative(listing.file(id).fullName()));
    if (const auto score = listing.score(id))
        out << '\t' << filledText(TextId::scoreOfFile, {std::to_string(*score)});
    for (const PropRef& column : listing.shape.columns)
        out << '\t' << printable(toUtf8(cellText(listing.results.file(id), column, *listing.shape.properties)));
    out << '\n';
}

void writeTitled(const Listing& listing, std::ostream& out)
{
    bool first = true;
    forEachGroup(listing, [&](const GroupFacts& group) {
        if (!goesOn(listing, out))
            return false;
        out << (std::exchange(first, false) ? "" : "\n") << groupTitle(listing, group) << '\n';
        for (const ItemId id : group.files)
            writeFile(listing, id, out);
        return true;
    });
}

// The numbers of the groups stand in front, as wide as the widest.
void writeFlat(const Listing& listing, std::ostream& out)
{
    std::uint32_t highest = 0;
    listing.results.forEachRow([&](ItemId id) { highest = std::max(highest, listing.results.item(id).groupNumber()); });
    const auto width = static_cast<int>(std::to_string(highest).size());
    forEachGroup(listing, [&](const GroupFacts& group) {
        if (!goesOn(listing, out))
            return false;
        out << std::setw(width) << group.number << "  ";
        writeFile(listing, group.files.front(), out);
        return true;
    });
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

void writeTextReport(const Listing& listing, std::ostream& out)
{
    if (listing.shape.summaryOnly)
        return;
    listing.shape.flat ? writeFlat(listing, out) : writeTitled(listing, out);
}

void writeSummaryOfPart(const Listing& listing, std::ostream& out)
{
    const std::string shown = std::to_string(listing.results.rowCount());
    out << (listing.shape.summaryOnly ? "" : "\n")
        << filledText(TextId::summaryOfPart, {shown, countedFiles(listing.results.itemCount())}) << '\n';
}

void writeSummary(const Listing& listing, std::ostream& out)
{
    const ListedCounts counts = countListed(listing.results);
    const std::string searched = filledText(TextId::summarySearched, {countedFiles(listing.figures.candidates),
                                                                      sizeText({listing.figures.candidateBytes}),
                                                                      secondsText(listing.figures.seconds)});
    if (counts.groups == 0) {
        out << filledText(TextId::summaryNothing, {searched}) << '\n';
        return;
    }
    out << (listing.shape.summaryOnly ? "" : "\n")
        << filledText(TextId::summaryFound,
                      {countedText(counts.duplicates(), TextId::oneDuplicate, TextId::manyDuplicates),
                       countedText(counts.groups, TextId::oneGroup, TextId::manyGroups), sizeText({counts.freed}),
                       searched})
        << '\n';
}

}  // namespace kelvane
