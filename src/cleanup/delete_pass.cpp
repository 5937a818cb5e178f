#include "cleanup/delete_pass.h"

#include "cleanup/guards.h"
#include "cleanup/pass_run.h"

namespace kelvane {
namespace {

class DeletePass final : private RemovalSink {
public:
    DeletePass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports, const PassOptions& options,
               CleanupQuestions& questions, JournalWriter& journal, PassObserver& observer, const CancelFlag& cancel)
        : plan_(plan),
          operations_(ports.operations),
          journal_(journal),
          cancel_(cancel),
          commands_(commandsOf(plan, false)),
          run_(plan, options, questions, journal, observer, cancel),
          guards_(ports, options, model, plan, cancel)
    {
    }

    PassOutcome run()
    {
        while (next_ < commands_.size() && !run_.isStopped()) {
            batch_ = run_.gather(std::span(commands_).subspan(next_),
                                 [this](std::size_t number) { return prepare(number); });
            act();
            batch_.clear();
            guards_.release();
        }
        for (std::size_t at = next_; at < commands_.size(); ++at)
            run_.report.leave(commands_[at], command(commands_[at]).kept);
        return run_.report.outcome;
    }

private:
    [[nodiscard]] const CleanupCommand& command(std::size_t number) const { return plan_.commands[number]; }

    [[nodiscard]] BatchItem prepare(std::size_t number)
    {
        BatchItem item;
        item.command = number;
        item.kept = command(number).kept;
        auto held = guards_.hold(command(number), item.kept);
        if (auto* failure = std::get_if<CleanupFailure>(&held))
            item.failure = std::move(*failure);
        else
            item.pair = std::move(std::get<HeldPair>(held));
        return item;
    }

    void act()
    {
        removals_.clear();
        turns_.clear();
        ended_ = 0;
        for (std::size_t at = 0; at < batch_.size(); ++at) {
            if (!batch_[at].failure)
                addRemoval(at);
        }
        BatchOutcome done;
        if (!removals_.empty())
            done = operations_.remove(removals_, *this, cancel_);
        endUpTo(firstWithoutTurn());
        judge(done);
        run_.withdraw(std::span(batch_).subspan(ended_));
    }

    void addRemoval(std::size_t at)
    {
        const BatchItem& item = batch_[at];
        const bool forGood = command(item.command).action == CleanupAction::deletePermanently;
        removals_.push_back(
            {item.pair.itemPath, item.pair.itemNow.identity, forGood ? Removal::forGood : Removal::toTrash});
        turns_.push_back(at);
    }

    // What the batch as a whole came to. Items that had no turn are taken up again when the person wants to go on.
    void judge(const BatchOutcome& done)
    {
        PassOutcome& outcome = run_.report.outcome;
        outcome.engineFailed = outcome.engineFailed || !done.ok;
        if (!done.ok)
            outcome.cancel = CancelState::requested;
        const bool allHadTheirTurn = ended_ == batch_.size();
        if (run_.isStopped() || (allHadTheirTurn && !done.aborted))
            return;
        // A cancel of this run may have come too late to leave anything behind.
        if (!cancel_.cancelled())
            run_.stopAsCancelled();
        else if (!allHadTheirTurn)
            (void)run_.mustStop();
    }

    bool before(std::size_t removal) override
    {
        BatchItem& item = batch_[turns_[removal]];
        if (run_.isStopped())
            return false;
        item.failure = guards_.recheck(item.pair);
        return !item.failure;
    }

    Status placing(std::size_t removal, const std::filesystem::path& trashed) override
    {
        const Status written = journal_.placing(*batch_[turns_[removal]].entry, trashed);
        run_.keepJournal(written);
        return written;
    }

    void after(std::size_t removal, const RemovalOutcome& outcome) override
    {
        const std::size_t at = turns_[removal];
        BatchItem& item = batch_[at];
        item.removal = outcome;
        const auto& journalError = run_.report.outcome.journalError;
        if (journalError && isFailedRemoval(outcome.code))
            item.failure = CleanupFailure{CleanupFault::journal, *journalError};
        else if (!isIgnoredRemoval(outcome.code) && isFailedRemoval(outcome.code))
            item.failure = failureOf(
                outcome, command(item.command).action == CleanupAction::recycle ? Removal::toTrash : Removal::forGood);
        endUpTo(at + 1);
    }

