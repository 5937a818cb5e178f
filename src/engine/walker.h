// Phase 1: from roots to candidates.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "base/cancel.h"
#include "engine/candidate.h"
#include "engine/criteria.h"
#include "engine/scan_observer.h"
#include "engine/similar_content.h"
#include "platform/clock.h"
#include "platform/path_rules.h"
#include "platform/shell_namespace.h"
#include "props/property_source.h"

namespace kelvane {

// What was met on the way, for the statistics.
struct WalkStats {
    std::uint64_t folders = 0;
    std::uint64_t filesSeen = 0;     // before any test
    std::uint64_t skipped = 0;       // roots and folders that could not be read; not those that vanished meanwhile
    std::uint64_t outsideMasks = 0;  // files of the category's kind that its own masks leave out
    std::uint64_t offlineSkipped = 0;
    std::uint64_t withoutValue = 0;                    // files that have no value for the primary property
    std::map<std::string, std::uint64_t> undescribed;  // files that got no descriptor, by the reason
    bool undescribedFailed = false;                    // for some of them, another try may do better
};

class CandidatePreparation;

// Everything the walk asks of the world; all of it outlives the walker.
struct WalkPorts {
    ShellNamespace& shell;
    const PathRules& paths;
    const PropertySource& properties;
    const Clock& clock;
    ScanObserver& observer;
    const CancelFlag& cancel;
    SimilarContent* similar = nullptr;  // the admission tests of similar-content searches; null when there are none
    // Where candidates are handed over that need more than their records; null: the walk reads their primary values.
    CandidatePreparation* preparation = nullptr;
};

enum class WalkResult : int { done = 0, cancelled = -1 };

// Walks one root after the other into one candidate list. Decisions are made on the calling thread and in one fixed
// order; folders are listed ahead by worker threads, which changes the speed and nothing else. A folder reached twice
// (through followed links, bind mounts, or an archive with two names) is walked once.
class Walker {
public:
    Walker(const ScanCriteria& criteria, const WalkPorts& ports, CandidateList& candidates);
    ~Walker();
    Walker(const Walker&) = delete;
    Walker& operator=(const Walker&) = delete;

    // A root that cannot be parsed or listed is skipped and told to the observer. A root that is a file stands for
    // itself only. Where archives are entered, an archive is walked as a folder and stays a candidate file as well.
    // Where there is a preparation, it has to be settled before the candidates are used.
    // After `cancelled` the walker is good for nothing but its statistics.
    [[nodiscard]] WalkResult walk(const std::string& root);

    [[nodiscard]] const WalkStats& stats() const;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace kelvane
