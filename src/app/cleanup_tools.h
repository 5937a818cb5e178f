// What clean-ups and taking them back work with on this computer.
#pragma once

#include "cleanup/cleanup_run.h"
#include "cleanup/disk_facts.h"
#include "cleanup/journal.h"
#include "engine/engine_options.h"
#include "platform/platform.h"

namespace kelvane {

// For one run, or a few in a row, on one thread. The platform outlives it.
class CleanupTools {
public:
    // `elevated` makes symbolic links with an administrator's rights; null where nobody could be asked for them.
    explicit CleanupTools(Platform& platform, SymbolicLinkService* elevated = nullptr);
    CleanupTools(const CleanupTools&) = delete;
    CleanupTools& operator=(const CleanupTools&) = delete;

    // All that is given outlives the context, and so do these tools.
    [[nodiscard]] CleanupContext context(ResultsModel& results, const CScanNode& definition,
                                         const EngineOptions& options, CleanupMemory& memory,
                                         CleanupQuestions& questions, PassObserver* watcher);
    [[nodiscard]] PassPorts ports() const;
    // Those of the person.
    [[nodiscard]] Journals& journals() { return journals_; }

private:
    Platform& platform_;
    SymbolicLinkService* elevated_;
    DiskFacts disk_;
    Journals journals_;
};

}  // namespace kelvane