    // Behind the last item that was acted on, those whose guards failed have ended as well.
    [[nodiscard]] std::size_t firstWithoutTurn() const
    {
        std::size_t at = ended_;
        while (at < batch_.size() && (batch_[at].failure || batch_[at].removal))
            ++at;
        return at;
    }

    void endUpTo(std::size_t last)
    {
        for (; ended_ < last && !isOver_; ++ended_, ++next_)
            end(batch_[ended_]);
    }

    void end(BatchItem& item)
    {
        ItemOutcome ended;
        ended.command = item.command;
        ended.kept = item.kept;
        ended.failure = item.failure;
        ended.result = resultOf(item);
        if (item.removal) {
            ended.code = item.removal->code;
            ended.trashed = item.removal->trashed.value_or(std::filesystem::path{});
        }
        if (failedAndVanished(item))
            run_.leaveUndecided(item);
        run_.finish(item, ended);
        if (item.failure && item.failure->fault == CleanupFault::journal)
            giveUp();
        if (ended.result == ItemResult::notReached)
            run_.report.leave(item.command, item.kept);
        else
            run_.report.end(ended);
    }

    // One item tells that the journal could not be written on; those behind it were not reached.
    void giveUp()
    {
        isOver_ = true;
        run_.stop();
    }

    // The system reports a failure, and yet the item is where it was no more.
    [[nodiscard]] static bool failedAndVanished(const BatchItem& item)
    {
        return item.removal && item.failure && item.failure->fault == CleanupFault::system && isGone(item);
    }

    [[nodiscard]] static bool isGone(const BatchItem& item)
    {
        const auto now = item.pair.folder->look(item.pair.name);
        // `changed` is a file that goes as soon as nobody holds it any more.
        return !now && (now.error().kind == ErrorKind::notFound || now.error().kind == ErrorKind::changed);
    }

    // Of a step of the shell's own nothing is told; whether the item went is to be seen.
    [[nodiscard]] static ItemResult resultOf(const BatchItem& item)
    {
        if (item.failure)
            return ItemResult::failed;
        if (!item.removal || !isIgnoredRemoval(item.removal->code))
            return item.removal ? ItemResult::done : ItemResult::notReached;
        return isGone(item) ? ItemResult::done : ItemResult::notReached;
    }

    const CleanupPlan& plan_;
    FileOperations& operations_;
    JournalWriter& journal_;
    const CancelFlag& cancel_;
    const std::vector<std::size_t> commands_;
    PassRun run_;
    Guards guards_;
    PassBatch batch_;
    std::vector<RemovalItem> removals_;  // of the batch
    std::vector<std::size_t> turns_;     // of each removal, which item of the batch it is
    std::size_t ended_ = 0;              // items of the batch that have ended
    std::size_t next_ = 0;               // in commands_: everything before it has ended
    bool isOver_ = false;
};

}  // namespace

CleanupFailure failureOf(const RemovalOutcome& outcome, Removal removal)
{
    Error error = outcome.error.value_or(Error{ErrorKind::io, outcome.code, {}});
    CleanupFault fault = CleanupFault::system;
    if (error.kind == ErrorKind::changed || error.kind == ErrorKind::notFound)
        fault = CleanupFault::changed;
    else if (error.kind == ErrorKind::notSupported && removal == Removal::toTrash)
        fault = CleanupFault::noTrash;
    return {fault, std::move(error)};
}

PassOutcome runDeletePass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports,
                          const PassOptions& options, CleanupQuestions& questions, JournalWriter& journal,
                          PassObserver& observer, const CancelFlag& cancel)
{
    return DeletePass(plan, model, ports, options, questions, journal, observer, cancel).run();
}

bool isIgnoredRemoval(std::int32_t code)
{
    return code == removal_code::ignoredA || code == removal_code::ignoredB;
}

bool isFailedRemoval(std::int32_t code)
{
    return code < 0 || code == removal_code::skippedByPerson;
}

}  // namespace kelvane
