// The end of phase 1: candidates get what comparing them takes beyond their records, or leave.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "engine/background_work.h"
#include "engine/candidate.h"
#include "engine/criteria.h"
#include "engine/scan_observer.h"
#include "engine/similar_content.h"
#include "engine/walker.h"
#include "platform/clock.h"
#include "props/property_source.h"

namespace kelvane {

// Reads the values that a scan compares, and describes contents, on threads of its own while further candidates are
// found. Stands below the list that the candidates are in, so that no thread is left with any of them when the list
// ends, however it ends. A scan whose candidates need no more than their records pays nothing.
class CandidatePreparation {
public:
    // similar may be null. All outlive it.
    CandidatePreparation(const ScanCriteria& criteria, const PropertySource& properties, SimilarContent* similar);
    // Forgets what was not begun; waits for what is in work, which ends soon.
    ~CandidatePreparation();
    CandidatePreparation(const CandidatePreparation&) = delete;
    CandidatePreparation& operator=(const CandidatePreparation&) = delete;

    // Whether candidates are to be handed over at all.
    [[nodiscard]] bool needed() const { return needed_; }

    // Of every candidate of the list, in its order. It must stay where it is, and be left alone by everybody else,
    // until settle() has returned true or this has ended.
    void begin(Candidate& file);

    // Waits for all that was begun. Candidates without a descriptor or without a value of the primary property leave
    // the list, whose order stays; they are counted and told to the observer. False when cancelled.
    [[nodiscard]] bool settle(CandidateList& candidates, const Clock& clock, ScanObserver& observer,
                              const CancelFlag& cancel, WalkStats& stats);

private:
    // A candidate that is to leave; without a cause where it lacks the primary value.
    struct Leaver {
        std::uint64_t number;
        std::optional<NoDescriptorCause> cause;
    };

    void prepare(std::uint64_t number, Candidate& file);
    [[nodiscard]] bool isComplete(Candidate& file) const;
    void leaves(Leaver leaver);
    void letGo(CandidateList& candidates, ScanObserver& observer, WalkStats& stats);

    const ScanCriteria& criteria_;
    const PropertySource& properties_;
    SimilarContent* const similar_;  // null where nothing is described
    const bool needed_;
    CancelFlag stop_;
    std::uint64_t begun_ = 0;
    std::mutex mutex_;
    std::vector<Leaver> leavers_;  // guarded while there is work
    BackgroundWork work_;          // last: its threads use everything above
};

}  // namespace kelvane
