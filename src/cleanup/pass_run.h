// What both passes have in common: batches, counting, stopping, and a journal without which nothing is done.
#pragma once

#include <functional>

#include "cleanup/pass_batch.h"
#include "cleanup/pass_report.h"

namespace kelvane {

// One thread; everything given outlives it.
class PassRun {
public:
    PassRun(const CleanupPlan& plan, const PassOptions& options, CleanupQuestions& questions, JournalWriter& journal,
            PassObserver& observer, const CancelFlag& cancel);

    [[nodiscard]] bool isStopped() const { return stopped_; }
    void stop() { stopped_ = true; }
    void stopAsCancelled();
    // Asks the person when a cancel was requested: true ends the run.
    [[nodiscard]] bool mustStop();

    using Prepare = std::function<BatchItem(std::size_t command)>;
    // The next batch, its intents written ahead; shorter when the handles run out, empty when the run was stopped.
    [[nodiscard]] PassBatch gather(std::span<const std::size_t> commands, const Prepare& prepare);
    // The item's entry says what became of it.
    void finish(BatchItem& item, const ItemOutcome& ended);
    // The item's entry stays open, for settling to look at.
    void leaveUndecided(BatchItem& item);
    // What was written ahead and is not acted on.
    void withdraw(std::span<BatchItem> items);
    // The run ends when the journal could not be written on.
    void keepJournal(const Status& written);

    PassReport report;

private:
    void writeAhead(PassBatch& batch);

    const CleanupPlan& plan_;
    const PassOptions& options_;
    CleanupQuestions& questions_;
    JournalWriter& journal_;
    const CancelFlag& cancel_;
    bool stopped_ = false;
};

}  // namespace kelvane
