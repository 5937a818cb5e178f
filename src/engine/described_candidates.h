// The end of phase 1 of searches for similar contents: candidates get their descriptors, or leave.
#pragma once

#include "engine/candidate.h"
#include "engine/criteria.h"
#include "engine/scan_observer.h"
#include "engine/similar_content.h"
#include "engine/walker.h"
#include "platform/clock.h"
#include "props/property_source.h"

namespace kelvane {

struct DescriptorPorts {
    SimilarContent* similar;  // may be null
    const PropertySource& properties;
    const Clock& clock;
    ScanObserver& observer;
    const CancelFlag& cancel;
};

// Waits for the descriptors of what was announced. Candidates without one leave the list, whose order stays; they are
// counted and told to the observer. False when cancelled. Does nothing for other searches.
[[nodiscard]] bool settleDescriptors(const ScanCriteria& criteria, CandidateList& candidates,
                                     const DescriptorPorts& ports, WalkStats& stats);

// Stands below a list whose candidates are announced, so that no worker is left with any of them when the list ends,
// however it ends.
class AnnouncedCandidates {
public:
    explicit AnnouncedCandidates(SimilarContent* similar) : similar_(similar) {}
    ~AnnouncedCandidates()
    {
        if (similar_ != nullptr)
            similar_->abandon();
    }
    AnnouncedCandidates(const AnnouncedCandidates&) = delete;
    AnnouncedCandidates& operator=(const AnnouncedCandidates&) = delete;

private:
    SimilarContent* similar_;
};

}  // namespace kelvane
