// The door for content descriptors (text, sound, pictures), by which near-duplicates are found.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "engine/candidate.h"
#include "engine/criteria.h"
#include "props/preview_signature.h"

namespace kelvane {

class Neighbours;
struct SortedCandidates;

// How much was compared of a file, for people who ask why.
struct ContentMeasure {
    std::uint64_t size = 0;     // in bytes, as comparing goes by it
    std::uint64_t length = 0;   // of a text, in characters
    std::int64_t duration = 0;  // of sound or a film, in 100-nanosecond units
    std::uint32_t width = 0;    // of a preview, in pixels
    std::uint32_t height = 0;
    friend bool operator==(const ContentMeasure&, const ContentMeasure&) = default;
};

// What comparing the contents of two files by their descriptors gave.
struct ContentScore {
    bool comparable = true;   // false: a descriptor is missing, or the two are too different to be scored
    std::int32_t score = 0;   // the percentage scale, not clamped
    bool vetoed = false;      // whatever the score says, the two do not match (see PreviewLook)
    bool endsWalk = false;    // no later file in sort order can match either
    ContentMeasure a{}, b{};  // zeros where there is no descriptor
    std::optional<PreviewLook> look = std::nullopt;  // of pictures and films
};

// Why a file got no descriptor, in words for a person.
struct NoDescriptorCause {
    std::string reason;       // the same words for every file that shares it
    std::string detail;       // what is known beyond that; may be empty
    bool unreadable = false;  // the file could not be opened or read
    bool passing = false;     // another time or another computer may do better: a failure, not a fact about the file
};

// "damaged (no end of the archive)".
[[nodiscard]] std::string causeText(const NoDescriptorCause& cause);

// Similar-content search for the categories that have descriptors. What is not said to be otherwise is used by the
// scan's thread.
class SimilarContent {
public:
    virtual ~SimilarContent() = default;
    [[nodiscard]] virtual bool supports(Category category) const = 0;

    // Whether a file can have what a descriptor needs, as far as a look at its name and record tells.
    [[nodiscard]] virtual bool mayAdmit(const ScanCriteria& criteria, const ItemContext& file) const;

    // Builds the descriptor of a candidate and keeps it with the candidate's values, or keeps a missing value and says
    // why. Does nothing where that was done already. Called by any thread, for one candidate by one at a time. What it
    // says of a cancelled call is of no interest.
    [[nodiscard]] virtual std::optional<NoDescriptorCause> describe(const ScanCriteria& criteria, Candidate& file,
                                                                    const CancelFlag& cancel) = 0;

    // The order in which described candidates are to stand, where it is not that of their primary values: a key for
    // each, by its number in the list; those with equal keys stay as they are. Nothing where the primary values order
    // them, and when cancelled.
    [[nodiscard]] virtual std::optional<std::vector<std::uint64_t>>
    order(const ScanCriteria& criteria, CandidateList& candidates, const CancelFlag& cancel);

    // Whether the file has a descriptor and is long enough, after describe() and once its primary value is known.
    [[nodiscard]] virtual bool admits(const ScanCriteria& criteria, ItemContext& file) = 0;
    // Describes what was not described yet. What it says of a cancelled call is of no interest.
    [[nodiscard]] virtual ContentScore compare(const ScanCriteria& criteria, ItemContext& a, ItemContext& b,
                                               const CancelFlag& cancel) = 0;

    // The candidates that may match, found ahead in parallel; null where the plain walk is to be taken. The same groups
    // come of both but for what a filter leaves out, whose loss is measured, and which EngineOptions::exhaustive turns
    // off. What is handed over outlives the result.
    [[nodiscard]] virtual std::unique_ptr<Neighbours> narrow(const ScanCriteria& criteria,
                                                             const SortedCandidates& sorted, const CancelFlag& cancel);
};

// Several of them as one: each category goes to the first that supports it. They outlive the result.
[[nodiscard]] std::unique_ptr<SimilarContent> combined(std::vector<SimilarContent*> contents);

}  // namespace kelvane
