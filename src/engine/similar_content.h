// The door for content descriptors (text, sound, pictures), by which near-duplicates are found.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/cancel.h"
#include "engine/candidate.h"
#include "engine/criteria.h"

namespace kelvane {

class Neighbours;
struct SortedCandidates;

// How much was compared of a file, for people who ask why.
struct ContentMeasure {
    std::uint64_t size = 0;    // in bytes, as comparing goes by it
    std::uint64_t length = 0;  // of a text, in characters
};

// What comparing the contents of two files by their descriptors gave.
struct ContentScore {
    bool comparable = true;   // false: a descriptor is missing, or the two are too different to be scored
    std::int32_t score = 0;   // the percentage scale, not clamped
    bool endsWalk = false;    // no later file in sort order can match either
    ContentMeasure a{}, b{};  // zeros where there is no descriptor
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

// A file that got no descriptor, and why.
using NoDescriptor = std::function<void(const ShellItem& item, const NoDescriptorCause& cause)>;

// Similar-content search for the categories that have descriptors. Used by the scan's thread; builds descriptors on
// threads of its own.
class SimilarContent {
public:
    virtual ~SimilarContent() = default;
    [[nodiscard]] virtual bool supports(Category category) const = 0;

    // Whether a file can have what a descriptor needs, as far as a look at its name and record tells.
    [[nodiscard]] virtual bool mayAdmit(const ScanCriteria& criteria, const ItemContext& file) const;
    // Begins to build the descriptor of a candidate, in the background. The candidate must stay where it is, and be
    // left alone by everybody else, until settle() or abandon().
    virtual void announce(const ScanCriteria& criteria, Candidate& file);
    // Waits for everything that was announced; calls the function about every 20 ms with how many are done, and tells
    // on the calling thread of files that got no descriptor, in the order in which they were announced. False when
    // cancelled. Afterwards no candidate is in work any more, and without a cancel each has its descriptor in its
    // cache, or a missing value.
    [[nodiscard]] virtual bool settle(const CancelFlag& cancel,
                                      const std::function<void(std::uint64_t done)>& whileWaiting,
                                      const NoDescriptor& none);
    // Forgets what was announced; waits for what is in work, which ends soon.
    virtual void abandon() noexcept;

    // Whether the file has a descriptor; builds it here and now where it was not announced.
    [[nodiscard]] virtual bool admits(const ScanCriteria& criteria, ItemContext& file) = 0;
    [[nodiscard]] virtual ContentScore compare(const ScanCriteria& criteria, ItemContext& a, ItemContext& b) = 0;

    // The candidates that may match, found ahead in parallel; null where the plain walk is to be taken. The same groups
    // come of both but for what a filter leaves out, whose loss is measured, and which EngineOptions::exhaustive turns
    // off. What is handed over outlives the result.
    [[nodiscard]] virtual std::unique_ptr<Neighbours> narrow(const ScanCriteria& criteria,
                                                             const SortedCandidates& sorted, const CancelFlag& cancel);
};

}  // namespace kelvane
