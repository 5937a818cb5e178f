// What a listing of groups prints: those of a fresh scan and those of a saved one alike.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "cli/options.h"
#include "engine/scan_figures.h"
#include "props/property_source.h"
#include "results/results_model.h"

namespace kelvane {

// By item id: how alike a file is to the one that it was found by; nothing for the first one of a group.
using FileScores = std::vector<std::optional<std::int32_t>>;

// How a listing departs from the usual one.
struct ListingShape {
    bool flat = false;         // file by file in the order of the list, each with the number of its group
    bool summaryOnly = false;  // nothing but the counts
    std::vector<PropRef> columns{};
    const PropertySource* properties = nullptr;  // reads the values of the columns
    const std::vector<bool>* isNew = nullptr;    // by item id; null when nothing was asked about it
    const FileScores* scores = nullptr;          // null where files have none, or they are not asked for
};

// What is printed, for as long as it is printed: of the results, what is in view.
struct Listing {
    const ScanCriteria* criteria;  // null when nothing is known of the search
    const std::vector<std::string>& roots;
    const ScanFigures& figures;
    ResultsModel& results;
    const CancelFlag& cancel;  // breaks a listing off between two groups; JSON is always whole
    ListingShape shape{};

    [[nodiscard]] const ShellItem& file(ItemId id) const { return results.item(id).file.item(); }
    [[nodiscard]] bool marksNew() const { return shape.isNew != nullptr; }
    [[nodiscard]] std::optional<std::int32_t> score(ItemId id) const
    {
        return shape.scores != nullptr ? (*shape.scores)[static_cast<std::size_t>(id)] : std::nullopt;
    }
    [[nodiscard]] bool isNew(ItemId id) const { return marksNew() && (*shape.isNew)[static_cast<std::size_t>(id)]; }
};

// Prints the groups in the format asked for. A stream that fails ends the printing; that is seen by its state.
void writeReport(OutputFormat format, const Listing& listing, std::ostream& out);

void writeTextReport(const Listing& listing, std::ostream& out);
void writeJsonReport(const Listing& listing, std::ostream& out);
void writeCsvReport(const Listing& listing, std::ostream& out);
void writeNullReport(const Listing& listing, std::ostream& out);

// "12 duplicates in 5 groups, 1.5 MB could be freed; 80 files (20.0 MB) in 0.3 seconds", ended by a line feed.
void writeSummary(const Listing& listing, std::ostream& out);

// "1 of 4 files shown" where the rest is hidden, likewise.
void writeSummaryOfPart(const Listing& listing, std::ostream& out);

// What a listing says of one group.
struct GroupFacts {
    std::uint32_t number = 0;
    bool approximate = false;
    std::span<const ItemId> files;
};

// The groups in the order of the list, a flat list one file at a time, for as long as `visit` answers with true.
void forEachGroup(const Listing& listing, const std::function<bool(const GroupFacts&)>& visit);

// Counts of what is in view.
struct ListedCounts {
    std::uint64_t groups = 0;
    std::uint64_t files = 0;
    std::uint64_t freed = 0;  // at least, in bytes, whichever file of each group is kept
    [[nodiscard]] std::uint64_t duplicates() const { return files - groups; }
};
[[nodiscard]] ListedCounts countListed(const ResultsModel& results);

// Whether a listing should go on with its next group.
[[nodiscard]] bool goesOn(const Listing& listing, const std::ostream& out);

}  // namespace kelvane
