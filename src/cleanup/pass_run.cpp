#include "cleanup/pass_run.h"

#include <algorithm>

#include "base/text_table.h"

namespace kelvane {
namespace {

bool isBecauseOf(const BatchItem& item, ErrorKind kind)
{
    return item.failure && item.failure->error.kind == kind;
}

// Some of the items are let go, so that the others find handles to be acted on.
void leaveHandles(PassBatch& batch)
{
    batch.erase(batch.begin() + static_cast<std::ptrdiff_t>((batch.size() + 1) / 2), batch.end());
}

}  // namespace

PassRun::PassRun(const CleanupPlan& plan, const PassOptions& options, CleanupQuestions& questions,
                 JournalWriter& journal, PassObserver& observer, const CancelFlag& cancel)
    : report(plan, observer), plan_(plan), options_(options), questions_(questions), journal_(journal), cancel_(cancel)
{
}

void PassRun::stopAsCancelled()
{
    stopped_ = true;
    report.outcome.cancel = CancelState::requested;
}

bool PassRun::mustStop()
{
    if (!stopped_ && cancel_.cancelled() && questions_.confirmStop(text(TextId::stopCleanupQuestion)))
        stopAsCancelled();
    return stopped_;
}

PassBatch PassRun::gather(std::span<const std::size_t> commands, const Prepare& prepare)
{
    PassBatch batch;
    const std::size_t most = std::clamp<std::size_t>(options_.batch, 1, commands.size());
    while (batch.size() < most) {
        if (mustStop())
            return {};
        report.begin(commands[batch.size()]);
        BatchItem item = prepare(commands[batch.size()]);
        if (isBecauseOf(item, ErrorKind::cancelled) && cancel_.cancelled())
            continue;  // asks, and holds the item anew when the run goes on
        if (isBecauseOf(item, ErrorKind::tooManyOpen) && !batch.empty()) {
            leaveHandles(batch);
            break;
        }
        batch.push_back(std::move(item));
    }
    writeAhead(batch);
    return batch;
}

void PassRun::writeAhead(PassBatch& batch)
{
    const Status written = kelvane::writeAhead(batch, plan_, journal_);
    if (written)
        return;
    report.outcome.journalError = written.error();
    for (BatchItem& item : batch) {
        item.entry.reset();
        if (!item.failure)
            item.failure = CleanupFailure{CleanupFault::journal, written.error()};
    }
}

void PassRun::finish(BatchItem& item, const ItemOutcome& ended)
{
    if (!item.entry)
        return;
    const EntryState state = ended.result == ItemResult::done ? EntryState::done : EntryState::notDone;
    keepJournal(journal_.finish(*item.entry, state, ended.link, ended.trashed));
    item.entry.reset();
}

void PassRun::leaveUndecided(BatchItem& item)
{
    item.entry.reset();
    ++report.outcome.undecided;
}

void PassRun::withdraw(std::span<BatchItem> items)
{
    for (BatchItem& item : items) {
        if (!item.entry || report.outcome.journalError)
            continue;
        keepJournal(journal_.finish(*item.entry, EntryState::notDone));
        item.entry.reset();
    }
}

void PassRun::keepJournal(const Status& written)
{
    if (written)
        return;
    if (!report.outcome.journalError)
        report.outcome.journalError = written.error();
    stopped_ = true;
}

}  // namespace kelvane
