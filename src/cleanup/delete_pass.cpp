#include "cleanup/delete_pass.h"

#include "base/text_table.h"
#include "cleanup/guards.h"
#include "cleanup/pass_batch.h"
#include "cleanup/pass_report.h"

namespace kelvane {
namespace {

CleanupFailure failureOf(const RemovalOutcome& outcome, const CleanupCommand& command)
{
    Error error = outcome.error.value_or(Error{ErrorKind::io, outcome.code, {}});
    CleanupFault fault = CleanupFault::system;
    if (error.kind == ErrorKind::changed || error.kind == ErrorKind::notFound)
        fault = CleanupFault::changed;
    else if (error.kind == ErrorKind::notSupported && command.action == CleanupAction::recycle)
        fault = CleanupFault::noTrash;
    return {fault, std::move(error)};
}

class DeletePass final : private RemovalSink {
public:
    DeletePass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports, const PassOptions& options,
               CleanupQuestions& questions, JournalWriter& journal, PassObserver& observer, const CancelFlag& cancel)
        : plan_(plan),
          ports_(ports),
          options_(options),
          questions_(questions),
          journal_(journal),
          cancel_(cancel),
          commands_(commandsOf(plan, false)),
          report_(plan, observer),
          guards_(ports, options, model, plan, cancel)
    {
    }

    PassOutcome run()
    {
        while (next_ < commands_.size() && !stopped_) {
            gather();
            if (const Status written = writeAhead(batch_, plan_, journal_); !written)
                failForJournal(written.error());
            else
                act();
            batch_.clear();
            guards_.release();
        }
        for (std::size_t at = next_; at < commands_.size(); ++at)
            report_.leave(commands_[at], command(commands_[at]).kept);
        return report_.outcome;
    }

private:
    [[nodiscard]] const CleanupCommand& command(std::size_t number) const { return plan_.commands[number]; }

    void stopAsCancelled()
    {
        stopped_ = true;
        report_.outcome.cancel = CancelState::requested;
    }

    // Asks the person when a cancel was requested: true ends the run.
    [[nodiscard]] bool mustStop()
    {
        if (cancel_.cancelled() && questions_.confirmStop(text(TextId::stopCleanupQuestion)))
            stopAsCancelled();
        return stopped_;
    }

    void gather()
    {
        std::size_t at = next_;
        while (at < commands_.size() && batch_.size() < options_.batch) {
            if (mustStop())
                return batch_.clear();
            BatchItem item = prepare(commands_[at]);
            if (item.failure && item.failure->error.kind == ErrorKind::cancelled && cancel_.cancelled())
                continue;  // asks, and holds the item anew when the run goes on
            if (ranOutOfHandles(item) && !batch_.empty())
                return leaveHandles(batch_);
            batch_.push_back(std::move(item));
            ++at;
        }
    }

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
            done = ports_.operations.remove(removals_, *this, cancel_);
        endUpTo(firstWithoutTurn());
        judge(done);
        keepJournal(withdraw(std::span(batch_).subspan(ended_), journal_));
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
        report_.outcome.engineFailed = report_.outcome.engineFailed || !done.ok;
        if (!done.ok)
            report_.outcome.cancel = CancelState::requested;
        const bool allHadTheirTurn = ended_ == batch_.size();
        if (stopped_ || (allHadTheirTurn && !done.aborted))
            return;
        // A cancel of this run may have come too late to leave anything behind.
        if (!cancel_.cancelled())
            stopAsCancelled();
        else if (!allHadTheirTurn)
            static_cast<void>(mustStop());
    }

    bool before(std::size_t removal) override
    {
        BatchItem& item = batch_[turns_[removal]];
        if (stopped_)
            return false;
        item.failure = guards_.recheck(item.pair, command(item.command));
        return !item.failure;
    }

    Status placing(std::size_t removal, const std::filesystem::path& trashed) override
    {
        const BatchItem& item = batch_[turns_[removal]];
        const Status written = journal_.placing(*item.entry, trashed);
        keepJournal(written);
        return written;
    }

    void after(std::size_t removal, const RemovalOutcome& outcome) override
    {
        const std::size_t at = turns_[removal];
        BatchItem& item = batch_[at];
        item.removal = outcome;
        if (report_.outcome.journalError && isFailedRemoval(outcome.code))
            item.failure = CleanupFailure{CleanupFault::journal, *report_.outcome.journalError};
        else if (!isIgnoredRemoval(outcome.code) && isFailedRemoval(outcome.code))
            item.failure = failureOf(outcome, command(item.command));
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
        for (; ended_ < last; ++ended_, ++next_)
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
        finish(item, ended);
        if (ended.result == ItemResult::notReached)
            report_.leave(item.command, item.kept);
        else
            report_.end(ended);
    }

    void finish(BatchItem& item, const ItemOutcome& ended)
    {
        if (!item.entry)
            return;
        if (failedAndVanished(item)) {
            // Stays open in the journal, for settling to look at.
            ++report_.outcome.undecided;
        } else {
            const EntryState state = ended.result == ItemResult::done ? EntryState::done : EntryState::notDone;
            keepJournal(journal_.finish(*item.entry, state, LinkKind::none, ended.trashed));
        }
        item.entry.reset();
    }

    // The system reports a failure, and yet the item is where it was no more.
    [[nodiscard]] static bool failedAndVanished(const BatchItem& item)
    {
        return item.removal && item.failure && item.failure->fault == CleanupFault::system && isGone(item);
    }

    [[nodiscard]] static bool isGone(const BatchItem& item)
    {
        const auto now = item.pair.folder->look(item.pair.name);
        return !now && now.error().kind == ErrorKind::notFound;
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

    // Nothing is done without the journal: the first item that could be acted on fails, and the run ends.
    void failForJournal(const Error& error)
    {
        report_.outcome.journalError = error;
        ended_ = 0;
        for (BatchItem& item : batch_) {
            item.entry.reset();
            const bool first = !item.failure;
            if (first)
                item.failure = CleanupFailure{CleanupFault::journal, error};
            endUpTo(ended_ + 1);
            if (first)
                break;
        }
        stopped_ = true;
    }

    void keepJournal(const Status& written)
    {
        if (written)
            return;
        if (!report_.outcome.journalError)
            report_.outcome.journalError = written.error();
        stopped_ = true;
    }

    const CleanupPlan& plan_;
    const PassPorts& ports_;
    const PassOptions& options_;
    CleanupQuestions& questions_;
    JournalWriter& journal_;
    const CancelFlag& cancel_;
    const std::vector<std::size_t> commands_;
    PassReport report_;
    Guards guards_;
    PassBatch batch_;
    std::vector<RemovalItem> removals_;  // of the batch
    std::vector<std::size_t> turns_;     // of each removal, which item of the batch it is
    std::size_t ended_ = 0;              // items of the batch that have ended
    std::size_t next_ = 0;               // in commands_: everything before it has ended
    bool stopped_ = false;
};

}  // namespace

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
